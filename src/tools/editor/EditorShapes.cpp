#include "tools/editor/EditorShapes.h"

#include "tools/editor/EditorOverlay.h"

#include "foundation/Finite.h"
#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

namespace
{
bool areFinite(const Vec4 &a, const Vec4 &b, const Vec4 &c)
{
    return isFinite(a) && isFinite(b) && isFinite(c);
}
} // namespace

void EditorShapes::line(const String &layer, const Vec4 &from, const Vec4 &to, const Vec4 &color)
{
    if (areFinite(from, to, color))
        layers[layer].lines.push_back(OverlayGraphics::place(frameOf(to - from, Vec4(), Vec4(), from), color, width));
}

void EditorShapes::box(const String &layer, const Matrix4 &placement, const Vec4 &color)
{
    if (areFinite(placement.getColumn(0), placement.getColumn(1), placement.getColumn(2)) &&
        areFinite(placement.getColumn(3), color, color))
        layers[layer].boxes.push_back(OverlayGraphics::place(placement, color, width));
}

void EditorShapes::area(const String &layer, const Vec4 &corner, const Vec4 &edge, const Vec4 &otherEdge,
                        const Vec4 &color)
{
    if (areFinite(corner, edge, otherEdge) && isFinite(color))
        layers[layer].areas.push_back(OverlayGraphics::place(frameOf(edge, Vec4(), otherEdge, corner), color));
}

void EditorShapes::text(const String &layer, const Vec4 &place, const String &words, const Vec4 &color)
{
    if (areFinite(place, color, color) && !words.empty())
        layers[layer].labels.push_back({place, words, color});
}

bool EditorShapes::isEmpty() const
{
    const auto isBare = [](const auto &named)
    {
        const Layer &layer = named.second;
        return layer.lines.empty() && layer.boxes.empty() && layer.areas.empty() && layer.labels.empty();
    };
    return std::all_of(layers.begin(), layers.end(), isBare);
}

void EditorShapes::setBehind(const String &layer, bool val)
{
    layers[layer].behind = val;
}

void EditorShapes::setWidth(float val)
{
    if (std::isfinite(val))
        width = clamp(val, 0.5f, 40.f);
}

void EditorShapes::draw(EditorOverlay &overlay) const
{
    for (const auto &[name, layer] : layers)
    {
        const EditorOverlay::Depth depth = layer.behind ? EditorOverlay::BEHIND : EditorOverlay::OVER_ALL;
        overlay.append(OverlayGraphics::OS_AREA, layer.areas, depth);
        overlay.append(OverlayGraphics::OS_BOX, layer.boxes, depth);
        overlay.append(OverlayGraphics::OS_LINE, layer.lines, depth);
        for (const Label &label : layer.labels)
            overlay.text(label.place, label.words, label.color);
    }
}
