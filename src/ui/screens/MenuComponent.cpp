// MenuComponent: how a screen is laid out and painted.
#include "ui/screens/MenuComponent.h"

#include "ui/widgets/FormComponent.h"
#include "ui/widgets/SheetGraphics.h"

#include "assets/cache/AssetSystem.h"
#include "assets/cache/TextureAsset.h"
#include "assets/fonts/FontAsset.h"
#include "assets/fonts/FontAssetLoader.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/GameLoop.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/drawn/ScreenPixels.h"
#include "rendering/drawn/SurfaceTextures.h"

#include <algorithm>
#include <cmath>

namespace
{
// Places of a screen's sheets. What is painted after the first picture lies over all of them.
constexpr std::size_t COLORS = 0, LETTERS = 1, OVER = 2, FIRST_PICTURE = 3;
// Their orders within a screen, deepest first.
constexpr int COLOR_ORDER = 0, PICTURE_ORDER = 1, OVER_ORDER = 3, LETTER_ORDER = 4, ORDERS = 5;

float limited(float val, float least, float most)
{
    return std::isfinite(val) ? std::clamp(val, least, most) : least;
}

int orderOf(std::size_t place)
{
    switch (place)
    {
    case COLORS:
        return COLOR_ORDER;
    case LETTERS:
        return LETTER_ORDER;
    case OVER:
        return OVER_ORDER;
    default:
        return PICTURE_ORDER;
    }
}
} // namespace

MenuComponent::MenuComponent() : fontName(SCS("LindenHill.otf")) {}

void MenuComponent::widgetChanged(bool places)
{
    placesAreStale |= places;
    paintIsStale = true;
}

void MenuComponent::setVisible(bool val)
{
    if (visible == val)
        return;
    visible = val;
    seen = fadeTime > 0.f ? 0.f : 1.f;
    paintIsStale = true;
    showSheets(val);
    if (ButtonComponent *const widget = val ? nullptr : focused())
        widget->leave();
}

void MenuComponent::setOrder(int val)
{
    constexpr int most = 60;
    order = std::clamp(val, 0, most);
    for (std::size_t place = 0; place < sheets.size(); ++place)
        if (const auto sheet = sheets[place].graphics.lookup())
            sheet->setOrder(order * ORDERS + orderOf(place));
}

void MenuComponent::setVeil(float val)
{
    veil = limited(val, 0.f, 1.f);
    paintIsStale = true;
}

void MenuComponent::setFadeTime(float val)
{
    fadeTime = limited(val, 0.f, 10.f);
}

void MenuComponent::setSafeMargin(float val)
{
    safeMargin = limited(val, 0.f, 500.f);
    widgetChanged(true);
}

void MenuComponent::setWidest(float val)
{
    widest = limited(val, 1.f, 8.f);
    widgetChanged(true);
}

void MenuComponent::setFontName(const String &val)
{
    if (fontName == val)
        return;
    fontName = val;
    font = Handle<FontAsset>();
    widgetChanged(true);
}

void MenuComponent::setTextScale(float val)
{
    textScale = limited(val, 0.5f, 2.f);
    widgetChanged(true);
}

void MenuComponent::doFrame()
{
    if (!visible || !bringUpToDate())
        return;
    fadeIn();
    for (const std::size_t place : {LETTERS})
        if (const auto sheet =
                place < sheets.size() ? sheets[place].graphics.lookup() : Handle<SheetGraphics>::Result{})
            paintIsStale |= sheet->isOutOfDate();
    if (paintIsStale)
        paint();
}

/// Takes over the window's size and the font, and lays out what has changed; false while nothing can be laid out.
bool MenuComponent::bringUpToDate()
{
    followWindow();
    if (!font.isValid())
        font = handle_cast<FontAsset>(getSystemDeref<AssetSystem>().startLoad(FontAssetLoader::staticType, fontName,
                                                                              nullptr, getNextRequestHandle()));
    FontAsset *const ready = readyFont();
    if (style.font != ready)
        widgetChanged(true);
    style.font = ready;
    style.textScale = textScale;
    if (placesAreStale && !window.isEmpty())
        layOut();
    return !window.isEmpty();
}

FontAsset *MenuComponent::readyFont() const
{
    const auto asset = font.lookup();
    return asset && asset->isReady() ? asset.ptr : nullptr;
}

void MenuComponent::followWindow()
{
    const ScreenMetrics &metrics = getScreenMetrics();
    const float pixels = getPixelsPerUnit() / metrics.normalizationFactor;
    const float width = std::round(static_cast<float>(metrics.width) * pixels);
    const float height = std::round(static_cast<float>(metrics.height) * pixels);
    if (window.width == width && window.height == height)
        return;
    window = {0.f, 0.f, width, height};
    style.unit = std::min(height, width * 9.f / 16.f) / 1080.f;
    widgetChanged(true);
}

void MenuComponent::fadeIn()
{
    if (seen >= 1.f)
        return;
    const auto time = getSystemDeref<GameLoopSystem>().getTime().lookup();
    const float passed = time ? static_cast<float>(time->getFrameTimeSeconds()) : fadeTime;
    seen = fadeTime > 0.f ? std::min(seen + passed / fadeTime, 1.f) : 1.f;
    paintIsStale = true;
}

WidgetRect MenuComponent::safeArea() const
{
    const WidgetRect free = window.inset(safeMargin * style.unit);
    const float width = std::min(free.width, window.height * widest - 2.f * safeMargin * style.unit);
    return {free.middleX() - width * 0.5f, free.top, width, free.height};
}

void MenuComponent::gather()
{
    roots.clear();
    stops.clear();
    const auto entity = getParent().lookup();
    if (!entity)
        return;
    for (auto child = entity->children_begin(); child != entity->children_end(); ++child)
        if (WidgetComponent *const widget = widgetOf(*child))
            if (widget->getShown())
            {
                roots.push_back(getHandle(widget));
                gatherBelow(*widget);
            }
}

void MenuComponent::gatherBelow(WidgetComponent &widget)
{
    if (auto *const button = dynamic_cast<ButtonComponent *>(&widget))
    {
        if (button->takesFocus())
            stops.push_back(getHandle(button));
        return;
    }
    if (auto *const form = dynamic_cast<FormComponent *>(&widget))
        for (WidgetComponent *below : std::vector<WidgetComponent *>(form->widgets()))
            gatherBelow(*below);
}

void MenuComponent::layOut()
{
    placesAreStale = false;
    paintIsStale = true;
    ++layoutCount;
    gather();
    const WidgetRect room = safeArea();
    for (const Handle<WidgetComponent> &root : roots)
        if (const auto widget = root.lookup())
            widget->layOut(style, room);
    keepFocus();
}

void MenuComponent::paint()
{
    paintIsStale = false;
    ++paintCount;
    picturesUsed = 0;
    for (const Sheet &sheet : sheets)
        if (const auto graphics = sheet.graphics.lookup())
            graphics->begin(window.height);
    WidgetPainter painter(*this, style, window);
    painter.setOpacity(seen);
    draw(painter);
}

void MenuComponent::draw(WidgetPainter &painter)
{
    if (veil > 0.f)
        painter.rect(window, WidgetColors::withAlpha(WidgetColors::ink, veil));
    for (const Handle<WidgetComponent> &root : roots)
        if (const auto widget = root.lookup())
            widget->draw(painter);
}

void MenuComponent::showSheets(bool shown)
{
    for (const Sheet &sheet : sheets)
        if (const auto graphics = sheet.graphics.lookup())
            graphics->setVisible(shown);
}

/// The sheet of a place, made where it is missing; null where it cannot be made.
SheetGraphics *MenuComponent::makeSheet(std::size_t place)
{
    if (sheets.size() <= place)
        sheets.resize(place + 1);
    if (const auto present = sheets[place].graphics.lookup())
        return present.ptr;
    const Handle<Entity> hEntity = construct<Entity>(defaultAllocationCategory);
    const auto entity = hEntity.lookup();
    entity->setName(String::format(".sheet%d", static_cast<int>(place)));
    entity->setParent(getParent());
    entity->addComponent(ComponentKeys::transform, TransformComponent::staticType);
    const auto made =
        handle_cast<SheetGraphics>(entity->addComponent(ComponentKeys::graphics2, SheetGraphics::staticType));
    const auto sheet = made.lookup();
    if (!sheet)
        return nullptr;
    sheets[place].graphics = made;
    sheet->setLayer(SceneGraph::SCREEN);
    sheet->setOrder(order * ORDERS + orderOf(place));
    sheet->setVisible(visible);
    sheet->onLoadComplete();
    sheet->begin(window.height);
    return sheet.ptr;
}

SheetGraphics *MenuComponent::colorSheet()
{
    SheetGraphics *const sheet = makeSheet(picturesUsed > 0 ? OVER : COLORS);
    if (sheet && !sheet->getTexture().isValid())
        sheet->setTexture(requestTexture(SCS("white")));
    return sheet;
}

SheetGraphics *MenuComponent::letterSheet()
{
    SheetGraphics *const sheet = makeSheet(LETTERS);
    if (sheet && sheet->getFont() != font)
    {
        sheet->setFont(font);
        sheet->begin(window.height);
    }
    return sheet;
}

SheetGraphics *MenuComponent::pictureSheet(const Handle<TextureAsset> &texture)
{
    for (std::size_t place = FIRST_PICTURE; place < FIRST_PICTURE + picturesUsed; ++place)
        if (sheets[place].texture == texture)
            return sheets[place].graphics.lookup().ptr;
    SheetGraphics *const sheet = makeSheet(FIRST_PICTURE + picturesUsed);
    if (!sheet)
        return nullptr;
    sheets[FIRST_PICTURE + picturesUsed].texture = texture;
    sheet->setTexture(texture);
    ++picturesUsed;
    return sheet;
}
