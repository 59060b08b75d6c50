// FontFaces: the face of a font, and those that stand in for characters that it lacks.
#pragma once

#include "assets/fonts/FontFace.h"
#include "assets/fonts/TextShaper.h"

#include "foundation/KVString.h"

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

/// A font's own face and its substitutes, as if they were one.
///
/// Substitutes are the fonts that `assets/fonts/substitutes.txt` names, one a line, in the order in which they are
/// asked. They are read when a character is missing for the first time, once for all fonts, and live as long as the
/// process. A glyph's number tells which face it is of.
class FontFaces
{
public:
    /// Takes the contents of the font's own file, as FontFace::load.
    String load(std::vector<std::uint8_t> fileContents) { return own.load(std::move(fileContents)); }

    /// Adds the glyphs of a run at a size: of the font's own face, wherever that has the characters.
    void shape(std::u32string_view run, float size, std::vector<ShapedGlyph> &glyphs) const;
    /// Draws a glyph that `shape` gave, as FontFace::rasterize.
    void rasterize(unsigned glyph, int pixelSize, float shift, FontFace::Picture &picture);
    /// The font's own face, whose lines all others keep to.
    const FontFace &getOwn() const { return own; }

private:
    FontFace own;
};

/// The bytes of a font file, or a sentence that says why there are none.
/// @param fileName  path, as "..\assets\fonts\Inconsolata.otf"
String readFontFile(const String &fileName, std::vector<std::uint8_t> &bytes);
