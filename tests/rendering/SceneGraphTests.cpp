#include "RenderingWorld.h"

#include "assets/models/DynamicMeshAsset.h"
#include "rendering/device/BatchProxy.h"
#include "rendering/frame/RenderParams.h"

#include <gtest/gtest.h>

namespace
{

typedef std::vector<std::string> Journal;

class Scene : public testing::Test, public RenderingWorld
{
protected:
    Scene()
    {
        graphics().getFullScreenQuad();
        params.viewer = camera;
        params.layer = SceneGraph::WORLD_UNCONDITIONAL;
        params.depthTarget = SCS("GBuffer");
        params.bindTarget(SCS("GBuffer1"));
    }

    /// Draws the pass within a frame; the draw calls it made.
    Journal draws()
    {
        EXPECT_TRUE(graphics().beginFrame().succeeded());
        device->take();
        calls.clear();
        result = sceneGraph().render(params);
        Journal drawn;
        for (const std::string &line : device->journal)
            if (line.starts_with("Draw"))
                drawn.push_back(line);
        graphics().endFrame().ignoreError();
        return drawn;
    }

    GraphicsSystem2::SceneRenderParams params;
    ErrorCode result;
};

const std::string quads(int instances)
{
    return "DrawIndexed 2 primitives x " + std::to_string(instances);
}

} // namespace

TEST_F(Scene, EqualThingsShareOneDrawCall)
{
    thing("a1", SceneGraph::WORLD_UNCONDITIONAL, 1);
    thing("b", SceneGraph::WORLD_UNCONDITIONAL, 2);
    thing("a2", SceneGraph::WORLD_UNCONDITIONAL, 1);
    thing("elsewhere", SceneGraph::POST, 1);
    EXPECT_EQ(draws(), (Journal{quads(2), quads(1)}));
    EXPECT_TRUE(result.succeeded());
    EXPECT_EQ(calls, (Journal{"a1 prepare", "a1 draw", "a2 draw", "b prepare", "b draw"}));
}

TEST_F(Scene, ThingsThatDoNotCompareAreDrawnAloneInTheOrderOfTheirBirth)
{
    for (const char *label : {"first", "second", "third"})
        thing(label, SceneGraph::WORLD_UNCONDITIONAL, -1);
    EXPECT_EQ(draws(), (Journal{quads(1), quads(1), quads(1)}));
    EXPECT_EQ(calls,
              (Journal{"first prepare", "first draw", "second prepare", "second draw", "third prepare", "third draw"}));
}

TEST_F(Scene, HiddenAndEmptyThingsAreNotEvenPrepared)
{
    thing("hidden", SceneGraph::WORLD_UNCONDITIONAL, 1).setVisible(false);
    thing("empty", SceneGraph::WORLD_UNCONDITIONAL, 2).instanceCount = 0;
    EXPECT_TRUE(draws().empty());
    EXPECT_TRUE(calls.empty());
}

TEST_F(Scene, ShaderSetDecidesWhoTakesPart)
{
    thing("caster", SceneGraph::WORLD_UNCONDITIONAL, 1);
    thing("noCaster", SceneGraph::WORLD_UNCONDITIONAL, 1).setCastShadows(false);
    thing("noShadowSet", SceneGraph::WORLD_UNCONDITIONAL, 2).inShadowSet = false;
    EXPECT_EQ(draws(), (Journal{quads(2), quads(1)}));
    params.shaderSet = SCS("Shadow");
    EXPECT_EQ(draws(), Journal{quads(1)});
    EXPECT_EQ(calls, (Journal{"caster prepare", "caster draw"}));
}

TEST_F(Scene, ThingWithoutInstanceStreamIsNotAskedForRecords)
{
    thing("plain", SceneGraph::WORLD_UNCONDITIONAL, 1).instanced = false;
    EXPECT_EQ(draws(), Journal{quads(1)});
    EXPECT_EQ(calls, Journal{"plain prepare"});
    EXPECT_EQ(device->count("Lock"), 0);
}

TEST_F(Scene, LayerChangesMoveAThingBetweenLists)
{
    DrawnThing &mover = thing("mover", SceneGraph::WORLD_UNCONDITIONAL);
    mover.setLayer(SceneGraph::POST);
    EXPECT_TRUE(draws().empty());
    EXPECT_EQ(sceneGraph().getLayerSize(SceneGraph::POST), 1);
    mover.setLayer(SceneGraph::NUM_LAYERS);
    EXPECT_EQ(sceneGraph().getLayerSize(SceneGraph::POST), 0);
    mover.setLayer(SceneGraph::WORLD_UNCONDITIONAL);
    EXPECT_EQ(draws().size(), 1u);
    mover.murder();
    cremateDeadObjects();
    EXPECT_EQ(sceneGraph().getLayerSize(SceneGraph::WORLD_UNCONDITIONAL), 0);
}

TEST_F(Scene, ThingWithoutALayerIsReportedAndTheRestIsDrawn)
{
    const std::size_t logged = countLogLines("Graphics component requires layer to be specified.");
    thing("lost", SceneGraph::NUM_LAYERS);
    thing("drawn", SceneGraph::WORLD_UNCONDITIONAL);
    EXPECT_EQ(countLogLines("Graphics component requires layer to be specified."), logged + 1);
    EXPECT_EQ(draws().size(), 1u);
}

TEST_F(Scene, PassInsideAPassLeavesTheOuterOneItsTargetsAndThings)
{
    GraphicsSystem2::SceneRenderParams inner;
    inner.viewer = camera;
    inner.layer = SceneGraph::POST;
    inner.depthTarget = SCS("ShadowMap");
    inner.bindTarget(SCS("ShadowMap"));
    DrawnThing &outer = thing("outer", SceneGraph::WORLD_UNCONDITIONAL, 1);
    outer.whenPreRendered = [&] { return sceneGraph().render(inner); };
    thing("outer2", SceneGraph::WORLD_UNCONDITIONAL, 1);
    thing("inner", SceneGraph::POST, 5);
    EXPECT_EQ(draws(), (Journal{quads(1), quads(2)}));
    EXPECT_EQ(calls, (Journal{"outer prepare", "inner prepare", "inner draw", "outer draw", "outer2 draw"}));
    Journal targets;
    for (const std::string &line : device->journal)
        if (line.starts_with("Target 0") || line.starts_with("Depth"))
            targets.push_back(line.substr(line.rfind(' ') + 1));
    const auto lastOfInner = std::find(targets.rbegin(), targets.rend(), "ShadowMap");
    EXPECT_EQ(Journal(lastOfInner.base(), targets.end()), (Journal{"GBuffer1", "GBuffer"}));
}

TEST_F(Scene, FailureInABatchEndsThePass)
{
    thing("failing", SceneGraph::WORLD_UNCONDITIONAL, 1).whenPreRendered = [] { return ErrorCode::NO_MEMORY; };
    thing("later", SceneGraph::WORLD_UNCONDITIONAL, 2);
    EXPECT_TRUE(draws().empty());
    EXPECT_EQ(result.getCode(), ErrorCode::NO_MEMORY);
}

TEST_F(Scene, TargetsFillSlotsInOrderAndTheRestIsUnbound)
{
    params.bindTarget(SCS("GBuffer2"));
    draws();
    Journal journal = device->journal;
    journal.resize(5);
    EXPECT_EQ(journal,
              (Journal{"Target 0 GBuffer1", "Target 1 GBuffer2", "Target 2 -", "Target 3 -", "Depth GBuffer"}));

    for (const char *name : {"GBuffer3", "GBuffer4", "LBuffer"})
        params.bindTarget(SCS(name));
    const std::size_t logged = countLogLines("Only one render target set may be bound as <target>. Ignored.");
    draws();
    EXPECT_EQ(device->count("Target 3 GBuffer4"), 1);
    EXPECT_EQ(device->count("Target 0 LBuffer") + device->count("Target 4"), 0) << "the fifth is ignored";
    EXPECT_EQ(countLogLines("Only one render target set may be bound as <target>. Ignored."), logged + 1);
}

TEST_F(Scene, UnknownTextureParameterIsReportedAndThePassGoesOn)
{
    params.bind(SCS("NoSuch"), SCS("GBuffer2"));
    thing("a", SceneGraph::WORLD_UNCONDITIONAL);
    const std::size_t logged = countLogLines("Unknown shader parameter `NoSuch_texture'.");
    EXPECT_EQ(draws().size(), 1u);
    EXPECT_EQ(countLogLines("Unknown shader parameter `NoSuch_texture'."), logged + 1);
    params.bind(SCS("NoSuch"), SCS("noSuchTarget"));
    EXPECT_TRUE(draws().empty());
    EXPECT_EQ(result.getCode(), ErrorCode::UNKNOWN_KEY);
}

TEST_F(Scene, ViewportIsAFractionOfTheBackBuffer)
{
    params.viewport = Vec4(0.5f, 0.25f, 0.33f, 0.5f);
    thing("a", SceneGraph::WORLD_UNCONDITIONAL);
    draws();
    EXPECT_EQ(device->count("Viewport 80 22 53 45"), 1);
}

TEST_F(Scene, CulledLayerShowsWhatTheGridFindsOncePerPass)
{
    PartitioningGrid &grid = mapWithGrid();
    const Vec4 ahead(0, 0, 6, 1);
    putInGrid(grid, thing("seen", SceneGraph::WORLD, 1), ahead);
    putInGrid(grid, thing("wall", SceneGraph::WORLD, 5), Vec4(0, 0, 9, 1)).setVolumeType(BoundingVolume::BV_WALL);
    putInGrid(grid, thing("decal", SceneGraph::DECAL, 2), ahead);
    DrawnThing &hidden = thing("hidden", SceneGraph::WORLD, 3);
    hidden.setVisible(false);
    putInGrid(grid, hidden, ahead);
    putInGrid(grid, thing("behind", SceneGraph::WORLD, 4), Vec4(0, 0, -12, 1));
    thing("withoutVolume", SceneGraph::WORLD, 4);

    params.layer = SceneGraph::WORLD;
    EXPECT_EQ(draws(), (Journal{quads(1), quads(1)})) << "each in several cells, drawn once";
    EXPECT_EQ(calls, (Journal{"seen prepare", "seen draw", "wall prepare", "wall draw"}));
    EXPECT_EQ(draws().size(), 2u) << "marks of an earlier pass do not count";
    params.layer = SceneGraph::DECAL;
    EXPECT_EQ(draws(), Journal{quads(1)});
    EXPECT_EQ(calls.front(), "decal prepare");
}

TEST_F(Scene, PartitioningDummyStandsForTheEntityAboveItsOwn)
{
    PartitioningGrid &grid = mapWithGrid();
    DrawnThing &lamp = thing("lamp", SceneGraph::WORLD, 1);
    DrawnThing &helper = thing("helper", SceneGraph::WORLD, 2, lamp.getParent());
    putInGrid(grid, helper, Vec4(0, 0, 6, 1)).setIsPartitioningDummy(true);
    params.layer = SceneGraph::WORLD;
    draws();
    EXPECT_EQ(calls, (Journal{"lamp prepare", "lamp draw"}));
}

TEST_F(Scene, MapWithoutAGridShowsNothingInCulledLayers)
{
    level.map("bare", Vec4(0, 0, 0, 1), Vec4(10, 10, 10, 0));
    thing("unseen", SceneGraph::WORLD);
    params.layer = SceneGraph::WORLD;
    EXPECT_TRUE(draws().empty());
    EXPECT_TRUE(result.succeeded());
}

TEST_F(Scene, LightBatchesStartFromACleanStencil)
{
    PartitioningGrid &grid = mapWithGrid();
    for (const char *label : {"lamp", "torch"})
        putInGrid(grid, thing(label, SceneGraph::LIGHT, -1), Vec4(0, 0, 4, 1));
    params.layer = SceneGraph::LIGHT;
    EXPECT_EQ(draws().size(), 2u);
    EXPECT_EQ(device->count("Clear stencil z=0"), 2);
}

TEST_F(Scene, OneObjectOutsideAllListsNeedsATechniqueForTheSet)
{
    GraphicsSystem2::BatchRenderParams batch;
    batch.mesh = graphics().getFullScreenQuad();
    ASSERT_TRUE(graphics().beginFrame().succeeded());
    EXPECT_EQ(sceneGraph().renderOneObject(params, batch).getCode(), ErrorCode::UNKNOWN_KEY);
    batch.shaders.insert(SCS("Default"), GraphicsSystem2::ShaderID(SCS("ff.fx"), SCS("NonInstancedObject")));
    params.clearTargets = true;
    device->take();
    EXPECT_TRUE(sceneGraph().renderOneObject(params, batch).succeeded());
    EXPECT_EQ(device->count("Clear target z=1"), 1);
    EXPECT_EQ(device->count(quads(1)), 1);
    batch.mesh = Handle<MeshAsset>();
    EXPECT_TRUE(sceneGraph().renderOneObject(params, batch).succeeded()) << "a mesh still loading is a silent gap";
    graphics().endFrame().ignoreError();
}
