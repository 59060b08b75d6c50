#include "RenderingWorld.h"
#include "ScreenPicture.h"

#include "assets/models/DynamicMeshAsset.h"
#include "gameplay/player/PlayerComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/frame/MindPictureSystem.h"
#include "support/AllocationCount.h"

#include "engine/entities/SimpleComponent.h"
#include "object/reflection/Variant.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

typedef std::vector<std::string> Journal;

class Frame : public testing::Test, public RenderingWorld
{
protected:
    /// A quad of one metre that shines by itself.
    void glowingModel(Vec4 position) { square(position, 0.5f, SCS("lampShadeEmissive.dds")); }

    /// A square that faces the camera, 2 m times its size, turned clockwise by so many radians.
    Handle<TransformComponent> square(Vec4 position, float size, const String &emissive, float roll = 0,
                                      const String &diffuse = SCS("black.dds"))
    {
        const Handle<Entity> entity = level.entity("model");
        const Handle<TransformComponent> place = level.transform(entity, position);
        const auto transform = place.lookup();
        transform->setScale(Vec4(size, size, 1, 0));
        transform->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 0, 1, 0), roll));
        ModelGraphicsComponent2 &model = *level.component<ModelGraphicsComponent2>(entity, "graphics2").lookup();
        model.setMesh(graphics().getFullScreenQuad());
        model.setTextureName(diffuse);
        model.setEmissiveTextureName(emissive);
        model.setLayer(SceneGraph::WORLD_UNCONDITIONAL);
        const OnRealDevice real(*this);
        model.onLoadComplete();
        return place;
    }

    /// What a frame's passes bind as their first target and clear, in order, without repetitions of a binding.
    Journal passes()
    {
        Journal steps;
        for (const std::string &line : journalOfPasses())
            if ((line.starts_with("Target 0") || line.starts_with("Depth") || line.starts_with("Clear") ||
                 line.starts_with("Draw")) &&
                (steps.empty() || steps.back() != line))
                steps.push_back(line);
        return steps;
    }
};

} // namespace

TEST_F(Frame, PassesBindAndClearInTheirOrder)
{
    const std::string quad = "DrawIndexed 2 primitives x 1"; // over a target that is bound before it, and again
    EXPECT_EQ(passes(),
              (Journal{
                  "Target 0 GBuffer1",      "Depth GBuffer", "Clear target depth z=1", // everything unconditional
                  "Target 0 GBuffer1",      "Depth GBuffer",                           // the culled world
                  "Target 0 GBuffer1",      "Depth GBuffer",                           // decals
                  "Target 0 LBuffer",       "Depth GBuffer", "Clear target z=1",       // lights
                  "Target 0 Occlusion",     "Depth -",       "Target 0 Occlusion",     "Depth -", quad, // its looks
                  "Target 0 OcclusionMean", "Depth -",       "Target 0 OcclusionMean", "Depth -", quad, // smoothed
                  "Target 0 screen",        "Depth -",       "Target 0 screen",        "Depth -", quad, // combine
                  "Target 0 screen",        "Depth GBuffer",                                            // world debug
                  "Target 0 screen",        "Depth screen",  "Clear depth z=1",                         // screen
                  "Target 0 screen",        "Depth screen",  "Clear depth z=1",                         // screen debug
              }));
}

TEST_F(Frame, DecalsWriteTheFirstTargetOnly)
{
    const Journal journal = journalOfPasses();
    std::vector<Journal> targetSets;
    for (const std::string &line : journal)
    {
        if (line.starts_with("Target 0"))
            targetSets.emplace_back();
        if (line.starts_with("Target"))
            targetSets.back().push_back(line.substr(9));
    }
    ASSERT_GE(targetSets.size(), 4u);
    EXPECT_EQ(targetSets[0], (Journal{"GBuffer1", "GBuffer2", "GBuffer3", "-"}));
    EXPECT_EQ(targetSets[1], targetSets[0]);
    EXPECT_EQ(targetSets[2], (Journal{"GBuffer1", "-", "-", "-"}));
    EXPECT_EQ(targetSets[3], (Journal{"LBuffer", "-", "-", "-"}));
}

TEST_F(Frame, WithoutACameraOnlyTheScreenIsDrawn)
{
    const Journal screenOnly = {"Target 0 screen", "Depth screen", "Clear depth z=1",
                                "Target 0 screen", "Depth screen", "Clear depth z=1"};
    camera.lookup()->murder();
    cremateDeadObjects();
    EXPECT_EQ(passes(), screenOnly) << "a dead camera is none";

    const Handle<Entity> bare = level.entity("bare");
    manager->setCurrentCamera(bare);
    const std::size_t logged = countLogLines("shows nothing: it needs");
    EXPECT_EQ(passes(), screenOnly);
    EXPECT_EQ(passes(), screenOnly);
    EXPECT_EQ(countLogLines("shows nothing: it needs"), logged + 1) << "told once";
}

TEST_F(Frame, DeviceLostInAPassSkipsTheRestAndComesBack)
{
    for (int clearsBefore = 0; clearsBefore < 4; ++clearsBefore)
    {
        ASSERT_TRUE(graphics().beginFrame().succeeded());
        device->take();
        device->failOn("Clear", D3DERR_DEVICELOST, clearsBefore);
        const std::size_t logged = countLogLines("Assertion failed");
        manager->doFrame();
        EXPECT_FALSE(graphics().deviceIsReady());
        EXPECT_EQ(device->count("Clear"), clearsBefore + 1) << "the passes behind it are skipped";
        EXPECT_EQ(countLogLines("Assertion failed"), logged) << "a loss is no fault";
        EXPECT_TRUE(graphics().endFrame().succeeded());
        EXPECT_TRUE(graphics().present().succeeded());
        device->failOn("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
        drawFrame();
        EXPECT_TRUE(graphics().deviceIsReady()) << "lost at clear " << clearsBefore;
        EXPECT_EQ(device->count("DrawIndexed"), 3 * (1 + (clearsBefore > 1))) << "and the next frame is whole";
    }
}

TEST_F(Frame, OtherFailuresAreReportedAndEndTheFrame)
{
    ASSERT_TRUE(graphics().beginFrame().succeeded());
    device->take();
    device->failOn("Clear", D3DERR_INVALIDCALL, 1);
    const std::size_t logged = countLogLines("Assertion failed");
    manager->doFrame();
    EXPECT_EQ(device->count("Clear"), 2);
    EXPECT_EQ(countLogLines("Assertion failed"), logged + 1);
    EXPECT_TRUE(graphics().deviceIsReady());
    graphics().endFrame().ignoreError();
}

TEST_F(Frame, CameraStackKeepsItsLastCamera)
{
    const Handle<Entity> second = level.entity("second");
    manager->pushCamera(second);
    EXPECT_EQ(manager->getCurrentCamera(), second);
    manager->popCamera();
    manager->popCamera();
    EXPECT_EQ(manager->getCurrentCamera(), camera) << "the last one cannot be popped";
    manager->setCurrentCamera(second);
    manager->popCamera();
    EXPECT_EQ(manager->getCurrentCamera(), second) << "setting replaces the top";
    EXPECT_EQ(graphics().getLastFrameCamera(), camera) << "the first pushed, before any frame";
    drawFrame();
    EXPECT_EQ(graphics().getLastFrameCamera(), second);
}

TEST_F(Frame, ModelWithoutTransformIsReportedOnceAndBreaksNothing)
{
    graphics().getFullScreenQuad();
    const Handle<Entity> entity = level.entity("model");
    ModelGraphicsComponent2 &model = *level.component<ModelGraphicsComponent2>(entity, "graphics2").lookup();
    model.setMesh(graphics().getFullScreenQuad());
    model.setLayer(SceneGraph::WORLD_UNCONDITIONAL);
    model.onLoadComplete();
    const std::size_t logged = countLogLines("ModelGraphicsComponent2 had no transform sibling");
    drawFrame();
    drawFrame();
    EXPECT_EQ(countLogLines("ModelGraphicsComponent2 had no transform sibling"), logged + 1);
    level.transform(entity);
    device->take();
    drawFrame();
    EXPECT_EQ(device->count("DrawIndexed"), 4) << "the model, occlusion and the combine";
}

TEST_F(Frame, ModelsOfLaterMeshesComeFirstAndThoseOfOneMeshTogether)
{
    const auto model = [this](const Handle<MeshAsset> &mesh)
    {
        const auto made = level.component<ModelGraphicsComponent2>(level.entity("model"), "graphics2");
        made.lookup()->setMesh(mesh);
        return made;
    };
    const Handle<MeshAsset> walls = construct<DynamicMeshAsset>(defaultAllocationCategory);
    const Handle<MeshAsset> chairs = construct<DynamicMeshAsset>(defaultAllocationCategory);
    const auto wall = model(walls), chair = model(chairs), secondWall = model(walls);
    EXPECT_TRUE(chair.lookup()->batchCompare(wall)) << "the level's background is drawn where nothing hides it";
    EXPECT_FALSE(wall.lookup()->batchCompare(chair));
    EXPECT_FALSE(wall.lookup()->batchCompare(secondWall)) << "equal: one draw call";
    EXPECT_FALSE(secondWall.lookup()->batchCompare(wall));
    walls.lookup()->murder();
    chairs.lookup()->murder();
}

TEST_F(Frame, GlowingModelShowsInThePictureWhereItStands)
{
    glowingModel(Vec4(0, 0, 4, 1));
    const unsigned black = presentedPixel(4, 4) & 0xffffff;
    const unsigned window = presentedPixel(WIDTH / 2, HEIGHT / 2) & 0xffffff;
    const auto brightness = [](unsigned c) { return (c & 255) + (c >> 8 & 255) + (c >> 16 & 255); };
    EXPECT_LT(brightness(black), 12u);
    EXPECT_GT(brightness(window), brightness(black) + 20);
    graphics().setGamma(3);
    EXPECT_GT(brightness(presentedPixel(WIDTH / 2, HEIGHT / 2) & 0xffffff), brightness(window));
    for (const float refused : {-5.0f, 0.5f, 100.0f, NAN})
        graphics().setGamma(refused);
    EXPECT_EQ(graphics().getGamma(), 3);
    EXPECT_EQ(countLogLines("gamma cannot be -5 and stays 3"), 1u);
}

TEST_F(Frame, SoundMindLeavesThePictureAlone)
{
    glowingModel(Vec4(0.3f, 0, 4, 1));
    PlayerComponent &mind = *level.component<PlayerComponent>(level.entity("Player"), "player").lookup();
    const auto column = [this]
    {
        std::vector<unsigned> pixels;
        for (int y = 1; y < HEIGHT; y += 8)
            pixels.push_back(presentedPixel(WIDTH / 2 + 4, y));
        return pixels;
    };
    const std::vector<unsigned> sound = column();
    mind.setSanity(100);
    EXPECT_EQ(column(), sound);
    mind.setSanity(0);
    EXPECT_NE(column(), sound);
}

TEST_F(Frame, FailingMindTakesAPassOnlyWhereSomethingOfItIsShown)
{
    PlayerComponent &mind = *level.component<PlayerComponent>(level.entity("Player"), "player").lookup();
    MindPictureSystem &shares = getSystemDeref<MindPictureSystem>();
    const auto takesAPass = [&](float sanity)
    {
        mind.setSanity(sanity);
        const Journal steps = passes();
        return std::find(steps.begin(), steps.end(), "Target 0 Unsettled") != steps.end();
    };
    const auto want = [&shares](float all)
    {
        shares.setDrain(all);
        shares.setGrain(all);
        shares.setPulse(all);
        shares.setDistortion(all);
        shares.setFlashes(all);
    };
    EXPECT_FALSE(takesAPass(92)) << "it has some way to go before it shows";
    EXPECT_TRUE(takesAPass(50));
    manager->setFlash(0.5f);
    EXPECT_TRUE(takesAPass(100)) << "a fright shows to a sound one";
    shares.setFlashes(0);
    shares.setFlashes(NAN);
    EXPECT_FALSE(takesAPass(100));
    want(0);
    manager->setHeartbeat(1);
    EXPECT_FALSE(takesAPass(0));
    want(1);
    manager->setHeartbeat(NAN);
    manager->setFlash(NAN);
    EXPECT_FALSE(takesAPass(100));
}

TEST_F(Frame, AntialiasingChangesOutlinesOnlyAndLeavesNothingBehind)
{
    square(Vec4(0, 0, 6, 1), 20, SCS("lampShadeEmissive.dds"));
    square(Vec4(-3, 0, 4, 1), 3, SCS("black.dds"), 0.1f);
    const auto drawn = [this](bool antialiasing)
    {
        graphics().setAntialiasing(antialiasing);
        return drawPicture(*this);
    };
    const ScreenPicture steps = drawn(false), smooth = drawn(true);
    EXPECT_TRUE(drawn(false) == steps);
    const int dark = steps.red(2, HEIGHT / 2), bright = steps.red(WIDTH - 3, HEIGHT / 2);
    ASSERT_GT(bright, dark + 50);
    const auto isDark = [&](int x, int y) { return steps.red(x, y) < (dark + bright) / 2; };
    int between = 0;
    for (int y = 1; y < HEIGHT - 1; ++y)
        for (int x = 1; x < WIDTH - 1; ++x)
        {
            const bool isOutline = isDark(x - 1, y) != isDark(x + 1, y) || isDark(x, y - 1) != isDark(x, y + 1);
            if (isOutline)
                between += std::min(smooth.red(x, y) - dark, bright - smooth.red(x, y)) > (bright - dark) / 8;
            else
                EXPECT_EQ(smooth.at(x, y), steps.at(x, y)) << x << ", " << y;
        }
    EXPECT_GT(between, HEIGHT / 3);
    EXPECT_LT(between, HEIGHT * 2);
}

/// How far the rows of a picture are off a straight edge, on average, pixels: each row's share of what lies left of the
/// edge is held against the line that fits them all.
double offStraight(const ScreenPicture &picture, const ScreenPicture &uncovered)
{
    std::vector<double> widths;
    for (int y = picture.height / 4; y < picture.height * 3 / 4; ++y)
    {
        double width = 0;
        for (int x = 0; x < picture.width; ++x)
            width += 1.0 - static_cast<double>(picture.red(x, y)) / std::max(uncovered.red(x, y), 1);
        widths.push_back(width);
    }
    const double middle = 0.5 * static_cast<double>(widths.size() - 1);
    double mean = 0, rise = 0, squares = 0, off = 0;
    for (std::size_t i = 0; i < widths.size(); ++i)
    {
        const double along = static_cast<double>(i) - middle;
        mean += widths[i] / static_cast<double>(widths.size());
        rise += along * widths[i];
        squares += along * along;
    }
    for (std::size_t i = 0; i < widths.size(); ++i)
        off += std::abs(widths[i] - mean - (static_cast<double>(i) - middle) * rise / squares);
    return off / static_cast<double>(widths.size());
}

TEST_F(Frame, SmoothedEdgesLieWhereTheEdgesLie)
{
    square(Vec4(0, 0, 6, 1), 20, SCS("lampShadeEmissive.dds"));
    const ScreenPicture uncovered = drawPicture(*this);
    const auto edge = square(Vec4(-3, 0, 4, 1), 3, SCS("black.dds")).lookup();
    for (const float roll : {-0.4f, -0.2f, -0.1f, 0.1f, 0.2f, 0.4f})
    {
        edge->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 0, 1, 0), roll));
        graphics().setAntialiasing(false);
        const double steps = offStraight(drawPicture(*this), uncovered);
        graphics().setAntialiasing(true);
        const double smooth = offStraight(drawPicture(*this), uncovered);
        EXPECT_GT(steps, 0.2) << roll;
        EXPECT_LT(smooth, 0.35 * steps) << roll;
    }
}

TEST_F(Frame, LightFromEverywhereComesMoreFromAbove)
{
    manager->setSceneAmbient(1);
    const auto place = square(Vec4(0, 0, 4, 1), 3, SCS("black.dds"), 0, SCS("lampShadeEmissive.dds")).lookup();
    const auto drawn = [&](float pitch)
    {
        place->setOrientation(Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), pitch));
        return drawPicture(*this).green(WIDTH / 2, HEIGHT / 2);
    };
    const int upwards = drawn(1.0f), downwards = drawn(-1.0f);
    EXPECT_GT(upwards, downwards + 20);
}

TEST_F(Frame, SteadyFrameAllocatesNothing)
{
    for (int i = 0; i < 20; ++i)
        thing("crowd", SceneGraph::WORLD_UNCONDITIONAL, i / 5).journal = nullptr;
    for (int i = 0; i < 3; ++i)
        glowingModel(Vec4(0, 0, 4, 1));
    DrawnThing &light = thing("light", SceneGraph::LIGHT);
    light.journal = nullptr;
    light.instanced = false;
    light.inShadowSet = false;
    light.effect = SCS("lights.fx");
    light.technique = SCS("SphereLight");
    putInGrid(mapWithGrid(), light, Vec4(0, 0, 4, 1));
    EXPECT_EQ(allocationsOfFrames(1), 0u);
}
