#include "RenderingWorld.h"

#include "assets/models/DynamicMeshAsset.h"
#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/WholeWindow.h"
#include "platform/window/WindowSystem2.h"
#include "support/AllocationCount.h"

#include "port/d3d9/Texture.h"

#include <gtest/gtest.h>

#include <boost/variant/get.hpp>
#include <algorithm>
#include <cmath>

namespace
{

typedef std::vector<std::string> Journal;
constexpr float degree = 3.14159265f / 180;

Quaternion turned(float yaw)
{
    return Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), yaw);
}

class Lights : public testing::Test, public RenderingWorld
{
protected:
    Lights() : map(mapWithGrid().getAncestorOfType<MapRootEntity>()) {}

    LightComponent &light(Vec4 position, bool isSpot, bool castShadows = false)
    {
        const Handle<Entity> entity = level.entity("light", map);
        level.transform(entity, position);
        if (castShadows)
            level.component<ViewerComponent>(entity, "viewer").lookup()->setNearClipDistance(0.05f);
        LightComponent &made = *level.component<LightComponent>(entity, "graphics2").lookup();
        made.setIsSpot(isSpot);
        made.setCastShadows(castShadows);
        made.setLayer(SceneGraph::LIGHT);
        made.onLoadComplete();
        return made;
    }

    /// A square that faces the camera, 2 m times its size; with a volume if it stands in the culled world.
    void square(Vec4 position, float size, SceneGraph::Layer layer)
    {
        const Handle<Entity> entity = level.entity("square", map);
        level.transform(entity, position).lookup()->setScale(Vec4(size, size, 1, 0));
        ModelGraphicsComponent2 &model = *level.component<ModelGraphicsComponent2>(entity, "graphics2").lookup();
        model.setMesh(graphics().getFullScreenQuad());
        model.setTextureName(SCS("white.dds"));
        model.setLayer(layer);
        if (layer == SceneGraph::WORLD)
            level.component<BoundingVolume>(entity, "boundingVolume").lookup()->setHitBox(Vec4(1, 1, 1, 0));
        const OnRealDevice real(*this);
        model.onLoadComplete();
    }

    /// Runs the level until volumes stand where they belong, and draws.
    void settle()
    {
        level.frame();
        level.frame();
    }

    /// What the light buffer of the last frame holds at a pixel, of light that white surfaces return.
    Vec4 arrived(int x = WIDTH / 2, int y = HEIGHT / 2)
    {
        auto *buffer = static_cast<port::Texture *>(graphics().getRenderTargetTexture(SCS("LBuffer")).value);
        Vec4 light;
        glGetTextureSubImage(buffer->id(), 0, x, y, 0, 1, 1, 1, GL_RGBA, GL_FLOAT, sizeof(light), light.v);
        return light;
    }

    static TransformComponent &placeOf(LightComponent &light)
    {
        return *handle_cast<TransformComponent>(light.getSibling(SCS("transform"))).lookup();
    }

    Handle<MapRootEntity> map;
};

Matrix4 matrixAt(const GraphicsSystem2::BatchRenderParams &params, std::size_t index)
{
    return boost::get<Matrix4>(params.shaderConstants[index].second);
}

void expectSame(const Matrix4 &actual, const Matrix4 &expected)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(actual[row][column], expected[row][column], 1e-5f) << row << " " << column;
}

void expectNear(const Vec4 &actual, const Vec4 &expected, float tolerance)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

} // namespace

TEST_F(Lights, ConstantsStandInTheirOrderAndForm)
{
    typedef TransformComponent T;
    T &eye = *handle_cast<T>(camera.lookup()->getComponent(SCS("transform"))).lookup();
    eye.setPosition(Vec4(1, 2, 3, 1));
    eye.setOrientation(turned(90 * degree)); // looks along +x
    LightComponent &spot = light(Vec4(5, 2, 4, 1), true, true);
    const auto params = spot.batchGetParams();
    Journal names;
    for (const auto &[name, value] : params.shaderConstants)
        names.push_back(name.toCString());
    EXPECT_EQ(names, (Journal{"modelToWorld", "spotInnerAngleCos", "spotOuterAngleCos", "lightDiffuseColor",
                              "lightSpecularColor", "spotFalloff", "lightFalloffBegin", "lightFalloffEnd",
                              "lightPosition_ViewSpace", "spotDirection_ViewSpace", "worldToLightView",
                              "lightViewToLightProjection"}));
    EXPECT_NEAR(boost::get<float>(params.shaderConstants[2].second), std::cos(30 * degree), 1e-6f);
    expectSame(matrixAt(params, 0), placeOf(spot).getTransformationMatrix().transpose());
    EXPECT_NEAR(matrixAt(params, 0)[2][2], 17, 1e-4f) << "the mesh is as large as the reach";
    expectNear(boost::get<Vec4>(params.shaderConstants[8].second), Vec4(-1, 0, 4, 1), 1e-5f);
    expectNear(boost::get<Vec4>(params.shaderConstants[9].second), Vec4(-1, 0, 0, 0), 1e-6f);
    ViewerComponent &viewer = *handle_cast<ViewerComponent>(spot.getSibling(SCS("viewer"))).lookup();
    EXPECT_NEAR(viewer.getVerticalFieldOfViewAngle(), 60 * degree, 1e-6f);
    expectSame(matrixAt(params, 10), placeOf(spot).getCameraMatrix(T::INVERT | T::OMIT_SCALE).transpose());
    expectSame(matrixAt(params, 11), viewer.getProjectionMatrix(1, 1));
}

TEST_F(Lights, FlagsChooseTheTechnique)
{
    LightComponent &made = light(Vec4(0, 0, 0, 1), true, true);
    const auto technique = [&made]
    { return std::string(made.batchGetParams().shaders.find(SCS("Default"))->technique.toCString()); };
    EXPECT_EQ(technique(), "SpotShadowsLight");
    EXPECT_EQ(made.batchGetParams().shaders.find(SCS("Shadow")), nullptr);
    made.setCastShadows(false);
    EXPECT_EQ(technique(), "SpotLight");
    EXPECT_EQ(made.batchGetParams().shaderConstants.size(), 10u);
    const Handle<MeshAsset> cone = made.getMesh();
    made.setIsSpot(false);
    EXPECT_EQ(technique(), "SphereLight");
    EXPECT_NE(made.getMesh(), cone);
    made.setCastShadows(true);
    made.setIsAmbient(true);
    EXPECT_EQ(technique(), "SphereLight");
}

TEST_F(Lights, DummyAndMeshAreAsLargeAsTheReach)
{
    LightComponent &made = light(Vec4(0, 0, 0, 1), true);
    const Handle<Object> dummy = made.getDescendantByPath(SCS("../.partitioningDummy"));
    ASSERT_TRUE(dummy.isValid());
    const auto component = [&dummy](const char *key) { return dummy.lookup()->getChild(String::copyFrom(key)); };
    const auto volume = handle_cast<BoundingVolume>(component("boundingVolume")).lookup();
    const auto follower = handle_cast<ParentFollowerComponent>(component("parentFollower")).lookup();
    EXPECT_TRUE(volume->getIsPartitioningDummy());
    const auto expectExtents = [&](Vec4 box, Vec4 offset, Vec4 scale)
    {
        expectNear(volume->getHitBox(), box, 1e-4f);
        expectNear(follower->getPositionOffset(), offset, 1e-4f);
        expectNear(placeOf(made).getScale(), scale, 1e-4f);
    };
    made.setLightFalloffEnd(10);
    made.setSpotOuterAngle(45 * degree);
    expectExtents(Vec4(20, 20, 10, 0), Vec4(0, 0, 5, 0), Vec4(10, 10, 10, 0));
    made.setIsSpot(false);
    expectExtents(Vec4(20, 20, 20, 0), Vec4(0, 0, 0, 0), Vec4(11, 11, 11, 0));

    const Handle<Entity> own = level.entity("own", map);
    level.transform(own);
    level.component<BoundingVolume>(own, "boundingVolume");
    LightComponent &second = *level.component<LightComponent>(own, "graphics2").lookup();
    second.setLayer(SceneGraph::LIGHT);
    second.onLoadComplete();
    EXPECT_FALSE(second.getDescendantByPath(SCS("../.partitioningDummy")).isValid());
    expectNear(placeOf(second).getScale(), Vec4(1, 1, 1, 0), 0);
}

TEST_F(Lights, LightFallsWithTheDistance)
{
    LightComponent &sphere = light(Vec4(0, 0, 0, 1), false);
    sphere.setDiffuseColor(Vec4(1.5f, 0.75f, 0.25f, 0));
    sphere.setLightFalloffEnd(60);
    settle();
    EXPECT_EQ(arrived().x, 0.0f) << "nothing stands here, nor at the far plane";
    sphere.setLightFalloffEnd(6);
    square(Vec4(0, 0, 5, 1), 3, SceneGraph::WORLD_UNCONDITIONAL);
    for (const float begin : {0.0f, 2.0f})
        for (const float z : {0.0f, 1.5f, 3.2f, 4.5f, -0.5f, -2.0f}) // the camera stands within its volume
        {
            sphere.setLightFalloffBegin(begin);
            placeOf(sphere).setPosition(Vec4(0, 0, z, 1));
            settle();
            const float left = std::clamp((6 - (5 - z)) / (6 - begin), 0.0f, 1.0f);
            const Vec4 light = arrived();
            EXPECT_NEAR(light.x, 1.5f * left * left, 0.006f) << "begins " << begin << ", stands at " << z;
            EXPECT_NEAR(light.y, light.x / 2, 0.004f);
        }
    sphere.setLightFalloffEnd(5000);
    settle();
    EXPECT_GT(arrived().x, 1.4f) << "its volume ends beyond the far plane";
    sphere.setLightFalloffEnd(0);
    settle();
    EXPECT_EQ(arrived().x, 0.0f);
}

TEST_F(Lights, ConeIsFullWithinAndNothingOutside)
{
    LightComponent &spot = light(Vec4(0, 0, 0, 1), true);
    spot.setLightFalloffBegin(17); // full strength at every distance
    spot.setSpotInnerAngle(10 * degree);
    square(Vec4(0, 0, 5, 1), 3, SceneGraph::WORLD_UNCONDITIONAL);
    const auto strengthAt = [&](float angle)
    {
        placeOf(spot).setOrientation(turned(angle * degree));
        settle();
        return arrived().x / 0.9f;
    };
    EXPECT_NEAR(strengthAt(0), 1, 0.01f);
    EXPECT_NEAR(strengthAt(9), 1, 0.01f);
    const float middle = std::acos((std::cos(10 * degree) + std::cos(30 * degree)) / 2) / degree;
    EXPECT_NEAR(strengthAt(middle), 0.5f, 0.02f);
    spot.setSpotFalloff(30);
    EXPECT_LT(strengthAt(middle), 0.3f) << "a narrower core";
    EXPECT_EQ(strengthAt(31), 0.0f);
    spot.setSpotOuterAngle(90 * degree);
    EXPECT_NEAR(strengthAt(0), 1, 0.01f) << "as wide as half a sphere";
    spot.setSpotOuterAngle(120 * degree);
    EXPECT_GT(strengthAt(95), 0.01f) << "and wider";
}

TEST_F(Lights, ShadowFallsWhereTheCasterStandsInTheWay)
{
    constexpr float wall = 6, casterZ = 3, half = 0.5f;
    const Vec4 casterAt(-0.6f, 0, casterZ, 1);
    LightComponent &spot = light(Vec4(-1.5f, 0.4f, 0, 1), true, true);
    spot.setLightFalloffBegin(17);
    spot.setSpotInnerAngle(29 * degree);
    square(Vec4(0, 0, wall, 1), 6, SceneGraph::WORLD_UNCONDITIONAL);
    square(casterAt, half, SceneGraph::WORLD);
    settle();

    ViewerComponent &eye = *handle_cast<ViewerComponent>(camera.lookup()->getComponent(SCS("viewer"))).lookup();
    const WindowCoordinate size = getWholeWindow();
    const auto offCaster = [&](const Vec4 &point) // how far beside the caster, in its plane; below 0 within it
    { return std::max(std::fabs(point.x - casterAt.x), std::fabs(point.y - casterAt.y)) - half; };
    int dark = 0, lit = 0;
    for (int y = 5; y < HEIGHT; y += 4)
        for (int x = 5; x < WIDTH; x += 4)
        {
            const Vec4 screen((float(x) + 0.5f) / WIDTH * size.x, (float(y) + 0.5f) / HEIGHT * size.y, 1, 1);
            const Vec4 ray = eye.unProject(screen, size.x, size.y);
            const Vec4 onWall = ray * (wall / ray.z), seen = ray * (casterZ / ray.z);
            const Vec4 from = placeOf(spot).getPosition();
            const float beside = offCaster(from + (onWall - from) * (casterZ / wall));
            const Vec4 toWall = onWall - from;
            if (offCaster(seen) < 0.08f || std::fabs(beside) < 0.08f ||
                toWall.z < std::cos(28 * degree) * Vec4(toWall.x, toWall.y, toWall.z, 0).magnitude())
                continue; // the caster itself, the soft edge, and what the cone does not reach
            const float light = arrived(x, y).x;
            EXPECT_TRUE(beside < 0 ? light == 0 : light > 0.7f) << x << ", " << y << " got " << light;
            ++(beside < 0 ? dark : lit);
        }
    EXPECT_GT(dark, 15);
    EXPECT_GT(lit, 100);
}

TEST_F(Lights, ShadowFallsAtTheConesEdgeInAWindowTallerThanWide)
{
    getSystemDeref<WindowSystem2>().setWindowedSize(60, 120);
    LightComponent &spot = light(Vec4(-2, 0, 0, 1), true, true);
    spot.setLightFalloffBegin(17);
    square(Vec4(0, 0, 5, 1), 6, SceneGraph::WORLD_UNCONDITIONAL);
    square(Vec4(-0.8f, 0, 3, 1), 0.2f, SceneGraph::WORLD); // on the way to the middle of the picture, 22 degrees aside
    settle();
    EXPECT_EQ(arrived(30, 60).x, 0.0f);
    EXPECT_GT(arrived(30, 31).x, 0.05f) << "24 degrees aside";
    graphics().setShadowMapSize(9);
    settle();
    EXPECT_EQ(arrived(30, 60).x, 0.0f) << "coarser, and still there";
    EXPECT_EQ(graphics().getShadowMapSize(), 64);
    graphics().setShadowMapSize(768);
}

TEST_F(Lights, SteadyShadowsKeepTheirEdgesWhileTheLightTurns)
{
    graphics().setShadowMapSize(64); // an edge that crawls does so by many pixels
    LightComponent &spot = light(Vec4(-0.4f, 0, 0, 1), true, true);
    spot.setLightFalloffBegin(17);
    spot.setSpotInnerAngle(29.9f * degree);
    square(Vec4(0, 0, 6, 1), 6, SceneGraph::WORLD_UNCONDITIONAL);
    square(Vec4(0, 0, 3, 1), 0.5f, SceneGraph::WORLD);
    const auto rows = [&](float yaw)
    {
        placeOf(spot).setOrientation(turned(yaw * degree));
        settle();
        std::vector<float> light;
        for (int y = 30; y < 60; ++y)
            for (int x = 60; x < 105; ++x)
                light.push_back(arrived(x, y).x);
        return light;
    };
    const auto crawls = [&]
    {
        const std::vector<float> still = rows(0);
        float most = 0;
        for (const float yaw : {0.3f, 0.7f, 1.1f, -0.5f, -2.0f})
        {
            const std::vector<float> now = rows(yaw);
            for (std::size_t i = 0; i < now.size(); ++i)
                most = std::max(most, std::fabs(now[i] - still[i]));
        }
        return most;
    };
    EXPECT_GT(crawls(), 0.08f);
    spot.setSteadyShadows(true);
    EXPECT_LT(crawls(), 0.005f);
    const float lit = rows(0).front();
    EXPECT_GT(lit, 0.3f);
    EXPECT_NEAR(rows(12).front(), lit, 0.01f) << "the map follows a light that turns away from it";
    graphics().setShadowMapSize(768);
}

TEST_F(Lights, SteadyShadowsMoveEvenlyWhileTheLightIsCarriedPast)
{
    constexpr float wall = 6, casterZ = 3, half = 0.5f, step = 0.11f; // of a texel
    constexpr int side = 64, places = 24, rows = 9;                   // texels that are wide enough to be measured
    graphics().setShadowMapSize(side);
    LightComponent &spot = light(Vec4(0, 0, 0, 1), true, true);
    spot.setLightFalloffBegin(17);
    spot.setSpotInnerAngle(29.9f * degree);
    square(Vec4(0, 0, wall, 1), 6, SceneGraph::WORLD_UNCONDITIONAL);
    square(Vec4(-half, 0, casterZ, 1), half, SceneGraph::WORLD); // its upright edge stands at x = 0
    const float texel = 2 * std::tan(30 * degree) * casterZ / side;
    const auto litPixels = [&](int row) // of a row of the picture across the shadow's edge
    {
        float lit = 0;
        for (int x = WIDTH / 2 + 3; x < WIDTH / 2 + 45; ++x)
            lit += arrived(x, row).x;
        return lit / arrived(WIDTH / 2 + 45, row).x;
    };
    /// How far the edge is off an even way, in texels: the root of the mean square over rows and places of the light.
    const auto unevenness = [&]
    {
        float edge[rows][places];
        for (int place = 0; place < places; ++place)
        {
            placeOf(spot).setPosition(Vec4(-0.7f + step * texel * float(place), 0, 0, 1));
            settle();
            for (int row = 0; row < rows; ++row)
                edge[row][place] = litPixels(HEIGHT / 2 - 9 + 2 * row);
        }
        float squares = 0, slopes = 0;
        for (const auto &at : edge)
        {
            float mean = 0, slope = 0, spread = 0;
            for (int place = 0; place < places; ++place)
            {
                const float off = float(place) - (places - 1) / 2.0f;
                mean += at[place] / places;
                slope += off * at[place];
                spread += off * off;
            }
            slope /= spread;
            for (int place = 0; place < places; ++place)
            {
                const float missed = at[place] - mean - slope * (float(place) - (places - 1) / 2.0f);
                squares += missed * missed / (places * rows);
            }
            slopes += slope / rows;
        }
        const float texelOnWall = std::fabs(slopes) / step * (wall / casterZ); // pixels
        return std::sqrt(squares) / texelOnWall;
    };
    EXPECT_NEAR(unevenness(), 0.29f, 0.05f) << "an upright edge jumps from texel to texel";
    spot.setSteadyShadows(true);
    EXPECT_LT(unevenness(), 0.16f) << "its texels are a third larger, and the edge crosses them at a slant";
    graphics().setShadowMapSize(768);
}

TEST_F(Lights, LensThrowsItsPictureWhereThereIsAShadowMap)
{
    LightComponent &spot = light(Vec4(0, 0, 0, 1), true, true);
    spot.setLightFalloffBegin(17);
    spot.setSpotInnerAngle(29 * degree);
    square(Vec4(0, 0, 5, 1), 3, SceneGraph::WORLD_UNCONDITIONAL);
    const auto lightsWith = [&](const char *texture)
    {
        {
            const OnRealDevice real(*this);
            spot.setTextureName(SCS(texture));
        }
        settle();
        return std::pair(arrived(), arrived(WIDTH / 2 + 32));
    };
    settle();
    const Vec4 plain = arrived();
    EXPECT_NEAR(lightsWith("white.dds").first.x, 2 * plain.x, 0.01f);
    const auto [spotOfLight, rim] = lightsWith("flashlightLens.dds");
    EXPECT_GT(spotOfLight.x, 1.4f * rim.x);
    EXPECT_GT(rim.b, 0) << "and soft all over";
    EXPECT_STREQ(spot.batchGetParams().shaders.find(SCS("Default"))->technique.toCString(), "SpotShadowsLens");
    spot.setCastShadows(false);
    EXPECT_STREQ(spot.batchGetParams().shaders.find(SCS("Default"))->technique.toCString(), "SpotLight");
}

TEST_F(Lights, ShadowPassLeavesTheLightsTheirTargets)
{
    square(Vec4(0, 0, 4, 1), 0.5f, SceneGraph::WORLD);
    DrawnThing &noCaster = thing("noCaster", SceneGraph::WORLD, 7, map);
    noCaster.setCastShadows(false);
    level.component<BoundingVolume>(handle_cast<Entity>(noCaster.getParent()), "boundingVolume");
    light(Vec4(0, 0, 0, 1), true, true);
    settle();
    Journal steps = journalOfPasses();
    const auto shadow = std::find(steps.begin(), steps.end(), "Target 0 ShadowMap");
    ASSERT_NE(shadow, steps.end());
    steps.erase(steps.begin(), shadow);
    std::erase_if(steps,
                  [](const std::string &line)
                  {
                      return !line.starts_with("Target 0") && !line.starts_with("Depth") &&
                             !line.starts_with("Clear") && !line.starts_with("Draw") && !line.starts_with("Viewport");
                  });
    steps.resize(11);
    const std::string cone = steps[10];
    EXPECT_EQ(steps, (Journal{"Target 0 ShadowMap", "Depth ShadowMap", "Clear target depth z=1", "Target 0 ShadowMap",
                              "Depth ShadowMap", "Viewport 0 0 768 768", "DrawIndexed 2 primitives x 1",
                              "Target 0 LBuffer", "Depth GBuffer", "Viewport 0 0 160 90", cone}));
    EXPECT_TRUE(cone.starts_with("Clear stencil")) << cone;
}

TEST_F(Lights, DeviceLostInTheShadowPassEndsTheFrameAndTheNextIsWhole)
{
    LightComponent &spot = light(Vec4(0, 0, 0, 1), true, true);
    settle();
    ASSERT_TRUE(graphics().beginFrame().succeeded());
    device->take();
    device->failOn("Clear", D3DERR_DEVICELOST, 2); // G-buffer, light buffer, shadow map
    const std::size_t logged = countLogLines("Assertion failed");
    manager->doFrame();
    EXPECT_EQ(device->count("Target 0 screen"), 0) << "no pass behind the lights";
    EXPECT_FALSE(graphics().deviceIsReady());
    EXPECT_EQ(countLogLines("Assertion failed"), logged);
    graphics().endFrame().ignoreError();
    device->failOn("TestCooperativeLevel", D3DERR_DEVICENOTRESET);
    drawFrame();
    EXPECT_TRUE(graphics().deviceIsReady());
    EXPECT_GT(device->count("Target 0 ShadowMap"), 0);

    spot.getSibling(SCS("viewer")).lookup()->murder();
    cremateDeadObjects();
    drawFrame();
    drawFrame();
    EXPECT_EQ(countLogLines("cannot cast shadows"), 1u) << "told once, and drawn without";
}

TEST_F(Lights, BoundingSphereHoldsAllThatIsLitAndLittleElse)
{
    const Quaternion way = Quaternion::fromAxisAngle(Vec4(1, 2, -1, 0), 2);
    LightComponent &made = light(Vec4(5, 1, -3, 1), true);
    placeOf(made).setOrientation(way);
    const Vec4 tip = placeOf(made).getPosition();
    const Vec4 axes[] = {way.generateRotation().getColumn(0), way.generateRotation().getColumn(2)};
    // From the tip to the edge of the reach, straight ahead and along the rim: the rest lies between.
    for (const int half : {5, 30, 45, 60, 80, 90, 120, 170, 0})
    {
        made.setIsSpot(half != 0);
        made.setSpotOuterAngle(float(half) * degree);
        const int widest = half == 0 ? 180 : half;
        const Vec4 sphere = made.getBoundingSphere();
        const auto distanceTo = [&](const Vec4 &point)
        { return std::hypot(point.x - sphere.x, point.y - sphere.y, point.z - sphere.z); };
        float farthest = distanceTo(tip);
        for (int angle = -widest; angle <= widest; ++angle)
            farthest = std::max(farthest, distanceTo(tip + (axes[0] * std::sin(float(angle) * degree) +
                                                            axes[1] * std::cos(float(angle) * degree)) *
                                                               made.getLightFalloffEnd()));
        EXPECT_NEAR(farthest, sphere.w, 0.01f) << half;
    }
    made.setLightFalloffEnd(-1);
    EXPECT_LT(made.getBoundingSphere().w, 0) << "unknown, which leaves nothing out";
}

TEST_F(Lights, LightThatReachesNothingInViewDrawsNoShadowMap)
{
    LightComponent &spot = light(Vec4(0, 9, 4, 1), true, true);
    // Above what the camera sees, in cells that it sees.
    for (const bool down : {false, true})
    {
        placeOf(spot).setOrientation(Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), (down ? 90 : -90) * degree));
        spot.setLightFalloffEnd(down ? 12.0f : 5.0f);
        settle();
        const Journal steps = journalOfPasses();
        EXPECT_EQ(std::count(steps.begin(), steps.end(), "Target 0 ShadowMap") > 0, down);
    }
}

TEST_F(Lights, DebugDrawingShowsTheReach)
{
    LightComponent &made = light(Vec4(1, 2, 3, 1), true);
    made.setLightFalloffEnd(4);
    made.setSpotOuterAngle(45 * degree);
    const Handle<Entity> debug = level.entity("debug");
    DebugCollectorComponent &collector =
        *level.component<DebugCollectorComponent>(debug, "debugDrawCollector").lookup();
    const std::vector<DebugCollectorComponent::Line> &lines = collector.getWorldGeometry().lines;
    GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    config.setDebugDrawEnabled(true);
    collector.doFrame();
    EXPECT_TRUE(lines.empty()) << "not asked for";
    config.setDebugDrawLightVolumes(true);
    collector.doFrame();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].from, Vec4(1, 2, 3, 1));
    expectNear(lines[0].to, Vec4(5, 2, 7, 1), 1e-4f);
    made.setIsSpot(false);
    collector.doFrame();
    ASSERT_EQ(lines.size(), 27u) << "three rings of nine chords";
    for (const DebugCollectorComponent::Line &line : lines)
        EXPECT_NEAR((line.to - Vec4(1, 2, 3, 1)).magnitude(), 4, 1e-4f);
}

TEST_F(Lights, SteadyFrameAllocatesNothing)
{
    light(Vec4(0, 0, 0, 1), true, true);
    light(Vec4(0, 1, 2, 1), false);
    square(Vec4(0, 0, 4, 1), 0.5f, SceneGraph::WORLD);
    settle();
    EXPECT_EQ(allocationsOfFrames(1), 0u);
    EXPECT_GT(arrived().x, 0);
}

TEST_F(Lights, LightWithoutATransformEndsTheProcess)
{
    const Handle<Entity> bare = level.entity("bare", map);
    LightComponent &made = *level.component<LightComponent>(bare, "graphics2").lookup();
    EXPECT_FALSE(made.getCastShadows()) << "shadows are asked for";
    EXPECT_EXIT(made.batchGetParams(), testing::ExitedWithCode(1), "LightComponent had no transform sibling");
}
