// What each drawn class adds to the contract of GraphicsComponent2: quads, boxes, terrains, decals, dust.
#include "RenderingWorld.h"

#include "assets/cache/AssetUploader.h"
#include "assets/cache/DynamicTextureAsset.h"
#include "assets/models/DynamicMeshAsset.h"
#include "rendering/drawn/DecalComponent.h"
#include "rendering/drawn/DustParticleSystemComponent.h"
#include "rendering/drawn/HeightMapGraphics.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/QuadComponent2.h"
#include "rendering/drawn/WholeWindow.h"
#include "rendering/drawn/WorldBasedTCBoxGraphicsComponent.h"
#include "support/AllocationCount.h"
#include "support/TemporaryFile.h"

#include "foundation/Random.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

class Drawn : public testing::Test, public RenderingWorld
{
protected:
    /// Makes a drawn component on an entity with a transform, not loaded yet.
    template <class T>
    T &make(Vec4 position, Vec4 scale, SceneGraph::Layer layer, Handle<Object> parent = Handle<Object>())
    {
        const Handle<Entity> entity = level.entity("drawn", parent);
        level.transform(entity, position).lookup()->setScale(scale);
        T &component = *level.component<T>(entity, "graphics2").lookup();
        component.setLayer(layer);
        return component;
    }
    /// Loads a component with the real device, which textures need.
    void load(GraphicsComponent2 &component)
    {
        const OnRealDevice real(*this);
        component.onLoadComplete();
    }
    QuadComponent2 &quad(Vec4 position, Vec4 scale, const char *texture)
    {
        QuadComponent2 &made = make<QuadComponent2>(position, scale, SceneGraph::SCREEN);
        made.setTextureName(SCS(texture));
        load(made);
        return made;
    }
    WorldBasedTCBoxGraphicsComponent &box(Vec4 position, Vec4 scale)
    {
        auto &made = make<WorldBasedTCBoxGraphicsComponent>(position, scale, SceneGraph::WORLD_UNCONDITIONAL);
        made.setTextureName(SCS("white.dds"));
        load(made);
        return made;
    }
    TransformComponent &transformOf(GraphicsComponent2 &component)
    {
        return *handle_cast<TransformComponent>(component.getSibling(SCS("transform"))).lookup();
    }
    std::vector<std::string> drawCalls()
    {
        std::vector<std::string> draws;
        for (const std::string &line : journalOfPasses())
            if (line.starts_with("Draw"))
                draws.push_back(line);
        return draws;
    }
    /// Red, green or blue of a pixel of the presented frame, as they lie in 0xAARRGGBB or the other way round.
    int green(int x, int y) { return static_cast<int>(presentedPixel(x, y) >> 8 & 255); }

    std::mt19937 chance{7};
    float random(float min, float max) { return std::uniform_real_distribution<float>(min, max)(chance); }
};

} // namespace

TEST_F(Drawn, EqualQuadsShareADrawCallAndDeeperOnesComeFirst)
{
    for (int i = 0; i < 5; ++i)
        quad(Vec4(0.1f * static_cast<float>(i), 0, 1, 1), Vec4(0.1f, 0.1f, 1, 0), "white.dds");
    quad(Vec4(0, 0, 1, 1), Vec4(1, 1, 1, 0), "black.dds");
    for (int i = 0; i < 2; ++i)
        quad(Vec4(0, 0, 3, 1), Vec4(1, 1, 1, 0), "white.dds");
    const std::vector<std::string> draws = drawCalls();
    ASSERT_EQ(draws.size(), 6u);
    EXPECT_EQ(draws[3], "DrawIndexed 2 primitives x 2") << "the deepest";
    EXPECT_EQ(std::count(draws.begin(), draws.end(), "DrawIndexed 2 primitives x 5"), 1);
}

TEST_F(Drawn, QuadStandsOnItsAnchorsAndHidesWhatIsDeeper)
{
    const WindowCoordinate window = getWholeWindow();
    QuadComponent2 &corner = quad(Vec4(window.x, window.y, 1, 1), Vec4(window.x / 2, window.y / 2, 1, 0), "white.dds");
    corner.setHorizontalAnchorPoint(H_RIGHT);
    corner.setVerticalAnchorPoint(V_TOP);
    EXPECT_EQ(green(WIDTH - 4, 4), 255);
    EXPECT_EQ(green(WIDTH / 2 + 4, HEIGHT / 2 - 4), 255);
    EXPECT_EQ(green(WIDTH / 2 - 4, 4), 0);
    EXPECT_EQ(green(WIDTH - 4, HEIGHT / 2 + 4), 0);

    QuadComponent2 &cover = quad(Vec4(window.x, window.y, 0.5f, 1), Vec4(1, 1, 1, 0), "black.dds");
    cover.setHorizontalAnchorPoint(H_CENTER);
    cover.setVerticalAnchorPoint(V_CENTER);
    EXPECT_EQ(green(WIDTH - 4, 4), 0) << "covered by what is made later and stands nearer";
    transformOf(cover).setPosition(Vec4(window.x, window.y, 2, 1));
    EXPECT_EQ(green(WIDTH - 4, 4), 255) << "now it stands behind";
}

TEST_F(Drawn, WhatIsClearInAQuadOfTheWorldHidesNothingBehindIt)
{
    const std::uint8_t coverage[] = {255, 0};
    DynamicTextureAsset &halfClear = *construct<DynamicTextureAsset>(defaultAllocationCategory).lookup();
    {
        const OnRealDevice real(*this);
        halfClear.setCoverage({2, 1, coverage, {0, 0, 2, 1}});
    }
    const auto square = [&](float z, float size) -> QuadComponent2 &
    {
        QuadComponent2 &made = make<QuadComponent2>(Vec4(0, 0, z, 1), Vec4(size, size, 1, 0), SceneGraph::WORLD_DEBUG);
        made.setTextureName(SCS("white.dds"));
        load(made);
        return made;
    };
    // The pane is drawn first, and stands in front; its left edge is in the middle of the picture.
    square(2, 1).setTexture(halfClear.getTypedHandle());
    EXPECT_GT(green(WIDTH / 2 + 6, HEIGHT / 2 - 6), 250);
    EXPECT_LT(green(WIDTH / 2 + 48, HEIGHT / 2 - 6), 5) << "clear";
    square(3, 3);
    EXPECT_GT(green(WIDTH / 2 + 48, HEIGHT / 2 - 6), 250) << "the wall, through the clear half";
    EXPECT_GT(green(WIDTH / 2 + 36, HEIGHT / 2 - 6), 5);
    EXPECT_LT(green(WIDTH / 2 + 36, HEIGHT / 2 - 6), 250) << "it was the pane that came first";
}

TEST_F(Drawn, MapIsTheOneThatWasGivenLast)
{
    QuadComponent2 &made = quad(Vec4(0, 0, 1, 1), Vec4(1, 1, 1, 0), "white.dds");
    const Handle<TextureAsset> white = made.getTexture(), neutral = made.getEmissiveTexture();
    ASSERT_TRUE(white.isValid() && neutral.isValid());
    made.setEmissiveTexture(white);
    made.onLoadComplete();
    EXPECT_EQ(made.getEmissiveTexture(), white) << "no name asks for another";
    made.setEmissiveTextureName(String());
    EXPECT_EQ(made.getEmissiveTexture(), neutral) << "the default";
    made.setTextureName(String());
    EXPECT_FALSE(made.getTexture().isValid());

    auto &lamp = make<LightComponent>(Vec4(0, 0, 0, 1), Vec4(1, 1, 1, 0), SceneGraph::LIGHT);
    lamp.setTexture(white);
    EXPECT_EQ(lamp.getTextureName(), SCS("white.dds"));
    load(lamp);
    EXPECT_EQ(lamp.getTexture(), white);
    lamp.setTexture(Handle<TextureAsset>());
    EXPECT_EQ(lamp.getTextureName(), String());
}

TEST_F(Drawn, TexturesRunOnFromBoxToBox)
{
    for (int round = 0; round < 40; ++round)
    {
        // Two boxes side by side along one axis, of different sizes along it.
        const int axis = round % 3;
        Vec4 scale(random(0.2f, 3), random(0.2f, 3), random(0.2f, 3), 0), other = scale;
        other[axis] = random(0.2f, 3);
        Vec4 position(random(-5, 5), random(-5, 5), random(5, 15), 1), next = position;
        next[axis] += (scale[axis] + other[axis]) * 0.5f;
        auto &first = box(position, scale), &second = box(next, other);
        for (auto *made : {&first, &second})
            made->setTextureScale(0.25f + 0.25f * static_cast<float>(round % 5));
        drawFrame();

        int shared = 0;
        for (const DefaultMeshVertex &a : first.getMesh().lookup()->getMeshData().getVertexBufferData())
            for (const DefaultMeshVertex &b : second.getMesh().lookup()->getMeshData().getVertexBufferData())
            {
                const MeshVector3 apart = a.position - b.position, turned = a.normal - b.normal;
                const auto near = [](const MeshVector3 &v) { return v.x * v.x + v.y * v.y + v.z * v.z < 1e-8f; };
                if (!near(apart) || !near(turned))
                    continue;
                ++shared;
                EXPECT_NEAR(a.texCoord0.x, b.texCoord0.x, 1e-4f);
                EXPECT_NEAR(a.texCoord0.y, b.texCoord0.y, 1e-4f);
            }
        EXPECT_EQ(shared, 8) << "four sides meet in two corners each";
        for (auto *made : {&first, &second})
            made->getParent().lookup()->murder();
        cremateDeadObjects();
    }
}

TEST_F(Drawn, BoxIsMadeAnewOnlyWhenItsPlaceOrTextureScaleChanges)
{
    auto &made = box(Vec4(0, 0, 5, 1), Vec4(1, 1, 1, 0));
    const auto rightmost = [&made]
    {
        float most = -1e9f;
        for (const DefaultMeshVertex &v : made.getMesh().lookup()->getMeshData().getVertexBufferData())
            most = std::max(most, v.position.x);
        return most;
    };
    for (int i = 0; i < 3; ++i)
        drawFrame();
    EXPECT_EQ(allocationsOfFrames(1), 0u);
    EXPECT_FLOAT_EQ(rightmost(), 0.5f);
    transformOf(made).setPosition(Vec4(2, 0, 5, 1));
    drawFrame();
    EXPECT_FLOAT_EQ(rightmost(), 2.5f);
    const auto texturePlace = [&made]
    { return made.getMesh().lookup()->getMeshData().getVertexBufferData().front().texCoord0.x; };
    const float single = texturePlace();
    ASSERT_NE(single, 0);
    made.setTextureScale(2);
    drawFrame();
    EXPECT_FLOAT_EQ(texturePlace(), 2 * single);

    QuadComponent2 &other = quad(Vec4(0, 0, 1, 1), Vec4(1, 1, 1, 0), "white.dds");
    EXPECT_NE(made.batchCompare(getHandle(&other)), other.batchCompare(getHandle(&made))) << "never one batch";
}

TEST_F(Drawn, TerrainTellsTheHeightsItIsDrawnWith)
{
    auto &terrain = make<HeightMapGraphics>(Vec4(3, -1, 7, 1), Vec4(12, 4, 6, 0), SceneGraph::WORLD_UNCONDITIONAL);
    terrain.makeFlat(7, 5);
    for (int row = 0; row < terrain.getRows(); ++row)
        for (int column = 0; column < terrain.getColumns(); ++column)
            terrain.setHeightAt(column, row, random(0, 1));
    load(terrain);
    transformOf(terrain).setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 0.7f));
    drawFrame();

    const Mesh &mesh = terrain.getMesh().lookup()->getMeshData();
    const Matrix4 toWorld = transformOf(terrain).getTransformationMatrix();
    int found = 0;
    for (std::size_t i = 0; i + 2 < mesh.getIndexBufferData().size(); i += 3)
    {
        // Any place within the triangle, as the device interpolates it.
        Vec4 corners[3];
        for (std::size_t k = 0; k < 3; ++k)
        {
            const MeshVector3 &at = mesh.getVertexBufferData()[mesh.getIndexBufferData()[i + k]].position;
            corners[k] = toWorld * Vec4(at.x, at.y, at.z, 1);
        }
        const float u = random(0, 1), v = random(0, 1 - u);
        const Vec4 place = corners[0] * (1 - u - v) + corners[1] * u + corners[2] * v;
        EXPECT_NEAR(terrain.getHeight(place.x, place.z), place.y, 1e-3f);
        const Vec4 facing = (corners[1] - corners[0]).cross(corners[2] - corners[0]);
        EXPECT_GT(facing.y, 0) << "clockwise from above";
        ++found;
    }
    EXPECT_EQ(found, 2 * 6 * 4);
    terrain.getMesh().lookup()->murder();
    cremateDeadObjects();
    drawFrame();
    EXPECT_TRUE(terrain.getMesh().isValid()) << "made anew";
    EXPECT_FLOAT_EQ(terrain.getHeight(1e9f, std::nanf("")), terrain.getHeight(1e6f, std::nanf("")));

    const Handle<DynamicMeshAsset> asset = terrain.getMesh();
    terrain.murder();
    cremateDeadObjects();
    EXPECT_FALSE(asset.isValid()) << "the mesh dies with what it is drawn for";
}

TEST_F(Drawn, TerrainReadsItsImageAndLeansAsItRises)
{
    // A ramp towards the picture's lower right, 8 x 4 pixels: an uncompressed TGA, top row first.
    const TemporaryFile file("ramp.tga");
    std::vector<char> bytes = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, 0, 4, 0, 24, 0x20};
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 8; ++x)
            bytes.insert(bytes.end(), 3, static_cast<char>(x * 20 + y * 10));
    file.write(bytes);
    auto &terrain = make<HeightMapGraphics>(Vec4(0, 0, 5, 1), Vec4(1, 1, 1, 0), SceneGraph::WORLD_UNCONDITIONAL);
    terrain.setHeightMapName(SCS("../../../../../../../../../../..") + file.name());
    terrain.setTextureRepeat(3);
    load(terrain);
    drawFrame();
    ASSERT_EQ(terrain.getColumns(), 8);
    ASSERT_EQ(terrain.getRows(), 4);
    EXPECT_NEAR(terrain.getHeight(0.5f, 5.2f), (7 * 20 + 0.9f * 10) / 255, 1e-5f);
    EXPECT_NEAR(terrain.getHeight(-0.5f, 4.8f), 2.1f * 10 / 255, 1e-5f);

    const float slope = 140 / 255.0f, slopeBack = 30 / 255.0f;
    const float length = std::sqrt(1 + slope * slope + slopeBack * slopeBack);
    float widest = 0;
    for (const DefaultMeshVertex &vertex : terrain.getMesh().lookup()->getMeshData().getVertexBufferData())
    {
        EXPECT_NEAR(vertex.normal.x, -slope / length, 1e-4f);
        EXPECT_NEAR(vertex.normal.y, 1 / length, 1e-4f);
        EXPECT_NEAR(vertex.normal.z, slopeBack / length, 1e-4f) << "lower rows lie towards -z";
        EXPECT_NEAR(vertex.tangent.y, slope / std::sqrt(1 + slope * slope), 1e-4f);
        widest = std::max(widest, vertex.texCoord0.x);
    }
    EXPECT_FLOAT_EQ(widest, 3);

    file.write({'n', 'o', ' ', 'i', 'm', 'a', 'g', 'e'});
    const std::size_t logged = countLogLines("is flat: ");
    {
        const OnRealDevice real(*this);
        terrain.setHeightMapName(terrain.getHeightMapName());
    }
    EXPECT_EQ(countLogLines("is flat: "), logged + 1);
    EXPECT_EQ(terrain.getColumns(), 2);
    EXPECT_EQ(terrain.getHeight(0.5f, 5), 0);
}

TEST_F(Drawn, DecalColoursOnlyWhatFacesItWithinItsBox)
{
    manager->setSceneAmbient(4);
    box(Vec4(0, 0, 6, 1), Vec4(12, 8, 2, 0)); // its front stands at z 5
    const int clean = green(WIDTH / 2, HEIGHT / 2);
    ASSERT_GT(clean, 60);

    PartitioningGrid &grid = mapWithGrid();
    auto &decal = make<DecalComponent>(Vec4(0, 0, 5, 1), Vec4(1, 1, 0.5f, 0), SceneGraph::DECAL);
    decal.setTextureName(SCS("black.dds"));
    load(decal);
    BoundingVolume &volume =
        *level.component<BoundingVolume>(handle_cast<Entity>(decal.getParent()), "boundingVolume").lookup();
    grid.addVolume(getHandle(&volume));

    EXPECT_LT(green(WIDTH / 2, HEIGHT / 2), clean / 4);
    EXPECT_NEAR(green(WIDTH / 2 + 40, HEIGHT / 2), clean, 12) << "beside the box";
    decal.setAlpha(0.5f);
    const int half = green(WIDTH / 2, HEIGHT / 2);
    EXPECT_TRUE(half > clean / 4 && half < clean - 10) << half;
    decal.setAlpha(std::nanf(""));
    EXPECT_NEAR(green(WIDTH / 2, HEIGHT / 2), clean, 1);
    decal.setAlpha(1);
    transformOf(decal).setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), PI));
    EXPECT_NEAR(green(WIDTH / 2, HEIGHT / 2), clean, 1) << "thrown from behind the wall";
    transformOf(decal).setOrientation(Quaternion());
    transformOf(decal).setPosition(Vec4(0, 0, 4, 1));
    EXPECT_NEAR(green(WIDTH / 2, HEIGHT / 2), clean, 1) << "the box ends before the wall";
    transformOf(decal).setScale(Vec4(1, 1, 0, 0));
    EXPECT_EQ(decal.objectGetInstanceCount(), 0) << "a flat one has no inside";
}

TEST_F(Drawn, MissingTransformIsToldOnceInTheClassesOwnWords)
{
    for (const char *className : {"QuadComponent2", "WorldBasedTCBoxGraphicsComponent", "HeightMapGraphics",
                                  "DecalComponent", "DustParticleSystemComponent"})
    {
        const Handle<Entity> entity = level.entity("bare");
        auto &bare = *handle_cast<GraphicsComponent2>(
                          entity.lookup()->addComponent(SCS("graphics2"), String::copyFromCString(className)))
                          .lookup();
        bare.setLayer(SceneGraph::WORLD_DEBUG);
        load(bare);
        const std::string words = std::string(className) + " had no transform sibling";
        const std::size_t logged = countLogLines(words.c_str());
        drawFrame();
        drawFrame();
        EXPECT_EQ(countLogLines(words.c_str()), logged + 1) << className;
        entity.lookup()->murder();
        cremateDeadObjects();
    }
}

namespace
{

class Dust : public Drawn
{
protected:
    Dust()
    {
        seedEngineRand(5);
        const Handle<Entity> lamp = level.entity("lamp");
        level.transform(lamp, Vec4(0, 0, 1, 1));
        light = level.component<LightComponent>(lamp, "graphics2");
        light.lookup()->setLayer(SceneGraph::LIGHT);
        light.lookup()->setLightFalloffEnd(6);
        light.lookup()->onLoadComplete();
        cloud = &make<DustParticleSystemComponent>(Vec4(0, 0, 5, 1), Vec4(6, 4, 8, 0), SceneGraph::WORLD_DEBUG);
        cloud->setCount(2000);
        load(*cloud);
    }

    /// Places of the motes that were given to the device.
    std::vector<MeshVector3> lit()
    {
        std::vector<MeshVector3> places;
        const auto params = cloud->getMesh().lookup();
        for (const DefaultMeshVertex &vertex : params->getMeshData().getVertexBufferData())
            places.push_back(vertex.position);
        return places;
    }

    Handle<LightComponent> light;
    DustParticleSystemComponent *cloud = nullptr;
};

} // namespace

TEST_F(Dust, OnlyMotesInTheConeAreDrawn)
{
    level.frame();
    const float widest = std::tan(light.lookup()->getSpotOuterAngle());
    ASSERT_GT(cloud->getLitCount(), 100);
    ASSERT_LT(cloud->getLitCount(), 1000);
    for (const MeshVector3 &place : lit())
    {
        const float ahead = place.z - 1;
        EXPECT_LT(std::hypot(place.x, place.y), widest * ahead);
        EXPECT_LT(std::hypot(place.x, place.y, ahead), 6);
    }
    light.lookup()->setIsSpot(false);
    const int inCone = cloud->getLitCount();
    level.frame();
    EXPECT_GT(cloud->getLitCount(), inCone) << "a sphere of the same reach lights more of them";
}

TEST_F(Dust, IsLitByTheLawOfTheSurfaces)
{
    LightComponent &lamp = *light.lookup(); // at z 1, reaching 6 m
    lamp.setDiffuseColor(Vec4(2, 1, 0.5f, 0));
    lamp.setLightFalloffBegin(1);
    const LightInAir inAir(lamp, transformOf(lamp));
    const Vec4 eye(0, 0, 1, 1); // looks away from the light
    EXPECT_FLOAT_EQ(inAir.scatteredAt(Vec4(0, 0, 1.5f, 1), eye).r, 2);
    EXPECT_NEAR(inAir.scatteredAt(Vec4(0, 0, 4.5f, 1), eye).r, 2 * 0.5f * 0.5f, 1e-5f);
    EXPECT_NEAR(inAir.scatteredAt(Vec4(0, 0, 4.5f, 1), eye).b, 0.5f * 0.5f * 0.5f, 1e-5f);
    EXPECT_EQ(inAir.scatteredAt(Vec4(0, 0, 7, 1), eye), Vec4());
    EXPECT_GT(inAir.scatteredAt(Vec4(0, 0, 4.5f, 1), Vec4(0, 0, 9, 1)).r, 0.6f) << "glare against the light";
    const float middle = std::acos((std::cos(lamp.getSpotInnerAngle()) + std::cos(lamp.getSpotOuterAngle())) / 2);
    EXPECT_NEAR(inAir.scatteredAt(Vec4(0.5f * std::sin(middle), 0, 1 + 0.5f * std::cos(middle), 1), eye).r, 1, 1e-4f);
}

TEST_F(Dust, MurderedLightLeavesItDarkAtOnce)
{
    level.frame();
    const std::string points = "Draw " + std::to_string(cloud->getLitCount()) + " primitives x 1";
    EXPECT_EQ(device->count(points), 1);
    light.lookup()->getParent().lookup()->murder();
    device->take();
    drawFrame();
    EXPECT_EQ(device->count("Draw "), 0);
    level.frame();
    EXPECT_EQ(cloud->getLitCount(), 0);
}

TEST_F(Dust, DriftsWithTheMasterTimerAndTakesNoMemory)
{
    for (int i = 0; i < 3; ++i)
        level.frame();
    const std::vector<MeshVector3> before = lit();
    level.coordinator().getTimer(SCS("master")).setScaling(0, 0);
    level.frame();
    EXPECT_EQ(lit(), before) << "the level's clock stands still";
    level.coordinator().getTimer(SCS("master")).setScaling(1, 0);
    level.coordinator().setLoopState(Coordinator::LOOP_STOP);
    level.frame();
    EXPECT_EQ(lit(), before) << "the level is stopped";
    level.coordinator().setLoopState(Coordinator::LOOP_RUN);
    level.frame();
    EXPECT_NE(lit(), before);

    EXPECT_EQ(allocationsOfFrames(10), 0u);
}

TEST_F(Dust, MotesStayInTheWorldWhileTheirBoxMovesThroughThem)
{
    cloud->setDriftSpeed(0);
    light.lookup()->setIsSpot(false);
    light.lookup()->setLightFalloffEnd(30);
    level.frame();
    const std::vector<MeshVector3> before = lit();
    transformOf(*cloud).setPosition(Vec4(0.5f, 0, 5, 1));
    level.frame();
    const std::vector<MeshVector3> after = lit();
    int kept = 0, cameIn = 0;
    for (const MeshVector3 &place : after)
    {
        EXPECT_NEAR(place.x, 0.5f, 3.001f);
        for (const MeshVector3 &old : before)
        {
            const float y = place.y - old.y, z = place.z - old.z;
            kept += std::hypot(place.x - old.x, y, z) < 1e-4f;
            cameIn += std::hypot(place.x - 6 - old.x, y, z) < 1e-4f;
        }
    }
    EXPECT_GT(kept, static_cast<int>(before.size()) * 3 / 4);
    EXPECT_GT(cameIn, 10) << "what the box left behind comes in on its other side";
    transformOf(*cloud).setPosition(Vec4(std::nanf(""), 0, 5, 1));
    level.frame();
    transformOf(*cloud).setPosition(Vec4(0, 0, 5, 1));
    level.frame();
    EXPECT_GT(cloud->getLitCount(), static_cast<int>(before.size()) / 2) << "a box that was nowhere fills again";
}
