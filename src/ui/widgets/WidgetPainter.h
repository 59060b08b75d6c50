// WidgetPainter: what widgets draw themselves with.
#pragma once

#include "ui/widgets/WidgetRect.h"
#include "ui/widgets/WidgetStyle.h"

#include "assets/fonts/TextBlock.h"
#include "object/tree/Handle.h"

#include "foundation/KVString.h"

#include <vector>

class SheetGraphics;
class TextureAsset;
class WidgetText;

/// A text that stands on a screen, for who looks for cut and overlapping ones.
struct PaintedText
{
    String text;
    WidgetRect ink;  ///< what its lines take
    WidgetRect box;  ///< what it was given
    WidgetRect clip; ///< what is seen of it at most
    bool broken;     ///< within a word
};

/// Puts rectangles, pictures and texts on the sheets of one screen, in the order in which they are to lie.
///
/// Lives for one painting of a screen, which owns the sheets. All colours are faded by the opacity in force.
class WidgetPainter
{
public:
    /// Who has sheets: one of plain colour, one for letters, and one for each picture.
    class Sheets
    {
    public:
        virtual SheetGraphics *colorSheet() = 0;
        virtual SheetGraphics *letterSheet() = 0;
        virtual SheetGraphics *pictureSheet(const Handle<TextureAsset> &texture) = 0;

    protected:
        ~Sheets() = default;
    };

    WidgetPainter(Sheets &sheets_, const WidgetStyle &style_, const WidgetRect &window_)
        : sheets(sheets_), style(style_), clip(window_)
    {
    }

    const WidgetStyle &getStyle() const { return style; }
    float unit() const { return style.unit; }
    const WidgetRect &getClip() const { return clip; }
    /// Shows nothing beyond a rectangle from now on; gives what held before, to be set again.
    WidgetRect narrow(const WidgetRect &to);
    void setClip(const WidgetRect &val) { clip = val; }
    float getOpacity() const { return opacity; }
    void setOpacity(float val) { opacity = val; }

    void rect(const WidgetRect &place, const Vec4 &color);
    /// A rectangle whose colour goes from one at its left to another at its right.
    void shade(const WidgetRect &place, const Vec4 &leftColor, const Vec4 &rightColor);
    /// A frame of lines within a rectangle.
    void frame(const WidgetRect &place, float line, const Vec4 &color);
    void picture(const WidgetRect &place, const WidgetRect &image, const Handle<TextureAsset> &texture,
                 const Vec4 &color);
    /// A line of a width from a place (x, y) to another one (z, w), with a picture that lies along it.
    ///
    /// One that is not wholly within what is shown is left out.
    void stroke(const Vec4 &fromTo, float width, const Handle<TextureAsset> &texture, const Vec4 &color);
    /// A text within a box: its lines stand between the box's sides as asked for, and in the middle of its height.
    void text(WidgetText &text, const WidgetRect &box, int pixelSize, const Vec4 &color,
              TextAlignment alignment = TA_LEFT);

    /// Has each text noted as it is painted, until null is given.
    void noteTexts(std::vector<PaintedText> *val) { noted = val; }

private:
    Sheets &sheets;
    const WidgetStyle &style;
    WidgetRect clip;
    float opacity = 1.f;
    std::vector<PaintedText> *noted = nullptr;
};
