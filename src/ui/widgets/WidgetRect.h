// WidgetRect: a rectangle of a screen.
#pragma once

#include <algorithm>

/// Pixels of the picture, x to the right and y down from its upper left corner.
struct WidgetRect
{
    float left = 0.f;
    float top = 0.f;
    float width = 0.f;
    float height = 0.f;

    float right() const { return left + width; }
    float bottom() const { return top + height; }
    float middleX() const { return left + width * 0.5f; }
    float middleY() const { return top + height * 0.5f; }
    bool contains(float x, float y) const { return x >= left && x < right() && y >= top && y < bottom(); }
    bool isEmpty() const { return !(width > 0.f && height > 0.f); }

    /// What lies this far inside each edge; never less than nothing.
    WidgetRect inset(float atLeft, float atTop, float atRight, float atBottom) const
    {
        return {left + atLeft, top + atTop, std::max(width - atLeft - atRight, 0.f),
                std::max(height - atTop - atBottom, 0.f)};
    }
    WidgetRect inset(float by) const { return inset(by, by, by, by); }
    WidgetRect moved(float x, float y) const { return {left + x, top + y, width, height}; }
    /// The largest place of this shape in its middle.
    WidgetRect fitted(float shapeWidth, float shapeHeight) const
    {
        const float scale = std::min(width / shapeWidth, height / shapeHeight);
        const float w = shapeWidth * scale, h = shapeHeight * scale;
        return {middleX() - w * 0.5f, middleY() - h * 0.5f, w, h};
    }
    /// What both have in common; empty where that is nothing.
    WidgetRect common(const WidgetRect &other) const
    {
        const float l = std::max(left, other.left), t = std::max(top, other.top);
        return {l, t, std::max(std::min(right(), other.right()) - l, 0.f),
                std::max(std::min(bottom(), other.bottom()) - t, 0.f)};
    }
};
