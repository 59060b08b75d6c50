#include "assets/fonts/TextBlock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace
{

constexpr unsigned JOINED = 1000; ///< glyph of two f

/// Letters of different widths, of which T and V stand nearer and two f are one glyph.
class Shaper : public ITextShaper
{
public:
    static float advance(char32_t c) { return c == U'i' ? 3.0f : c == U' ' ? 4.0f : 6.0f + (c % 5); }

    void shape(std::u32string_view run, std::vector<ShapedGlyph> &glyphs) const override
    {
        for (std::size_t i = 0; i < run.size(); ++i)
            if (run.substr(i, 2) == U"ff")
                glyphs.push_back({JOINED, i++, 9.0f});
            else
                glyphs.push_back({run[i], i, advance(run[i]) - (run.substr(i, 2) == U"TV" ? 1.5f : 0.0f)});
    }
    float getAscent() const override { return 9.0f; }
    float getLineHeight() const override { return 12.0f; }
};

struct Laid
{
    explicit Laid(const std::string &text, float wrapWidth = 0.0f, TextAlignment alignment = TA_LEFT)
    {
        block.layOut(String::copyFrom(text), Shaper(), {wrapWidth, alignment});
    }

    std::vector<std::string> lines() const
    {
        std::vector<std::string> all;
        for (const TextBlock::Line &line : block.getLines())
        {
            std::string &text = all.emplace_back();
            for (std::size_t i = line.first; i < line.end; ++i)
            {
                const TextBlock::Glyph &glyph = block.getGlyphs()[i];
                text += glyph.glyph == JOINED ? "ff" : std::string(1, static_cast<char>(glyph.character));
            }
        }
        return all;
    }

    TextBlock block;
};

typedef std::vector<std::string> Lines;

} // namespace

TEST(TextBlock, AnyTextKeepsItsLettersAndItsLimit)
{
    for (unsigned seed = 0; seed < 400; ++seed)
    {
        std::mt19937 random(seed);
        std::string text, unbroken, glued;
        for (unsigned i = random() % 120; i > 0; --i)
            text += "aibcdeffg   \n-.TV"[random() % 17];
        std::copy_if(text.begin(), text.end(), std::back_inserter(unbroken), [](char c) { return c != '\n'; });
        const float limit = 10.0f + static_cast<float>(random() % 120);
        const Laid laid(text, limit);
        for (const TextBlock::Line &line : laid.block.getLines())
        {
            float width = 0.0f, inked = 0.0f;
            for (std::size_t i = line.first; i < line.end; ++i)
            {
                const TextBlock::Glyph &glyph = laid.block.getGlyphs()[i];
                EXPECT_NEAR(glyph.x, width, 0.01f);
                width += glyph.width;
                inked = glyph.character == U' ' ? inked : width;
            }
            EXPECT_NEAR(line.width, inked, 0.01f);
            EXPECT_TRUE(line.width <= limit || line.end - line.first == 1) << text;
        }
        for (const std::string &line : laid.lines())
            glued += line;
        EXPECT_EQ(glued, unbroken) << "nothing is lost and nothing is added";
    }
}

TEST(TextBlock, LinesBreakAtSpacesOnlyAndSpacesHangOverTheEdge)
{
    const std::string noBreakSpace = "\xC2\xA0";
    EXPECT_EQ(Laid("aa bb cc", 32).lines(), (Lines{"aa ", "bb ", "cc"}));
    EXPECT_EQ(Laid("aa    bb", 32).lines(), (Lines{"aa    ", "bb"})) << "spaces never begin a wrapped line";
    EXPECT_EQ(Laid("  aa bb", 32).lines(), (Lines{"  aa ", "bb"})) << "but those of the text stay";
    EXPECT_EQ(Laid("aa" + noBreakSpace + "bb cc", 48).lines(), (Lines{"aa\xA0"
                                                                      "bb ",
                                                                      "cc"}));
    EXPECT_EQ(Laid("a bbbbbbb c", 32).lines(), (Lines{"a ", "bbb", "bbb", "b c"})) << "a word that is too long";
    EXPECT_EQ(Laid("offo", 18).lines(), (Lines{"off", "o"})) << "a ligature takes less room than its letters";
    EXPECT_EQ(Laid("ffa", 1).lines(), (Lines{"ff", "a"})) << "a line holds one glyph at least, and that is never split";
    EXPECT_EQ(Laid("a\r\nb\n\n", 0).lines(), (Lines{"a", "b", "", ""}));
    EXPECT_EQ(Laid("a\001b").lines(), (Lines{"ab"})) << "what has no look takes no room";
}

TEST(TextBlock, TabsReachTheNextStopAndLinesAlign)
{
    const Laid tabs("a\tb\n\tb\nabc\tb");
    EXPECT_FLOAT_EQ(tabs.block.getGlyphs()[2].x, 16.0f);
    EXPECT_FLOAT_EQ(tabs.block.getGlyphs()[4].x, 16.0f);
    EXPECT_FLOAT_EQ(tabs.block.getGlyphs().back().x, 32.0f);

    const Laid right("aa \nb", 100, TA_RIGHT), centre("aaaa\nb", 0, TA_CENTER);
    const TextBlock::Glyph &a = right.block.getGlyphs()[1], &b = right.block.getGlyphs()[3];
    EXPECT_FLOAT_EQ(a.x + a.width, 100.0f) << "a space at the end does not count";
    EXPECT_FLOAT_EQ(b.x + b.width, 100.0f);
    const TextBlock::Glyph &middle = centre.block.getGlyphs()[4];
    EXPECT_FLOAT_EQ(middle.x + middle.width / 2, centre.block.getWidth() / 2);
    EXPECT_FLOAT_EQ(centre.block.getHeight(), 24.0f);
    EXPECT_FLOAT_EQ(centre.block.getLines()[1].baseline, 21.0f);
}
