#include "RenderingWorld.h"
#include "ScreenPicture.h"

#include "assets/models/DynamicMeshAsset.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "platform/window/WindowSystem2.h"

#include <gtest/gtest.h>

namespace
{

/// A pass of the frame, and which of its frame's draw calls is the pass's own.
struct Loss
{
    const char *pass;
    int draw;
};

/// One thing in every pass: a square under a shadowing spot, and a drawn thing in each of the other layers.
class Faults : public testing::TestWithParam<Loss>, public RenderingWorld
{
protected:
    Faults()
    {
        PartitioningGrid &grid = mapWithGrid();
        const Handle<Object> map = grid.getAncestorOfType<MapRootEntity>();
        const OnRealDevice real(*this);
        const Handle<Entity> square = level.entity("square", map);
        level.transform(square, Vec4(0, 0, 4, 1));
        ModelGraphicsComponent2 &model = *level.component<ModelGraphicsComponent2>(square, "graphics2").lookup();
        model.setMesh(graphics().getFullScreenQuad());
        model.setTextureName(SCS("white.dds"));
        model.setLayer(SceneGraph::WORLD);
        model.onLoadComplete();
        level.component<BoundingVolume>(square, "boundingVolume").lookup()->setHitBox(Vec4(2, 2, 1, 0));

        const Handle<Entity> spot = level.entity("spot", map);
        level.transform(spot, Vec4(0, 0.5f, 0, 1));
        level.component<ViewerComponent>(spot, "viewer");
        LightComponent &light = *level.component<LightComponent>(spot, "graphics2").lookup();
        light.setCastShadows(true);
        light.setLayer(SceneGraph::LIGHT);
        light.onLoadComplete();

        for (const SceneGraph::Layer layer :
             {SceneGraph::WORLD_UNCONDITIONAL, SceneGraph::WORLD_DEBUG, SceneGraph::SCREEN, SceneGraph::SCREEN_DEBUG})
            thing("thing", layer);
        putInGrid(grid, thing("decal", SceneGraph::DECAL, 0, map), Vec4(0, 0, 4, 1));
        level.frame(); // volumes enter the grid
    }
    ~Faults() override = default;

    ScreenPicture picture() { return drawPicture(*this); }
};

} // namespace

TEST_P(Faults, DeviceLostInAPassEndsTheFrameQuietlyAndComesBackWithTheSamePicture)
{
    const ScreenPicture before = picture();
    ASSERT_GT(before.countLit(0, 0, WIDTH, HEIGHT), WIDTH * HEIGHT / 20) << "the square is seen";
    const std::size_t logged = countLogLines("Assertion failed");

    device->take();
    device->failOn("DrawIndexedPrimitive", D3DERR_DEVICELOST, GetParam().draw);
    level.frame();
    EXPECT_FALSE(graphics().deviceIsReady());
    EXPECT_EQ(device->count("DrawIndexed"), GetParam().draw + 1) << "what comes after it is skipped";
    EXPECT_EQ(device->count("Present"), 0);

    device->take();
    device->failOn("TestCooperativeLevel", D3DERR_DEVICELOST);
    level.frame();
    EXPECT_EQ(device->count("Reset") + device->count("BeginScene"), 0) << "it cannot come back yet";
    device->failOn("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
    level.frame();
    EXPECT_EQ(device->count("Reset"), 1);
    EXPECT_EQ(device->count("DrawIndexed"), 11) << "this frame is whole";
    EXPECT_EQ(countLogLines("Assertion failed"), logged) << "a loss is no fault";
    EXPECT_TRUE(picture().pixels == before.pixels);
}

INSTANTIATE_TEST_SUITE_P(EachPass, Faults,
                         testing::Values(Loss{"GBufferUnconditional", 0}, Loss{"GBufferWorld", 1},
                                         Loss{"GBufferDecals", 2}, Loss{"Shadow", 3}, Loss{"Lighting", 4},
                                         Loss{"Occlusion", 5}, Loss{"OcclusionMean", 6}, Loss{"Combine", 7},
                                         Loss{"WorldDebug", 8}, Loss{"Screen", 9}, Loss{"ScreenDebug", 10}),
                         [](const testing::TestParamInfo<Loss> &info) { return info.param.pass; });

class WindowFaults : public Faults
{
};

TEST_F(WindowFaults, WindowOfAnotherSizeShowsTheWholeSceneAndTheFormerSizeTheSamePicture)
{
    const ScreenPicture before = picture();
    getSystemDeref<WindowSystem2>().setWindowedSize(WIDTH * 2, HEIGHT * 2);
    const ScreenPicture twice = picture();
    EXPECT_EQ(twice.width, WIDTH * 2);
    EXPECT_NEAR(twice.countLit(0, 0, twice.width, twice.height), 4 * before.countLit(0, 0, WIDTH, HEIGHT),
                WIDTH * HEIGHT / 10);
    getSystemDeref<WindowSystem2>().setWindowedSize(WIDTH, HEIGHT);
    EXPECT_TRUE(picture().pixels == before.pixels);
}

TEST_F(WindowFaults, CountsOfTheLastFrameAreThoseOfWhatWasDrawn)
{
    picture();
    const OnRealDevice real(*this);
    EXPECT_EQ(graphics().getDrawCallCount(), 11);
    EXPECT_EQ(graphics().getInstanceCount(), 11);
    EXPECT_GE(graphics().getTriangleCount(), 10 * 2 + 4) << "ten quads and the cone";
    EXPECT_GT(graphics().getStateChangeCount(), graphics().getTargetChangeCount());
    EXPECT_GE(graphics().getClearCount(), 5);
    thing("another", SceneGraph::SCREEN);
    picture();
    EXPECT_EQ(graphics().getInstanceCount(), 12);
    EXPECT_EQ(graphics().getDrawCallCount(), 11) << "it shares a draw call";
}
