// What surfaces show of their maps and of the light that falls on them.
#include "RenderingWorld.h"
#include "ScreenPicture.h"

#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/WorldBasedTCBoxGraphicsComponent.h"

#include "port/d3d9/Texture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace
{

/// Red, green and blue of a pixel on the screen.
struct Color
{
    int red, green, blue;
};

class Surfaces : public testing::Test, public RenderingWorld
{
protected:
    Surfaces() : map(mapWithGrid().getAncestorOfType<MapRootEntity>())
    {
        graphics().replaceDevice(realGraphicsDevice()); // textures need the real one
    }

    /// A box, not loaded yet: without more words one of 4 m whose front stands 3 m before the camera.
    WorldBasedTCBoxGraphicsComponent &box(const char *name, Vec4 position = Vec4(0, 0, 5, 1),
                                          Vec4 size = Vec4(4, 4, 4, 0))
    {
        const Handle<Entity> entity = level.entity(name);
        level.transform(entity, position).lookup()->setScale(size);
        auto &made = *level.component<WorldBasedTCBoxGraphicsComponent>(entity, "graphics2").lookup();
        made.setLayer(SceneGraph::WORLD_UNCONDITIONAL);
        return made;
    }
    /// A light of a reach of 10 m beside the camera.
    LightComponent &light(Vec4 diffuse, Vec4 specular)
    {
        const Handle<Entity> entity = level.entity("light", map);
        level.transform(entity, Vec4(0, 0, 0, 1));
        LightComponent &made = *level.component<LightComponent>(entity, "graphics2").lookup();
        made.setIsSpot(false);
        made.setDiffuseColor(diffuse);
        made.setSpecularColor(specular);
        made.setLayer(SceneGraph::LIGHT);
        made.onLoadComplete();
        level.frame();
        level.frame(); // the volume enters the grid
        return made;
    }
    /// Colour of the next frame's middle.
    Color shown()
    {
        const ScreenPicture picture = drawPicture(*this);
        return colorOf(picture, WIDTH / 2);
    }
    /// Pixels of the next frame's middle row that are bright and magenta.
    int countMagenta()
    {
        const ScreenPicture picture = drawPicture(*this);
        int count = 0;
        for (int x = 20; x < WIDTH - 20; ++x)
        {
            const Color color = colorOf(picture, x);
            count += color.red > 120 && color.blue > 120 && color.green < color.red / 4;
        }
        return count;
    }
    static Color colorOf(const ScreenPicture &picture, int x)
    {
        constexpr int row = HEIGHT / 2 + 2; // not where two rows of checks meet
        return {picture.red(x, row), picture.green(x, row), picture.blue(x, row)};
    }
    /// Openness along the middle row of the last frame, in its half size.
    std::vector<float> openness()
    {
        std::vector<float> row(WIDTH / 2);
        auto *target = static_cast<port::Texture *>(graphics().getRenderTargetTexture(SCS("OcclusionMean")).value);
        glGetTextureSubImage(target->id(), 0, 0, HEIGHT / 4, 0, WIDTH / 2, 1, 1, GL_RED, GL_FLOAT,
                             static_cast<GLsizei>(row.size() * sizeof(float)), row.data());
        return row;
    }

    Handle<MapRootEntity> map;
};

} // namespace

TEST_F(Surfaces, MissingDiffuseMapShinesInChecksAndIsToldOnceWithTheNearestName)
{
    manager->setSceneAmbient(0);
    auto &made = box("crate");
    made.setTextureName(SCS("blakc.dds"));
    made.onLoadComplete();
    const int magenta = countMagenta();
    EXPECT_TRUE(magenta > 30 && magenta < 90) << magenta << " of 120 pixels in the dark";
    EXPECT_EQ(countLogLines("crate wears the texture ..\\assets\\textures\\blakc.dds"), 1u);
    EXPECT_EQ(countLogLines("did you mean 'black.dds'?"), 1u);

    made.setTextureName(String());
    EXPECT_EQ(countMagenta(), magenta) << "none was named";
    made.setTextureName(SCS("white.dds"));
    EXPECT_EQ(countMagenta(), 0);
}

TEST_F(Surfaces, MissingNormalMapIsLitAsAFlatOne)
{
    manager->setSceneAmbient(0);
    light(Vec4(0.2f, 0.2f, 0.2f, 0), Vec4());
    auto &made = box("wall");
    made.setTextureName(SCS("white.dds"));
    made.onLoadComplete();
    const Color flat = shown();
    EXPECT_GT(flat.green, 60);
    made.setNormalTextureName(SCS("noSuchNormal.dds"));
    EXPECT_EQ(shown().green, flat.green);
    EXPECT_EQ(countLogLines("wall wears the texture ..\\assets\\textures\\noSuchNormal.dds"), 1u);
}

TEST_F(Surfaces, HighlightHasTheColoursOfLightAndMap)
{
    manager->setSceneAmbient(0);
    LightComponent &lamp = light(Vec4(), Vec4(0.3f, 0, 0, 0));
    auto &made = box("polished");
    made.setTextureName(SCS("black.dds"));
    made.setSpecularTextureName(SCS("white.dds"));
    made.onLoadComplete();
    const Color ofLight = shown();
    EXPECT_TRUE(ofLight.red > 60 && ofLight.green < 3 && ofLight.blue < 3)
        << ofLight.red << " " << ofLight.green << " " << ofLight.blue;

    lamp.setSpecularColor(Vec4(0.3f, 0.3f, 0.3f, 0));
    made.setSpecularTextureName(SCS("missing.dds")); // its light squares are magenta
    const ScreenPicture picture = drawPicture(*this);
    int magenta = 0, other = 0;
    for (int x = WIDTH / 2 - 20; x < WIDTH / 2 + 20; ++x)
    {
        const Color ofMap = colorOf(picture, x);
        magenta += ofMap.red > 20 && ofMap.blue > ofMap.red * 0.8f && ofMap.green < 3;
        other += ofMap.green >= 3;
    }
    EXPECT_GT(magenta, 5);
    EXPECT_EQ(other, 0);
}

TEST_F(Surfaces, WallIsOpenToLightBesideItsBumpsAndDarkensEvenlyTowardsACorner)
{
    auto &wall = box("wall");
    wall.setNormalTextureName(SCS("brickNormal.dds"));
    wall.onLoadComplete();
    drawFrame();
    const std::vector<float> bare = openness();
    EXPECT_GT(*std::min_element(bare.begin() + 5, bare.end() - 5), 0.97f) << "bumps keep no light away";

    box("pillar", Vec4(1, 0, 3, 1), Vec4(1, 4, 0.8f, 0)).onLoadComplete(); // its left side at x = 0.5
    drawFrame();
    const std::vector<float> cornered = openness();
    constexpr int corner = WIDTH / 4 + 9; // where wall and pillar meet
    EXPECT_LT(cornered[corner - 1], 0.8f);
    EXPECT_GT(cornered[corner - 12], 0.97f) << "two thirds of a metre away";
    for (int x = corner - 11; x < corner; ++x)
        EXPECT_LT(cornered[x], cornered[x - 1] + 0.02f) << "no hatch at " << x;
}
