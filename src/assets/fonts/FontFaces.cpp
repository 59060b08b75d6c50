#include "assets/fonts/FontFaces.h"

#include "assets/files/ContentOverrides.h"
#include "assets/fonts/TextBlock.h"
#include "foundation/Logger.h"
#include "port/win32/HostPath.h"

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

namespace
{

/// Bits of a glyph's number that are the font's own; those above tell the face, 0 for the font's own one.
constexpr unsigned FACE_SHIFT = 16;
constexpr unsigned GLYPH_MASK = (1u << FACE_SHIFT) - 1;

typedef std::vector<std::unique_ptr<FontFace>> Faces;

void addSubstitute(const String &fileName, Faces &faces)
{
    std::vector<std::uint8_t> contents;
    auto face = std::make_unique<FontFace>();
    String fault = readFontFile(fileName, contents);
    if (fault.empty())
        fault = face->load(std::move(contents));
    if (fault.empty())
        faces.push_back(std::move(face));
    else
        KV_LOGF(Logger_::I_ERROR, "The font %s, which ..\\assets\\fonts\\substitutes.txt names, stands in for none. %s",
                fileName.toCString(), fault.toCString());
}

Faces readSubstitutes()
{
    Faces faces;
    std::vector<std::uint8_t> bytes;
    if (!readFontFile(SCS("..\\assets\\fonts\\substitutes.txt"), bytes).empty())
        return faces; // a game may go without
    std::istringstream lines(std::string(bytes.begin(), bytes.end()));
    for (std::string line; std::getline(lines, line);)
        if (!line.empty() && line[0] != '#')
            addSubstitute(contentFile(SCS("fonts/") + String::copyFrom(line.c_str())), faces);
    return faces;
}

const Faces &substitutes()
{
    static const Faces faces = readSubstitutes();
    return faces;
}

/// Joins letters, or keeps them apart, in the face that they are of.
bool joins(char32_t character)
{
    return character == U'\u200C' || character == U'\u200D';
}

/// Number of the face that a character is drawn from: of the font's own for what no face has.
unsigned faceOf(const FontFace &own, char32_t character, unsigned previous)
{
    if (joins(character))
        return previous;
    if (own.has(character) || TextBlock::isSpace(character))
        return 0;
    const Faces &others = substitutes();
    for (unsigned i = 0; i < others.size(); ++i)
        if (others[i]->has(character))
            return i + 1;
    return 0;
}

} // namespace

String readFontFile(const String &fileName, std::vector<std::uint8_t> &bytes)
{
    std::ifstream in(port::hostPath(fileName.toCString()), std::ios::binary);
    if (!in)
        return String::copyFrom(port::explainMissingFile(fileName.toCString()));
    // Through a stream: a folder opens like a file, and fails with an exception where bytes are taken one by one.
    std::ostringstream contents;
    contents << in.rdbuf();
    const std::string text = std::move(contents).str();
    bytes.assign(text.begin(), text.end());
    return bytes.empty() ? SCS("It is empty, or a folder.") : String();
}

void FontFaces::shape(std::u32string_view run, float size, std::vector<ShapedGlyph> &glyphs) const
{
    unsigned face = run.empty() ? 0 : faceOf(own, run[0], 0);
    for (std::size_t begin = 0, end = 0; begin < run.size(); begin = end)
    {
        const unsigned current = face;
        for (end = begin + 1; end < run.size(); ++end)
        {
            face = faceOf(own, run[end], current);
            if (face != current)
                break;
        }
        const std::size_t first = glyphs.size();
        const FontFace &drawnBy = current == 0 ? own : *substitutes()[current - 1];
        drawnBy.shape(run.substr(begin, end - begin), size, glyphs);
        for (std::size_t i = first; i < glyphs.size(); ++i)
        {
            glyphs[i].glyph |= current << FACE_SHIFT;
            glyphs[i].character += begin;
        }
    }
}

void FontFaces::rasterize(unsigned glyph, int pixelSize, float shift, FontFace::Picture &picture)
{
    const unsigned face = glyph >> FACE_SHIFT;
    FontFace &drawnBy = face == 0 ? own : *substitutes()[face - 1];
    drawnBy.rasterize(glyph & GLYPH_MASK, pixelSize, shift, picture);
}
