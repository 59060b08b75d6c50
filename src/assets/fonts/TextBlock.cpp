#include "assets/fonts/TextBlock.h"

#include "foundation/Utf8.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float TAB_IN_SPACES = 4.0f;

constexpr char32_t NO_BREAK_SPACE = 0xA0;
constexpr char32_t FIGURE_SPACE = 0x2007; ///< as wide as a digit, no break
constexpr char32_t ZERO_WIDTH_SPACE = 0x200B;
constexpr char32_t NARROW_NO_BREAK_SPACE = 0x202F;
constexpr char32_t IDEOGRAPHIC_SPACE = 0x3000;

bool isNoBreakSpace(char32_t c)
{
    return c == NO_BREAK_SPACE || c == FIGURE_SPACE || c == NARROW_NO_BREAK_SPACE;
}

bool isLeftOut(char32_t c)
{
    return (c < 0x20 && c != U'\t' && c != U'\n') || (c >= 0x7F && c < 0xA0);
}

/// What is placed together; a line may end between two of them.
enum RunKind
{
    WORD,
    SPACES,
    TAB,
    LINE_FEED
};

RunKind kindOf(char32_t c)
{
    if (c == U'\n')
        return LINE_FEED;
    if (c == U'\t')
        return TAB;
    return TextBlock::isSpace(c) && !isNoBreakSpace(c) ? SPACES : WORD;
}

} // namespace

bool TextBlock::isSpace(char32_t c)
{
    return c == U' ' || c == U'\t' || (c >= 0x2000 && c <= ZERO_WIDTH_SPACE) || c == IDEOGRAPHIC_SPACE ||
           isNoBreakSpace(c);
}

/// The layout while it goes through the text.
class TextBlock::Breaker
{
public:
    Breaker(TextBlock &block_, const ITextShaper &shaper_, float limit_) : block(block_), shaper(shaper_), limit(limit_)
    {
    }

    void addSpaces(std::u32string_view run)
    {
        shape(run);
        for (const ShapedGlyph &glyph : block.shaped)
            place(run, glyph);
    }

    void addWord(std::u32string_view run)
    {
        shape(run);
        float width = 0.0f;
        for (const ShapedGlyph &glyph : block.shaped)
            width += glyph.advance;
        if (limit > 0.0f && pen + width > limit && lineHasInk)
            endLine();
        for (std::size_t begin = 0, end; begin < block.shaped.size(); begin = end)
        {
            end = findClusterEnd(begin);
            addCluster(run, begin, end);
        }
    }

    void addTab()
    {
        const std::u32string_view space = U" ";
        shape(space);
        if (block.shaped.empty())
            return;
        const float stop = TAB_IN_SPACES * block.shaped.front().advance;
        ShapedGlyph tab = block.shaped.front();
        tab.advance = stop > 0.0f ? stop * (std::floor(pen / stop + 0.001f) + 1.0f) - pen : 0.0f;
        place(U"\t", tab);
    }

    /// Ends the line at the pen; what follows begins the next one.
    void endLine()
    {
        Line &line = block.lines.emplace_back();
        line.first = lineBegin;
        line.end = block.glyphs.size();
        line.baseline = shaper.getAscent() + shaper.getLineHeight() * static_cast<float>(block.lines.size() - 1);
        line.width = lineHasInk ? inkEnd : 0.0f;
        lineBegin = line.end;
        lineHasInk = false;
        pen = 0.0f;
    }

private:
    void shape(std::u32string_view run)
    {
        block.shaped.clear();
        shaper.shape(run, block.shaped);
    }

    /// Glyphs of one character, or of several that the font joins, stay on one line.
    std::size_t findClusterEnd(std::size_t begin) const
    {
        const std::vector<ShapedGlyph> &shaped = block.shaped;
        std::size_t end = begin + 1;
        while (end < shaped.size() && shaped[end].character == shaped[begin].character)
            ++end;
        return end;
    }

    void addCluster(std::u32string_view run, std::size_t begin, std::size_t end)
    {
        float width = 0.0f;
        for (std::size_t i = begin; i < end; ++i)
            width += block.shaped[i].advance;
        if (limit > 0.0f && pen + width > limit && lineBegin < block.glyphs.size())
            endLine(); // the word alone is too wide, or what the line begins with
        for (std::size_t i = begin; i < end; ++i)
            place(run, block.shaped[i]);
        inkEnd = pen;
        lineHasInk = true;
    }

    void place(std::u32string_view run, const ShapedGlyph &glyph)
    {
        block.glyphs.push_back({glyph.glyph, run[glyph.character], pen + glyph.offsetX, glyph.offsetY, glyph.advance});
        pen += glyph.advance;
    }

    TextBlock &block;
    const ITextShaper &shaper;
    const float limit;
    std::size_t lineBegin = 0; ///< first glyph of the line
    float pen = 0.0f;          ///< pixels from the line's begin
    float inkEnd = 0.0f;       ///< where the pen stood behind the last word
    bool lineHasInk = false;   ///< the line has a word, or a part of one
};

void TextBlock::layOut(const String &text, const ITextShaper &shaper, const TextBlockParams &params)
{
    characters.clear();
    glyphs.clear();
    lines.clear();
    const char *const end = text.end();
    for (const char *at = text.begin(); at != end;)
    {
        const char32_t character = nextUtf8Character(at, end);
        if (!isLeftOut(character))
            characters.push_back(character);
    }
    breakLines(shaper, params.wrapWidth);

    width = 0.0f;
    for (const Line &line : lines)
        width = std::max(width, line.width);
    height = shaper.getLineHeight() * static_cast<float>(lines.size());
    align(params);
}

void TextBlock::breakLines(const ITextShaper &shaper, float limit)
{
    Breaker breaker(*this, shaper, limit);
    const std::u32string_view all = characters;
    for (std::size_t begin = 0, end; begin < all.size(); begin = end)
    {
        const RunKind kind = kindOf(all[begin]);
        end = begin + 1;
        while ((kind == WORD || kind == SPACES) && end < all.size() && kindOf(all[end]) == kind)
            ++end;
        const std::u32string_view run = all.substr(begin, end - begin);
        switch (kind)
        {
        case WORD:
            breaker.addWord(run);
            break;
        case SPACES:
            breaker.addSpaces(run);
            break;
        case TAB:
            breaker.addTab();
            break;
        case LINE_FEED:
            breaker.endLine();
            break;
        }
    }
    if (!all.empty())
        breaker.endLine();
}

void TextBlock::align(const TextBlockParams &params)
{
    if (params.alignment == TA_LEFT)
        return;
    const float room = params.wrapWidth > 0.0f ? params.wrapWidth : width;
    const float part = params.alignment == TA_CENTER ? 0.5f : 1.0f;
    for (const Line &line : lines)
        for (std::size_t i = line.first; i < line.end; ++i)
            glyphs[i].x += (room - line.width) * part;
}
