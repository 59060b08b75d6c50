// FontFace: the outlines and measures of one font file, apart from what is drawn of them.
#pragma once

#include "assets/fonts/TextShaper.h"

#include "foundation/KVString.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// One face of a font file in memory.
///
/// Measures are fractions of the font's size (its em) unless a size is given. A glyph number is the font's own.
class FontFace
{
public:
    /// A glyph as rows of coverage, 0 to 255, the top row first.
    struct Picture
    {
        int left = 0;  ///< pixels from the pen to the first column
        int top = 0;   ///< pixels from the baseline up to the upper edge of the first row
        int width = 0; ///< pixels; 0 for a glyph without ink
        int height = 0;
        std::vector<std::uint8_t> rows; ///< width bytes each
    };

    FontFace();
    ~FontFace();
    FontFace(const FontFace &) = delete;
    FontFace &operator=(const FontFace &) = delete;

    /// Takes the contents of a font file; to be called once, and first.
    /// @return empty, or what is wrong with the contents, as a sentence; nothing else may be called then
    String load(std::vector<std::uint8_t> fileContents);

    /// Whether the font has a glyph for a character.
    bool has(char32_t character) const;
    /// Adds the glyphs of a run of characters at a size, as ITextShaper has it.
    ///
    /// Missing characters become the font's replacement character, or else its question mark or box.
    /// @param size  pixels of one em
    void shape(std::u32string_view run, float size, std::vector<ShapedGlyph> &glyphs) const;
    /// Height of the tallest letters above the baseline.
    float getAscent() const { return ascent; }
    /// From one baseline to the next.
    float getLineHeight() const { return lineHeight; }

    /// Draws a glyph at a size, shifted right by a fraction of a pixel.
    ///
    /// Outlines are fitted to the pixel rows and not to the columns, so that letters are sharp and stand where the
    /// measures say. A glyph that cannot be drawn gives an empty picture.
    void rasterize(unsigned glyph, int pixelSize, float shift, Picture &picture);

private:
    struct Library;

    String chooseCharacters();
    String prepareShaping();
    unsigned findReplacement();

    std::vector<std::uint8_t> contents; ///< read by the libraries as long as the face lives
    std::unique_ptr<Library> library;
    float emsPerUnit = 0.0f; ///< ems of one unit of the font's own
    float ascent = 0.0f;
    float lineHeight = 0.0f;
    unsigned replacementGlyph = 0;
};
