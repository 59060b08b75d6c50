// TextBlock: a text broken into lines, with a place for every glyph.
#pragma once

#include "assets/fonts/TextShaper.h"

#include "foundation/KVString.h"

#include <cstddef>
#include <string>
#include <vector>

/// Where the lines of a text stand in its width.
enum TextAlignment
{
    TA_LEFT = 0,
    TA_CENTER = 1,
    TA_RIGHT = 2
};

/// How a text is to be laid out.
struct TextBlockParams
{
    float wrapWidth = 0.0f; ///< pixels that a line may take; 0 or less: lines end where the text says
    TextAlignment alignment = TA_LEFT;

    bool operator==(const TextBlockParams &) const = default;
};

/// A laid-out text. Pixels, x to the right from the block's left edge, y down from its upper edge.
///
/// A line feed ends a line; a carriage return is ignored. A line that would be wider than the wrap width ends at its
/// last space, or, where a word alone is too wide, within the word, but never within a ligature or before an accent.
/// Words are shaped as wholes, so that no kerning reaches over a space. Spaces at the end of a line hang over its
/// edge: they neither count for its width nor cause a break. A tab reaches to the next multiple of four spaces. Lines
/// do not break at no-break spaces. Other control characters are left out. Bytes that are no UTF-8 become replacement
/// characters. All text runs from left to right. Lists are kept for the next layout.
class TextBlock
{
public:
    /// One glyph that a font is asked to draw, or a space.
    struct Glyph
    {
        unsigned glyph = 0;     ///< number in the font
        char32_t character = 0; ///< first of those that it shows
        float x = 0.0f;         ///< pixels from the block's left edge to where it stands
        float rise = 0.0f;      ///< pixels from the baseline up to where it stands
        float width = 0.0f;     ///< advance, pixels
    };
    /// Glyphs from `first` to before `end`.
    struct Line
    {
        std::size_t first = 0;
        std::size_t end = 0;
        float baseline = 0.0f; ///< pixels below the block's upper edge
        float width = 0.0f;    ///< pixels, without spaces at the end
    };

    /// Lays a text out anew.
    void layOut(const String &text, const ITextShaper &shaper, const TextBlockParams &params);

    const std::vector<Glyph> &getGlyphs() const { return glyphs; }
    const std::vector<Line> &getLines() const { return lines; }
    /// Width of the widest line, pixels.
    float getWidth() const { return width; }
    /// Line height times the number of lines, pixels; 0 for an empty text.
    float getHeight() const { return height; }

    /// Whether a character is never drawn, but takes room.
    static bool isSpace(char32_t character);

private:
    class Breaker;

    void breakLines(const ITextShaper &shaper, float limit);
    void align(const TextBlockParams &params);

    std::u32string characters;       ///< the text without what is left out
    std::vector<ShapedGlyph> shaped; ///< the run that is being placed
    std::vector<Glyph> glyphs;
    std::vector<Line> lines;
    float width = 0.0f;
    float height = 0.0f;
};
