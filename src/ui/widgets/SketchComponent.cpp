#include "ui/widgets/SketchComponent.h"

#include "ui/widgets/WidgetPainter.h"

#include "assets/cache/TextureAsset.h"
#include "rendering/drawn/SurfaceTextures.h"

#include <algorithm>
#include <cmath>

namespace
{
bool isDrawable(const Vec4 &val)
{
    return std::isfinite(val.x) && std::isfinite(val.y) && std::isfinite(val.z) && std::isfinite(val.w);
}
} // namespace

SketchComponent::SketchComponent() = default;

void SketchComponent::addStroke(const Vec4 &fromTo)
{
    if (!isDrawable(fromTo) || strokes.size() >= MOST_STROKES)
        return;
    if (!ink.isValid())
        ink = requestTexture(SCS("inkStroke"));
    strokes.push_back(fromTo);
    touchPaint();
}

void SketchComponent::addText(const String &text, const Vec4 &place)
{
    if (!isDrawable(place) || texts.size() >= MOST_STROKES)
        return;
    texts.emplace_back();
    texts.back().text.set(text);
    texts.back().place = place;
    touchPaint();
}

void SketchComponent::clear()
{
    strokes.clear();
    texts.clear();
    touchPaint();
}

void SketchComponent::setSketchWidth(float val)
{
    if (take(sketchWidth, val, 1.f, MOST))
        touch();
}

void SketchComponent::setSketchHeight(float val)
{
    if (take(sketchHeight, val, 1.f, MOST))
        touch();
}

void SketchComponent::setPen(float val)
{
    if (take(pen, val, 0.1f, 400.f))
        touchPaint();
}

void SketchComponent::setColor(const Vec4 &val)
{
    if (take(color, val, 0.f, 1.f))
        touchPaint();
}

void SketchComponent::setPaper(const Vec4 &val)
{
    if (take(paper, val, 0.f, 1.f))
        touchPaint();
}

float SketchComponent::measureWidth(const WidgetStyle &style)
{
    return sketchWidth * style.unit;
}

float SketchComponent::measureHeight(const WidgetStyle &style, float width)
{
    return sketchHeight * style.unit * std::min(width / std::max(sketchWidth * style.unit, 1.f), 1.f);
}

void SketchComponent::paint(WidgetPainter &painter)
{
    const WidgetRect sheet = getPlace().fitted(sketchWidth, sketchHeight);
    const float scale = sheet.width / sketchWidth;
    painter.rect(sheet, paper);
    const auto x = [&](float val) { return sheet.left + val * scale; };
    const auto y = [&](float val) { return sheet.top + val * scale; };
    for (const Vec4 &stroke : strokes)
        painter.stroke({x(stroke.x), y(stroke.y), x(stroke.z), y(stroke.w)}, std::max(pen * scale, 1.f), ink, color);
    for (Written &written : texts)
    {
        const float width = std::max(written.place.z, 0.f) * scale;
        const float size = std::clamp(written.place.w * scale, 1.f, 400.f);
        const WidgetRect box{x(written.place.x) - width * 0.5f, y(written.place.y) - size, width, size * 2.f};
        painter.text(written.text, box, static_cast<int>(std::lround(size)), color, TA_CENTER);
    }
}
