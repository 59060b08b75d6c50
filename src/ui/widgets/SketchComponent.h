// SketchComponent: what is drawn by hand on a screen.
#pragma once

#include "ui/widgets/WidgetComponent.h"
#include "ui/widgets/WidgetText.h"

#include <vector>

class TextureAsset;

/// Strokes of a pen and words beside them, under the component key "form".
///
/// Places on it are its own: x to the right and y down from its upper left corner, 0 to `sketchWidth` and
/// `sketchHeight`, which are its wish of a size, too, in the lengths of all widgets. It is as large as it can be in its
/// place without losing its shape.
class SketchComponent : public WidgetComponent
{
    KV_REFLECTED(SketchComponent)
public:
    static constexpr std::size_t MOST_STROKES = 8192; ///< further ones are left out

    SketchComponent();

    /// Draws a stroke from a place (x, y) to another one (z, w); nothing where they are no finite numbers.
    void addStroke(const Vec4 &fromTo);
    /// Writes a text in the middle of a place (x, y) within a width (z), with letters of a size (w).
    void addText(const String &text, const Vec4 &place);
    /// Takes all strokes and texts away.
    void clear();

    float getSketchWidth() const { return sketchWidth; }
    /// Width of what is drawn on.
    void setSketchWidth(float val);
    float getSketchHeight() const { return sketchHeight; }
    /// Height of what is drawn on.
    void setSketchHeight(float val);
    float getPen() const { return pen; }
    /// Width of the pen that draws all strokes.
    void setPen(float val);
    Vec4 getColor() const { return color; }
    /// Colour of the ink, alpha in w.
    void setColor(const Vec4 &val);
    Vec4 getPaper() const { return paper; }
    /// Colour of what is drawn on, alpha in w; 0 for nothing.
    void setPaper(const Vec4 &val);

protected:
    float measureWidth(const WidgetStyle &style) override;
    float measureHeight(const WidgetStyle &style, float width) override;
    void paint(WidgetPainter &painter) override;

private:
    struct Written
    {
        WidgetText text;
        Vec4 place; ///< x, y, width, size
    };

    float sketchWidth = 400.f;
    float sketchHeight = 300.f;
    float pen = 3.f;
    Vec4 color = Vec4(0.1f, 0.08f, 0.06f, 1.f);
    Vec4 paper;
    std::vector<Vec4> strokes; ///< x, y to z, w
    std::vector<Written> texts;
    Handle<TextureAsset> ink; ///< requested when something is drawn with it
};
