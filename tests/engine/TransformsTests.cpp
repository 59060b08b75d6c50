#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/ParentFollowerComponent.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/screen/ScreenSpaceHelperComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "support/TestComponent.h"
#include "support/TestKeyManager.h"
#include "support/TestLevel.h"

#include "foundation/precompile.h"

#include <gtest/gtest.h>

namespace
{
using TC = TransformComponent;

void expectNear(const Vec4 &actual, const Vec4 &expected, float tolerance = 1e-5f)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i << " of " << actual.toString().toCString();
}

void expectNear(const Quaternion &actual, const Quaternion &expected)
{
    expectNear(Vec4(actual.i, actual.j, actual.k, actual.r), Vec4(expected.i, expected.j, expected.k, expected.r));
}

void expectNear(const Matrix4 &actual, const Matrix4 &expected, float tolerance = 1e-5f)
{
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            EXPECT_NEAR(actual[row][column], expected[row][column], tolerance) << row << ", " << column;
}

/// A transform with nothing left at its default.
TransformComponent &skewed(TestLevel &world)
{
    TransformComponent &t = *world.transform(world.entity("skewed"), Vec4(1, 2, 3, 1)).lookup();
    t.setScale(Vec4(2, 4, 0.5f, 0));
    Quaternion turn(0.9f, 0.1f, -0.3f, 0.2f);
    turn.normalize();
    t.setOrientation(turn);
    t.setModelOriginOffset(Vec4(0.5f, -1, 2, 0));
    return t;
}

Matrix4 scaling(float x, float y, float z)
{
    Matrix4 m;
    m.scale(x, y, z);
    return m;
}

Matrix4 translation(const Vec4 &by)
{
    Matrix4 m;
    m.translate(by);
    return m;
}
} // namespace

TEST(TransformMatrix, ScalesThenTurnsThenMoves)
{
    TestLevel world;
    TransformComponent &t = skewed(world);
    const Matrix4 r = t.getOrientation().generateRotation();
    expectNear(t.getTransformationMatrix(), translation(t.getPosition()) * r * scaling(2, 4, 0.5f));
    expectNear(t.getCameraMatrix(), t.getTransformationMatrix());
    expectNear(t.getTransformationMatrix(TC::OMIT_SCALE | TC::OMIT_ROTATE), translation(t.getPosition()));
    expectNear(t.getTransformationMatrix(TC::OMIT_SCALE | TC::OMIT_TRANSLATE), r);
    expectNear(t.getTransformationMatrix(TC::OMIT_ROTATE | TC::OMIT_TRANSLATE), scaling(2, 4, 0.5f));
    expectNear(t.getTransformationMatrix(TC::INTO_WORLD_SPACE | TC::INTO_MAP_SPACE), t.getTransformationMatrix());
}

TEST(TransformMatrix, InvertedUndoesAndTransposedTransposes)
{
    TestLevel world;
    TransformComponent &t = skewed(world);
    const Matrix4 plain = t.getTransformationMatrix();
    expectNear(t.getTransformationMatrix(TC::INVERT) * plain, Matrix4());
    expectNear(t.getTransformationMatrix(TC::TRANSPOSE), plain.transpose());
}

TEST(TransformMatrix, InvertedAndTransposedKeepsTheOrderOfThePlainOne)
{
    TestLevel world;
    TransformComponent &t = skewed(world);
    const Matrix4 expected =
        translation(-t.getPosition()).transpose() * t.getOrientation().generateRotation() * scaling(0.5f, 0.25f, 2);
    expectNear(t.getTransformationMatrix(TC::INVERT | TC::TRANSPOSE), expected);
}

TEST(TransformMatrix, OffsetIsTurnedThenScaledThenTakenFromThePosition)
{
    TestLevel world;
    TransformComponent &t = skewed(world);
    const Vec4 offset = t.getScale() * (t.getOrientation().generateRotation() * t.getModelOriginOffset());
    expectNear(t.getPositionWithFlags(TC::USE_OFFSET), t.getPosition() - offset);
    expectNear(t.getPositionWithFlags(TC::INVERT), Vec4(-1, -2, -3, -1));
    expectNear(t.getPositionWithFlags(TC::INVERT | TC::USE_OFFSET), offset - t.getPosition());
    expectNear(t.getTransformationMatrix(TC::USE_OFFSET).getColumn(3), t.getPosition() - offset);
}

TEST(TransformAngle, RestsOnADirectionWithItsHeightNegated)
{
    TestLevel world;
    TransformComponent &t = skewed(world);
    const Matrix4 r = t.getOrientation().generateRotation();
    expectNear(t.getDirection(), Vec4(r[0][2], -r[1][2], r[2][2], 0));
    expectNear(t.getDirectionQuaternion(), Quaternion::fromDirectionWithAdaptingUpVector(t.getDirection()));
    expectNear(t.getAngleQuaternion(), t.getOrientation() * t.getDirectionQuaternion().inverse());
    Quaternion normalised = t.getAngleQuaternion();
    normalised.normalize();
    EXPECT_NEAR(t.getAngle(), 2 * std::acos(normalised.r), 1e-6f);
}

TEST(TransformAngle, IsIgnoredUntilTheLoadIsComplete)
{
    TestLevel world;
    TransformComponent &t = *world.transform(world.entity("lamp")).lookup();
    t.setAngle(1.f);
    expectNear(t.getOrientation(), Quaternion());
    t.onLoadComplete();
    t.setAngle(1.f);
    Quaternion expected = Quaternion::fromDirectionWithAdaptingUpVector(Vec4(0, 0, 1, 0)) *
                          Quaternion(std::cos(0.5f), 0, 0, std::sin(0.5f));
    expected.normalize();
    expectNear(t.getOrientation(), expected);
}

TEST(TransformSpace, FollowsTheHierarchyAndLeavesTheNumbers)
{
    TestLevel world;
    const Handle<MapRootEntity> map = world.map("hall", Vec4(10, 0, 0, 1), Vec4(4, 4, 4, 0));
    const Handle<Entity> chair = world.entity("chair", map);
    TransformComponent &t = *world.transform(chair, Vec4(1, 2, 3, 1)).lookup();
    EXPECT_EQ(t.getNativeSpace(), TC::MAP_SPACE);
    EXPECT_EQ(t.findMap(), map);

    chair.lookup()->setParent(world.level);
    EXPECT_EQ(t.getNativeSpace(), TC::WORLD_SPACE);
    EXPECT_EQ(t.findMap(), map) << "the only map is the nearest";
    expectNear(t.getPosition(), Vec4(1, 2, 3, 1));
}

TEST(TransformSpace, ChangeGoesThroughTheMapWithoutItsScale)
{
    TestLevel world;
    const Handle<MapRootEntity> map = world.map("hall", Vec4(10, 0, 0, 1), Vec4(4, 4, 4, 0));
    auto mapPlace = handle_cast<TransformComponent>(map.lookup()->getComponent(SCS("transform"))).lookup();
    mapPlace->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 0.5f));
    TransformComponent &inMap = *world.transform(world.entity("chair", map), Vec4(1, 2, 3, 1)).lookup();
    TransformComponent &inWorld = *world.transform(world.entity("crow"), Vec4(10, 1, 0, 1)).lookup();

    const Matrix4 mapToWorld = mapPlace->getTransformationMatrix(TC::OMIT_SCALE);
    expectNear(inMap.getSpaceChangeTransform(TC::WORLD_SPACE), mapToWorld);
    expectNear(inWorld.getSpaceChangeTransform(TC::MAP_SPACE) * mapToWorld, Matrix4());
    expectNear(inMap.getSpaceChangeTransform(TC::WORLD_SPACE, TC::INVERT) * mapToWorld, Matrix4());
    expectNear(inWorld.getSpaceChangeTransform(TC::MAP_SPACE, TC::INVERT | TC::USE_OFFSET), mapToWorld);
    expectNear(inMap.getSpaceChangeTransform(TC::WORLD_SPACE, TC::TRANSPOSE), mapToWorld.transpose());
    expectNear(inMap.getSpaceChangeTransform(TC::MAP_SPACE), Matrix4());
}

TEST(TransformSpace, UnsupportedChangeIsReportedAndGivesTheIdentity)
{
    TestLevel world;
    world.map("hall", Vec4(10, 0, 0, 1), Vec4(4, 4, 4, 0));
    TransformComponent &t = *world.transform(world.entity("crow"), Vec4(10, 1, 0, 1)).lookup();
    expectNear(t.getSpaceChangeTransform(TC::SCREEN_SPACE), Matrix4());
    EXPECT_EQ(countLogLines("Unsupported space change: WORLD_SPACE -> SCREEN_SPACE"), 1u);
}

TEST(TransformSpace, NoMapMeansNoChange)
{
    TestLevel world;
    TransformComponent &t = *world.transform(world.entity("crow")).lookup();
    EXPECT_FALSE(t.findMap().isValid());
    expectNear(t.getSpaceChangeTransform(TC::MAP_SPACE), Matrix4());
    const std::size_t reports = countLogLines("Nobody was home.");
    expectNear(t.getSpaceChangeTransform(TC::WORLD_SPACE), Matrix4());
    EXPECT_EQ(countLogLines("Nobody was home."), reports) << "its own space needs no map";
}

TEST(Followers, OffsetTurnsWithTheParentAndFollowerDoesNot)
{
    TestLevel world;
    const Handle<Entity> parent = world.entity("cart");
    TransformComponent &cart = *world.transform(parent, Vec4(5, 0, 0, 1)).lookup();
    cart.setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), PI / 2));
    const Vec4 offset(0, 1, 2, 0);
    const Quaternion tilt = Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), 0.3f);

    const Handle<Entity> fixed = world.entity("lantern", parent);
    TransformComponent &lantern = *world.transform(fixed).lookup();
    auto turning = world.component<TransformOffsetComponent>(fixed, "parentFollower").lookup();
    turning->setPositionOffset(offset);
    turning->setOrientationOffset(tilt);

    const Handle<Entity> drifting = world.entity("fly", parent);
    TransformComponent &fly = *world.transform(drifting).lookup();
    auto plain = world.component<ParentFollowerComponent>(drifting, "parentFollower").lookup();
    plain->setPositionOffset(offset);
    plain->setOrientationOffset(tilt);

    world.frame();
    expectNear(lantern.getPosition(), Vec4(5, 0, 0, 1) + cart.getOrientation().generateRotation() * offset);
    expectNear(fly.getPosition(), Vec4(5, 1, 2, 1));
    expectNear(lantern.getOrientation(), cart.getOrientation() * tilt);
    expectNear(fly.getOrientation(), cart.getOrientation() * tilt);
}

TEST(Followers, ChainSettlesInOneFrameWhateverTheOrderOfCreation)
{
    TestLevel world;
    const Handle<Entity> top = world.entity("top");
    const Handle<Entity> middle = world.entity("middle", top);
    const Handle<Entity> bottom = world.entity("bottom", middle);
    TransformComponent &low = *world.transform(bottom).lookup();
    world.component<ParentFollowerComponent>(bottom, "parentFollower").lookup()->setPositionOffset(Vec4(0, 0, 1, 0));
    world.transform(middle);
    world.component<ParentFollowerComponent>(middle, "parentFollower").lookup()->setPositionOffset(Vec4(0, 1, 0, 0));
    world.transform(top, Vec4(7, 0, 0, 1));
    world.frame();
    expectNear(low.getPosition(), Vec4(7, 1, 1, 1));
}

TEST(Followers, WithoutAPlaceToFollowNothingMoves)
{
    TestLevel world;
    const Handle<Entity> child = world.entity("child", world.entity("placeless"));
    TransformComponent &t = *world.transform(child, Vec4(1, 2, 3, 1)).lookup();
    world.component<ParentFollowerComponent>(child, "parentFollower");
    world.component<TransformOffsetComponent>(world.entity("without transform"), "parentFollower");
    world.frame();
    expectNear(t.getPosition(), Vec4(1, 2, 3, 1));
}

namespace
{
/// A label on a panel at (0.5, 0.25, 0.1), in a window of 1600 by 800 pixels.
class ScreenSpaceHelper : public testing::Test
{
protected:
    void SetUp() override
    {
        setScreenMetrics({1600, 800, 1600.f});
        const Handle<Entity> panel = world.entity("panel");
        world.transform(panel, Vec4(0.5f, 0.25f, 0.1f, 1));
        label = world.entity("label", panel);
        transform = world.transform(label);
        helper = world.component<ScreenSpaceHelperComponent>(label, "screenSpaceHelper");
        helper.lookup()->setWindowPosition(Vec4(0.5f, -0.1f, 0.3f, 1));
    }
    void TearDown() override { setScreenMetrics({}); }

    /// Gives the label something under the key "graphics2", without a device.
    void draw()
    {
        const Handle<TestKeyManager> manager = construct<TestKeyManager>(defaultAllocationCategory);
        manager.lookup()->setParent(world.level);
        manager.lookup()->setKey(SCS("graphics2"));
        manager.lookup()->addComponentToEntity(TestComponent::staticType, label);
    }
    Vec4 placed()
    {
        world.frame();
        return transform.lookup()->getPosition();
    }

    TestLevel world;
    Handle<Entity> label;
    Handle<TransformComponent> transform;
    Handle<ScreenSpaceHelperComponent> helper;
};
} // namespace

TEST_F(ScreenSpaceHelper, WhatIsNotDrawnIsNotPlaced)
{
    expectNear(placed(), Vec4(0, 0, 0, 1));
}

TEST_F(ScreenSpaceHelper, PlacesByWindowCoordinatesAndFollowsAResize)
{
    draw();
    expectNear(placed(), Vec4(0.5f, 0.4f, 0.3f, 1));
    helper.lookup()->setWindowCoordinateSystemX(WCS_PERCENT);
    helper.lookup()->setWindowCoordinateSystemY(WCS_NORMALIZED_NOWRAP);
    setScreenMetrics({800, 1000, 1000.f});
    expectNear(placed(), Vec4(0.4f, -0.1f, 0.3f, 1));
}

TEST_F(ScreenSpaceHelper, CountsFromTheParentWithoutWrap)
{
    draw();
    helper.lookup()->setRelToParent(true);
    expectNear(placed(), Vec4(1, 0.15f, 0.4f, 1));
}
