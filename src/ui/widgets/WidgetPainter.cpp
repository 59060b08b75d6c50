#include "ui/widgets/WidgetPainter.h"

#include "ui/widgets/SheetGraphics.h"
#include "ui/widgets/WidgetText.h"

#include "assets/fonts/FontAsset.h"

#include <cmath>

using WidgetColors::withAlpha;

namespace
{
constexpr WidgetRect WHOLE_IMAGE{0.f, 0.f, 1.f, 1.f};

/// Edges on whole pixels, so that a line is as sharp as its letters.
WidgetRect onPixels(const WidgetRect &place)
{
    const float left = std::round(place.left), top = std::round(place.top);
    return {left, top, std::round(place.right()) - left, std::round(place.bottom()) - top};
}
} // namespace

WidgetRect WidgetPainter::narrow(const WidgetRect &to)
{
    const WidgetRect before = clip;
    clip = clip.common(onPixels(to));
    return before;
}

void WidgetPainter::rect(const WidgetRect &place, const Vec4 &color)
{
    if (SheetGraphics *const sheet = sheets.colorSheet())
        sheet->addRect(onPixels(place), WHOLE_IMAGE, withAlpha(color, opacity), clip);
}

void WidgetPainter::shade(const WidgetRect &place, const Vec4 &leftColor, const Vec4 &rightColor)
{
    if (SheetGraphics *const sheet = sheets.colorSheet())
        sheet->addShade(onPixels(place), withAlpha(leftColor, opacity), withAlpha(rightColor, opacity), clip);
}

void WidgetPainter::frame(const WidgetRect &place, float line, const Vec4 &color)
{
    const float thick = std::max(std::round(line), 1.f);
    const WidgetRect whole = onPixels(place);
    rect({whole.left, whole.top, whole.width, thick}, color);
    rect({whole.left, whole.bottom() - thick, whole.width, thick}, color);
    rect({whole.left, whole.top + thick, thick, whole.height - 2.f * thick}, color);
    rect({whole.right() - thick, whole.top + thick, thick, whole.height - 2.f * thick}, color);
}

void WidgetPainter::picture(const WidgetRect &place, const WidgetRect &image, const Handle<TextureAsset> &texture,
                            const Vec4 &color)
{
    SheetGraphics *const sheet = texture.isValid() ? sheets.pictureSheet(texture) : nullptr;
    if (sheet)
        sheet->addRect(onPixels(place), image, withAlpha(color, opacity), clip);
}

void WidgetPainter::stroke(const Vec4 &fromTo, float width, const Handle<TextureAsset> &texture, const Vec4 &color)
{
    SheetGraphics *const sheet = texture.isValid() ? sheets.pictureSheet(texture) : nullptr;
    if (sheet)
        sheet->addStroke(fromTo, width, withAlpha(color, opacity), clip);
}

void WidgetPainter::text(WidgetText &text, const WidgetRect &box, int pixelSize, const Vec4 &color,
                         TextAlignment alignment)
{
    SheetGraphics *const sheet = sheets.letterSheet();
    if (!style.font || !sheet || text.get().empty())
        return;
    const TextBlock &block = text.fit(*style.font, pixelSize, box.width, alignment);
    const float top = std::round(box.top + (box.height - block.getHeight()) * 0.5f);
    sheet->addText(block, *style.font, text.getFittedSize(), std::round(box.left), top, withAlpha(color, opacity),
                   clip);
    if (!noted)
        return;
    const float free = std::floor(box.width) - block.getWidth();
    const float left = box.left + (alignment == TA_LEFT ? 0.f : alignment == TA_CENTER ? free * 0.5f : free);
    noted->push_back({text.get(), {left, top, block.getWidth(), block.getHeight()}, box, clip, text.isBroken()});
}
