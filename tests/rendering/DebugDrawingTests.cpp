#include "RenderingWorld.h"
#include "ScreenPicture.h"

#include "assets/models/DynamicMeshAsset.h"
#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace
{

const Vec4 WHITE(1, 1, 1, 1), RED(1, 0, 0, 1);

class DebugDrawing : public testing::Test, public RenderingWorld
{
protected:
    DebugDrawing() { manager->setSceneAmbient(0); }

    GlobalConfigSystem &config() { return getSystemDeref<GlobalConfigSystem>(); }
    Handle<DebugCollectorComponent> findCollector()
    {
        const Handle<Object> found = level.coordinator().getDescendantByPath(SCS(".DebugDrawing/debugDrawCollector"));
        return handle_cast<DebugCollectorComponent>(found);
    }
    DebugCollectorComponent &switchOn()
    {
        config().setDebugDrawEnabled(true);
        level.frame();
        return *findCollector().lookup();
    }
    /// A square of one metre that hides what is behind it.
    void wall(Vec4 place)
    {
        const Handle<Entity> entity = level.entity("wall");
        level.transform(entity, place).lookup()->setScale(Vec4(0.5f, 0.5f, 1, 0));
        ModelGraphicsComponent2 &model = *level.component<ModelGraphicsComponent2>(entity, "graphics2").lookup();
        model.setMesh(graphics().getFullScreenQuad());
        model.setLayer(SceneGraph::WORLD_UNCONDITIONAL);
        model.setTextureName(SCS("black.dds"));
        model.onLoadComplete();
    }

    const OnRealDevice real{*this};
};

} // namespace

TEST_F(DebugDrawing, CollectorComesWithTheSwitchAndShowsWhatItsSwitchesAskFor)
{
    level.frame();
    EXPECT_FALSE(findCollector().isValid()) << "off costs nothing";
    const DebugCollectorComponent::Geometry &shown = switchOn().getWorldGeometry();
    level.frame();
    EXPECT_TRUE(shown.isEmpty()) << "nothing has been asked for";

    config().setDebugDrawTransformAxesEnabled(true);
    level.transform(level.entity("second"), Vec4(1, 2, 3, 1));
    level.frame();
    EXPECT_EQ(std::count_if(shown.lines.begin(), shown.lines.end(),
                            [](const auto &line) { return line.from == Vec4(1, 2, 3, 1); }),
              3);
    config().setDebugDrawSystemsOnly(true);
    level.frame();
    EXPECT_TRUE(shown.isEmpty());
    config().setDebugDrawSystemsOnly(false);
    config().setDebugDrawEnabled(false);
    level.frame();
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(DebugDrawing, LinesStandWhereTheyAreInTheWorldBehindWhatHidesThem)
{
    DebugCollectorComponent &collector = switchOn();
    wall(Vec4(0, 0, 3, 1));
    // At 5 m the picture is 4.14 m high and 7.36 m wide: 21.7 pixels a metre.
    collector.addLine3D(Vec4(-3, 1, 5, 1), Vec4(3, 1, 5, 1), WHITE);
    collector.addLine3D(Vec4(-3, 0, 5, 1), Vec4(3, 0, 5, 1), RED);
    const ScreenPicture picture = drawPicture(*this);
    for (int x = 80 - 60; x < 80 + 60; x += 5)
    {
        EXPECT_GT(picture.countLit(x, 45 - 23, x + 1, 45 - 20), 0) << x;
        EXPECT_EQ(picture.countLit(x, 45 - 1, x + 1, 45 + 2) == 0, std::abs(x - 80) < 16) << x;
        for (int y = 45 - 1; y < 45 + 2; ++y)
            EXPECT_TRUE(picture.red(x, y) == 0 || picture.red(x, y) == 255) << "its own colour, untouched by light";
        EXPECT_EQ(picture.green(x, 45), 0) << x;
    }
    EXPECT_EQ(drawPicture(*this).countLit(0, 0, WIDTH, HEIGHT), 0) << "what was added is shown for one frame";
}

TEST_F(DebugDrawing, TextsOfTheWorldAreCentredOnTheirPlaceAndVanishBehindTheCamera)
{
    DebugCollectorComponent &collector = switchOn();
    collector.addText3D(Vec4(2, 1, 5, 1), SCS("MMM\nMMM"), WHITE);
    collector.addText3D(Vec4(0, 0, -5, 1), SCS("behind"), WHITE);
    collector.addText3D(Vec4(50, 0, 5, 1), SCS("beside"), WHITE);
    const float nowhere = std::numeric_limits<float>::quiet_NaN();
    collector.addText3D(Vec4(nowhere, 0, 5, 1), SCS("nowhere"), WHITE);
    collector.addText2D(Vec4(0.5f, nowhere, 0, 1), SCS("nowhere"), WHITE);
    const ScreenPicture world = drawPicture(*this);
    const int x = 80 + 43, y = 45 - 22;
    EXPECT_GT(world.countLit(x - 10, y - 12, x, y), 20);
    EXPECT_GT(world.countLit(x, y, x + 10, y + 12), 20);
    EXPECT_EQ(world.countLit(0, 0, WIDTH, HEIGHT), world.countLit(x - 12, y - 14, x + 12, y + 14));
}

TEST_F(DebugDrawing, SteadyFrameAllocatesNothing)
{
    DebugCollectorComponent &collector = switchOn();
    config().setDebugDrawTransformAxesEnabled(true);
    config().setDebugDrawViewerFrustums(true);
    for (int i = 0; i < 20; ++i)
        level.transform(level.entity("thing"), Vec4(static_cast<float>(i) * 0.1f, 0, 5, 1));
    const String label = SCS("8 40\n");
    const auto frame = [&]
    {
        for (int i = 0; i < 50; ++i)
            collector.addText3D(Vec4(static_cast<float>(i) * 0.02f, 0, 5, 1), label, WHITE);
        collector.addText2D(Vec4(0, 0.5f, 0, 1), label, WHITE);
        level.frame();
    };
    for (int i = 0; i < 4; ++i)
        frame();
    ASSERT_GE(collector.getWorldGeometry().lines.size(), 72u) << "20 sets of axes and a frustum";
    EXPECT_EQ(allocationsOf(frame, 5), 0u);
}
