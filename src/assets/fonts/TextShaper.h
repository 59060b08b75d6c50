// TextShaper: what breaking a text into lines needs to know of a font at one size.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

/// A glyph of a shaped run, in pixels, y up.
struct ShapedGlyph
{
    unsigned glyph = 0; ///< number in the font
    std::size_t character =
        0;                ///< place in the run of the first character that it shows; no smaller than the last one's
    float advance = 0.0f; ///< from the pen to the next glyph's, kerning included
    float offsetX = 0.0f; ///< from the pen to where the glyph stands: accents are moved onto their letters
    float offsetY = 0.0f;
};

/// Turns text into glyphs at one size of a font.
class ITextShaper
{
public:
    virtual ~ITextShaper() = default;

    /// Adds the glyphs of a run from left to right, with the font's kerning and ligatures.
    ///
    /// Characters without a look or a width give no glyph. Glyphs of the same character are never drawn apart.
    virtual void shape(std::u32string_view run, std::vector<ShapedGlyph> &glyphs) const = 0;
    /// From a line's upper edge to its baseline, pixels.
    virtual float getAscent() const = 0;
    /// From one baseline to the next, pixels.
    virtual float getLineHeight() const = 0;
};
