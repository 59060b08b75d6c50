#include "ui/widgets/ButtonComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"

#include <cmath>

namespace
{
constexpr float PAD_X = 22.f, PAD_Y = 9.f; ///< between its edges and its text
constexpr float MARK = 4.f;                ///< width of the mark of the focus
constexpr float LEAST_TEXT = 60.f;         ///< width that a text keeps beside a value
} // namespace

void ButtonComponent::setText(const String &val)
{
    if (text.set(val))
        touch();
}

void ButtonComponent::setTextSize(float val)
{
    if (take(textSize, val, 1.f, 400.f))
        touch();
}

void ButtonComponent::setLook(ButtonLook val)
{
    look = val;
    touch();
}

void ButtonComponent::setAlignment(TextAlignment val)
{
    alignment = val;
    touchPaint();
}

void ButtonComponent::setEnabled(bool val)
{
    if (enabled == val)
        return;
    enabled = val;
    touch(); // the focus may have to go elsewhere
}

void ButtonComponent::setSelected(bool val)
{
    if (selected == val)
        return;
    selected = val;
    touchPaint();
}

void ButtonComponent::setHelp(const String &val)
{
    help = val;
    touchPaint();
}

void ButtonComponent::takeFocus(bool val)
{
    if (focus == val)
        return;
    focus = val;
    touchPaint();
    SavedArguments none(0);
    if (val)
        call(focused, none, "focused");
    else
        leave();
}

void ButtonComponent::press()
{
    SavedArguments none(0);
    call(pressed, none, "pressed");
}

/// By value: what is called may set another in its place.
void ButtonComponent::call(ReflectorPtr function, SavedArguments &arguments, const char *role) const
{
    if (function)
        callOrReport(function, arguments, *this, role);
}

Vec4 ButtonComponent::textColor() const
{
    using namespace WidgetColors;
    if (!enabled)
        return withAlpha(faded, 0.6f);
    return focus ? candle : selected ? paper : look == BL_TAB ? faded : paper;
}

float ButtonComponent::measureWidth(const WidgetStyle &style)
{
    const float letters = style.font ? text.naturalWidth(*style.font, textPixels(style, textSize)) : 0.f;
    return letters + (2.f * PAD_X + valueWidth()) * style.unit;
}

float ButtonComponent::measureHeight(const WidgetStyle &style, float width)
{
    if (!style.font)
        return 0.f;
    const int pixels = textPixels(style, textSize);
    const float room = std::max(width - (2.f * PAD_X + valueWidth()) * style.unit, LEAST_TEXT * style.unit);
    const float lines =
        std::max({text.heightFor(*style.font, pixels, room), valueHeight(style), static_cast<float>(pixels) * 1.2f});
    return lines + 2.f * PAD_Y * style.unit;
}

WidgetRect ButtonComponent::valuePlace(float unit) const
{
    const WidgetRect &place = getPlace();
    const float width = std::min(valueWidth() * unit, place.width * 0.6f);
    return {place.right() - PAD_X * unit - width, place.top, width, place.height};
}

WidgetRect ButtonComponent::textPlace(float unit) const
{
    const WidgetRect room = getPlace().inset(PAD_X * unit, 0.f, PAD_X * unit, 0.f);
    const float value = valueWidth() > 0.f ? valuePlace(unit).width : 0.f;
    return {room.left, room.top, std::max(room.width - value, 1.f), room.height};
}

/// Candlelight behind the one with the focus, and a lit edge.
void ButtonComponent::paintMark(WidgetPainter &painter) const
{
    using namespace WidgetColors;
    const WidgetRect &place = getPlace();
    const float thick = std::max(MARK * painter.unit(), 2.f);
    const float line = std::max(1.5f * painter.unit(), 1.f);
    if (focus)
    {
        painter.shade(place, withAlpha(candle, 0.26f), withAlpha(candle, 0.02f));
        if (look == BL_LINE)
            paintFlame(painter);
        else
            painter.rect({place.left, place.top, thick, place.height}, candle);
    }
    if (look == BL_ROW)
        painter.rect({place.left, place.bottom() - line, place.width, line}, withAlpha(brass, 0.25f));
    if (look == BL_TAB && selected)
        painter.rect({place.left, place.bottom() - thick, place.width, thick}, focus ? candle : brass);
    if (look == BL_ROW && selected && !focus)
        painter.rect({place.left, place.top, thick, place.height}, brass);
}

/// The flame of a candle, in lines of pixels: a drop that ends in a point, lighter within.
void ButtonComponent::paintFlame(WidgetPainter &painter) const
{
    using namespace WidgetColors;
    const float unit = painter.unit(), high = std::round(24.f * unit), half = 4.5f * unit;
    const WidgetRect &place = getPlace();
    const float middle = place.left + PAD_X * 0.5f * unit, top = std::round(place.middleY() - high * 0.55f);
    for (float row = 0.f; row < high; row += 1.f)
    {
        const float part = (row + 0.5f) / high; // from the point down
        const float wide = half * std::sqrt(part) * std::sin(part * 2.6f + 0.5f) * 1.05f;
        if (wide <= 0.f)
            continue;
        painter.rect({middle - wide, top + row, wide * 2.f, 1.f}, withAlpha(candle, 0.55f + 0.45f * part));
        if (part > 0.45f)
            painter.rect({middle - wide * 0.5f, top + row, wide, 1.f}, withAlpha(paper, 0.6f));
    }
}

void ButtonComponent::paint(WidgetPainter &painter)
{
    paintMark(painter);
    const int pixels = textPixels(painter.getStyle(), textSize);
    painter.text(text, textPlace(painter.unit()), pixels, textColor(), look == BL_TAB ? TA_CENTER : alignment);
    if (valueWidth() > 0.f)
        paintValue(painter, valuePlace(painter.unit()));
}
