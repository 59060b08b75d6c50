#include "RenderingWorld.h"
#include "ScreenPicture.h"

#include "assets/fonts/FontAsset.h"
#include "port/d3d9/D3D9Extras.h"
#include "rendering/drawn/TextComponent2.h"
#include "platform/window/WindowSystem2.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{

class ScreenText : public testing::Test, public RenderingWorld
{
protected:
    TextComponent2 &text(const char *shown, Vec4 place = Vec4(0, 0, 0, 1))
    {
        const Handle<Entity> entity = level.entity("text");
        level.transform(entity, place);
        TextComponent2 &component = *level.component<TextComponent2>(entity, "graphics2").lookup();
        component.setText(String::copyFrom(shown));
        component.setFontSize(0.15f);
        component.setLayer(SceneGraph::SCREEN);
        component.onLoadComplete();
        return component;
    }
    std::uint64_t uploadedBytesOfAFrame()
    {
        level.frame();
        return port::lastFrameStats(realGraphicsDevice()).uploadBytes;
    }

    const OnRealDevice real{*this};
};

} // namespace

TEST_F(ScreenText, LettersStandOnWholePixelsAsTheFontDrawsThemInAnyWindow)
{
    for (const auto &[width, height] : {std::pair(160, 90), std::pair(227, 131), std::pair(90, 160)})
    {
        getSystemDeref<WindowSystem2>().setWindowedSize(width, height);
        const auto unit = static_cast<float>(std::max(width, height));
        TextComponent2 &shown = text("H", Vec4(20.3f / unit, 30.4f / unit, 0, 1));
        const ScreenPicture picture = drawPicture(*this);
        shown.setVisible(false);
        ASSERT_EQ(picture.width, width);

        FontAsset &font = *shown.getFont().lookup();
        const int size = static_cast<int>(std::lround(0.15f * unit));
        const FontAsset::Shaper shaper = font.getShaper(size);
        std::vector<ShapedGlyph> shaped;
        shaper.shape(U"H", shaped);
        const FontAsset::Glyph glyph = font.getGlyph(shaped.at(0).glyph, size, 0);
        const int left = 20 + glyph.left;
        const int top = height - (30 + int(shaper.getLineHeight()) - int(shaper.getAscent()) + glyph.top);
        ASSERT_GT(glyph.height, 5);
        for (int y = 0; y < glyph.height; ++y)
            for (int x = 0; x < glyph.width; ++x)
            {
                const int row = glyph.place.y + y, column = glyph.place.x + x;
                const int coverage = font.getAtlas().getRows()[std::size_t(row * font.getAtlas().getWidth() + column)];
                ASSERT_NEAR(picture.green(left + x, top + y), coverage, 1) << width << ": " << x << ", " << y;
            }
        EXPECT_EQ(picture.countLit(0, 0, width, height),
                  picture.countLit(left, top, left + glyph.width, top + glyph.height));
    }
}

TEST_F(ScreenText, StandingTextUploadsAndAllocatesNothing)
{
    TextComponent2 &shown = text("Über den Dächern lag der Mond");
    shown.setWrapWidth(0.9f);
    for (int i = 0; i < 3; ++i)
        level.frame();
    const std::uint64_t standing = uploadedBytesOfAFrame();
    EXPECT_EQ(allocationsOf([this] { level.frame(); }, 5), 0u);
    EXPECT_EQ(uploadedBytesOfAFrame(), standing);
    shown.setText(SCS("und im Flur roch es"));
    EXPECT_GT(uploadedBytesOfAFrame(), standing + 1000) << "a change does";
    EXPECT_EQ(uploadedBytesOfAFrame(), standing);
}

TEST_F(ScreenText, ImpossiblePropertiesNeitherCrashNorCostAnythingTwice)
{
    constexpr float infinity = std::numeric_limits<float>::infinity(), nan = std::numeric_limits<float>::quiet_NaN();
    for (const float wrong : {0.0f, 1e-6f, 1e30f, -1.0f, nan, infinity, -infinity})
    {
        TextComponent2 &sized = text("To\xFF\xC3 be"), &wrapped = text("To\xFF\xC3 be");
        sized.setFontSize(wrong);
        wrapped.setWrapWidth(wrong);
        const std::uint64_t first = uploadedBytesOfAFrame();
        EXPECT_LT(uploadedBytesOfAFrame() + 2000, first) << wrong << ": both are laid out once";
        EXPECT_EQ(wrapped.getLineCount(), wrong == 1e-6f ? 6 : 1) << wrong;
        EXPECT_TRUE(std::isfinite(sized.getWidth())) << wrong;
        sized.setVisible(false);
        wrapped.setVisible(false);
    }
}

TEST_F(ScreenText, TextSurvivesALostDevice)
{
    text("Mond");
    const ScreenPicture before = drawPicture(*this);
    ASSERT_GT(before.countLit(0, 0, 160, 90), 50);
    port::setDeviceLost(realGraphicsDevice(), true);
    level.frame();
    ASSERT_FALSE(graphics().deviceIsReady());
    text("!", Vec4(0.6f, 0.1f, 0, 1)); // a glyph that the atlas gets while nothing can be drawn
    level.frame();
    port::setDeviceLost(realGraphicsDevice(), false);
    level.frame();
    const ScreenPicture after = drawPicture(*this);
    EXPECT_EQ(after.countLit(0, 0, 90, 90), before.countLit(0, 0, 90, 90));
    EXPECT_GT(after.countLit(95, 0, 160, 90), 5);
}
