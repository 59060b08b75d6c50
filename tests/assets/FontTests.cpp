#include "assets/cache/AssetUploader.h"
#include "assets/fonts/FontAsset.h"
#include "assets/fonts/TextBlock.h"
#include "assets/cache/TextureAsset.h"
#include "support/TemporaryFile.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <vector>

namespace
{

typedef std::vector<std::uint8_t> Bytes;

constexpr const char *SERIF = KV_SOURCE_DIR "/assets/fonts/LindenHill.otf";

class Fonts : public testing::Test, public IAssetUploader
{
protected:
    Fonts() : before(setAssetUploader(this)) {}
    ~Fonts() override { setAssetUploader(before); }

    ErrorCode uploadTexture(Handle<TextureAsset>) override { return ErrorCode(); }
    String replaceTexture(Handle<TextureAsset>) override { return String(); }
    ErrorCode uploadMesh(Handle<MeshAsset>) override { return ErrorCode(); }
    ErrorCode uploadCoverage(Handle<TextureAsset>, const CoverageImage &image) override
    {
        changes.push_back(image.changed);
        return ErrorCode();
    }

    FontAsset &load(const String &fileName)
    {
        FontAsset &font = *construct<FontAsset>(defaultAllocationCategory).lookup();
        font.setParent(level.level);
        font.setFileName(fileName);
        font.startLoad();
        return font;
    }

    /// What the atlas shows where a glyph is said to be.
    static Bytes picture(FontAsset &font, char32_t c, int size = 24)
    {
        const FontAsset::Glyph glyph = font.getGlyph(glyphOf(font, c), size, 0);
        Bytes pixels;
        for (int y = glyph.place.y; y < glyph.place.y + glyph.height; ++y)
        {
            const auto row = font.getAtlas().getRows().begin() + y * font.getAtlas().getWidth() + glyph.place.x;
            pixels.insert(pixels.end(), row, row + glyph.width);
        }
        return pixels;
    }
    static std::vector<ShapedGlyph> shape(const FontAsset &font, std::u32string_view run, int size = 24)
    {
        std::vector<ShapedGlyph> glyphs;
        font.getShaper(size).shape(run, glyphs);
        return glyphs;
    }
    static unsigned glyphOf(const FontAsset &font, char32_t c) { return shape(font, {&c, 1}).at(0).glyph; }
    TestLevel level;
    std::vector<PixelRectangle> changes;

private:
    IAssetUploader *before;
};

} // namespace

TEST_F(Fonts, LettersAreKernedJoinedAndAccented)
{
    const FontAsset &font = load(SCS(SERIF));
    const auto width = [&](std::u32string_view run)
    {
        float sum = 0.0f;
        for (const ShapedGlyph &glyph : shape(font, run, 40))
            sum += glyph.advance;
        return sum;
    };
    EXPECT_LT(width(U"AV"), width(U"A") + width(U"V") - 1.0f) << "the pair of the textbooks stands nearer";
    EXPECT_LT(width(U"To"), width(U"T") + width(U"o") - 1.0f);
    EXPECT_FLOAT_EQ(width(U"HH"), 2 * width(U"H"));

    const std::vector<ShapedGlyph> office = shape(font, U"office");
    ASSERT_EQ(office.size(), 4u) << "o, ffi, c, e";
    EXPECT_EQ(office[2].character, 4u);
    EXPECT_EQ(shape(font, U"a\u0308").at(0).glyph, glyphOf(font, U'ä')) << "letter and accent are one";
    EXPECT_EQ(shape(font, U"x\u0308").at(1).character, 0u) << "or belong together";
    EXPECT_EQ(shape(font, U"\uFEFFa\u2060b\u200B").size(), 2u) << "what has no look has no glyph";
    EXPECT_EQ(glyphOf(font, 0x4E00), glyphOf(font, 0x2603)) << "what is missing looks the same";
    EXPECT_EQ(glyphOf(font, 0x3000), glyphOf(font, U' ')) << "few fonts have all the spaces";
    TextBlock block;
    block.layOut(SCS("AVATAR: To Wörter"), font.getShaper(40), {});
    EXPECT_NEAR(block.getWidth(), width(U"AVATAR:") + width(U"To") + width(U"Wörter") + 2 * width(U" "), 0.01f);
}

TEST_F(Fonts, WhatAFontLacksIsShapedAndDrawnBySubstitutesInOneText)
{
    FontAsset &font = load(SCS(SERIF));
    const std::u32string_view door = U"\u0926\u094D\u0935\u093F"; // da, virama, va, i: one cluster, the i before it
    const std::vector<ShapedGlyph> alone = shape(font, door);
    ASSERT_EQ(alone.size(), 2u) << "two consonants are one letter, and the vowel stands in front of it";
    EXPECT_EQ(alone[0].character, alone[1].character) << "which are not drawn apart";
    EXPECT_GT(picture(font, U'\u0926').size(), 0u);

    const std::vector<ShapedGlyph> mixed = shape(font, U"A" + std::u32string(door) + U"b");
    ASSERT_EQ(mixed.size(), 4u);
    EXPECT_EQ(mixed[0].glyph, glyphOf(font, U'A'));
    EXPECT_EQ(mixed[1].glyph, alone[0].glyph);
    EXPECT_EQ(mixed[1].character, 1u);
    EXPECT_EQ(mixed[3].glyph, glyphOf(font, U'b')) << "the font's own letters stay its own";
    EXPECT_EQ(mixed[3].character, 5u);
}

TEST_F(Fonts, AtlasGrowsAndStartsAnewWithEveryGlyphRight)
{
    FontAsset &font = load(SCS(SERIF));
    const Bytes first = picture(font, U'g', 64);
    font.updateTexture();
    ASSERT_EQ(changes.size(), 1u);
    const int smallest = font.getAtlas().getWidth();
    for (int size = 20; font.getAtlas().getRestarts() == 0; size += 2)
    {
        ASSERT_LE(size, FontAsset::LARGEST_PIXEL_SIZE) << "the atlas should be full by now";
        for (char32_t c = U'!'; c < 0x7F && font.getAtlas().getRestarts() == 0; ++c)
            font.getGlyph(c, size, static_cast<int>(c) % FontAsset::SHIFTS); // any glyph will do
        if (font.getAtlas().getRestarts() == 0)
        {
            ASSERT_EQ(picture(font, U'g', 64), first) << "after size " << size;
        }
    }
    EXPECT_GT(font.getAtlas().getWidth(), smallest);
    EXPECT_LE(font.getAtlas().getHeight(), GlyphAtlas::LARGEST_SIDE);
    EXPECT_EQ(picture(font, U'g', 64), first) << "drawn again after the atlas started anew";
    font.updateTexture();
    font.updateTexture();
    ASSERT_EQ(changes.size(), 2u) << "what has not changed is not uploaded";
    EXPECT_EQ(changes[1].right, font.getAtlas().getWidth()) << "a grown atlas goes to the device whole";
}

TEST_F(Fonts, FileThatIsNoFontIsNamedWithTheReason)
{
    const TemporaryFile broken("broken.ttf");
    std::ofstream(broken.name().toCString()) << "no font at all";
    EXPECT_EQ(load(broken.name()).getStatus().getCode(), ErrorCode::LOST_ASSET);
    EXPECT_EQ(load(SCS("..\\assets\\fonts\\lindenhill.otf")).getStatus().getCode(), ErrorCode::LOST_ASSET);
    EXPECT_EQ(countLogLines("broken.ttf did not load; texts that use it are not drawn. It is no font file"), 1u);
    EXPECT_EQ(countLogLines("there is \"LindenHill.otf\""), 1u);
}

TEST_F(Fonts, DamagedFilesAreRefusedOrDrawnButNeverReadBeyond)
{
    std::ifstream in(SERIF, std::ios::binary);
    const Bytes sound((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    FontFace::Picture picture;
    for (unsigned seed = 0; seed < 150; ++seed)
    {
        std::mt19937 random(seed);
        Bytes damaged = sound;
        if (seed % 3 == 0)
            damaged.resize(random() % damaged.size());
        for (unsigned i = 0; i < 40 && !damaged.empty(); ++i)
            damaged[random() % (seed % 2 ? 2000 : damaged.size()) % damaged.size()] =
                static_cast<std::uint8_t>(random());
        FontFace face;
        if (!face.load(std::move(damaged)).empty())
            continue;
        std::vector<ShapedGlyph> glyphs;
        face.shape(U"AVATAR Tofließen x\u0308", 20.0f, glyphs);
        for (const ShapedGlyph &glyph : glyphs)
            face.rasterize(glyph.glyph, 20, 0.25f, picture);
    }
}
