#include "rendering/frame/AnglePointSorter.h"
#include "rendering/frame/ViewerComponent.h"
#include "support/TestLevel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

/// The hull's steps, which are the component's own business.
struct ViewerComponentTestAccess
{
    static void weld(ViewerComponent &v, std::vector<Vec4> &points) { v.weldVertices(points); }
    static void hull(ViewerComponent &v, std::vector<Vec4> &points) { v.calc2DConvexHull(points); }
    static void fan(ViewerComponent &v, std::vector<Vec4> &points) { v.triangulateConvexPolygon(points); }
};

namespace
{

constexpr float aspectWidth = 1.0f, aspectHeight = 0.5625f;

class Viewer : public testing::Test
{
protected:
    Viewer()
        : entity(level.entity("eye")), transform(*level.transform(entity, Vec4(2, 3, 4, 1)).lookup()),
          viewer(*level.component<ViewerComponent>(entity, "viewer").lookup())
    {
    }

    std::vector<Vec4> footprint() { return viewer.calcFrustumHullTriangles(aspectWidth, aspectHeight); }

    TestLevel level;
    Handle<Entity> entity;
    TransformComponent &transform;
    ViewerComponent &viewer;
};

void expectNear(const Vec4 &actual, const Vec4 &expected, float tolerance = 1e-3f)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(actual[i], expected[i], tolerance) << "component " << i;
}

/// The winding that the partitioning grid does not throw away.
bool isAcceptedByGrid(const Vec4 &p1, const Vec4 &p2, const Vec4 &p3)
{
    return (p2.z - p1.z) * (p3.x - p1.x) - (p3.z - p1.z) * (p2.x - p1.x) >= 0;
}

float area(const std::vector<Vec4> &triangles)
{
    float sum = 0;
    for (std::size_t i = 0; i + 2 < triangles.size(); i += 3)
    {
        const Vec4 a = triangles[i + 1] - triangles[i], b = triangles[i + 2] - triangles[i];
        sum += 0.5f * std::fabs(a.x * b.z - a.z * b.x);
    }
    return sum;
}

} // namespace

TEST_F(Viewer, MiddleOfTheScreenUnprojectsToTheNearAndFarPlaneAhead)
{
    const Vec4 nearPoint = viewer.unProject(Vec4(0.5f, 0.28125f, 0, 1), aspectWidth, aspectHeight);
    const Vec4 farPoint = viewer.unProject(Vec4(0.5f, 0.28125f, 1, 1), aspectWidth, aspectHeight);
    expectNear(nearPoint, Vec4(2, 3, 4.01f, 1));
    expectNear(farPoint, Vec4(2, 3, 54, 1), 0.1f);
    const Vec4 topLeft = viewer.unProject(Vec4(0, 0, 1, 1), aspectWidth, aspectHeight);
    EXPECT_LT(topLeft.x, 2.0f);
    EXPECT_GT(topLeft.y, 3.0f) << "the origin of the screen is at its top";
    expectNear(viewer.unProject(Vec4(-1, 1, 1, 1), 1, 1, false), viewer.unProject(Vec4(0, 0, 1, 1), 1, 1, true), 0.1f);
    viewer.setVerticalFieldOfViewAngle(std::atan(0.75f));
    expectNear(viewer.getFieldOfViewVector(2, 1), Vec4(std::atan(1.5f), std::atan(0.75f), 0, 0));
}

TEST_F(Viewer, ParallelProjectionShowsOneUnitToAWindowUnit)
{
    viewer.setProjectionType(ViewerComponent::PARALLEL);
    expectNear(viewer.unProject(Vec4(0, 0, 0, 1), aspectWidth, aspectHeight), Vec4(1.5f, 3.28125f, 4.01f, 1));
    transform.setScale(Vec4(3, 3, 3, 0));
    expectNear(viewer.unProject(Vec4(0, 0, 0, 1), aspectWidth, aspectHeight), Vec4(0.5f, 3.84375f, 4.01f, 1));
}

TEST_F(Viewer, LevelCameraCoversATriangleAheadThatTheGridAccepts)
{
    const std::vector<Vec4> triangles = footprint();
    ASSERT_EQ(triangles.size(), 3u) << "the far corners fall on each other from above";
    EXPECT_TRUE(isAcceptedByGrid(triangles[0], triangles[1], triangles[2]));
    const float halfWidth = 50 * std::tan(0.785398f / 2) / aspectHeight;
    EXPECT_NEAR(area(triangles), halfWidth * 50, 5);
    for (const Vec4 &point : triangles)
        EXPECT_GE(point.z, 3.99f) << "never behind the eye";
}

TEST_F(Viewer, CameraLookingDownCoversARectangleOfTwoTriangles)
{
    transform.setOrientation(Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), 3.1415927f / 2));
    const std::vector<Vec4> triangles = footprint();
    ASSERT_EQ(triangles.size(), 6u);
    EXPECT_TRUE(isAcceptedByGrid(triangles[0], triangles[1], triangles[2]));
    EXPECT_TRUE(isAcceptedByGrid(triangles[3], triangles[4], triangles[5]));
    const float height = 2 * 50 * std::tan(0.785398f / 2);
    EXPECT_NEAR(area(triangles), height * height / aspectHeight, 20);
}

TEST_F(Viewer, TiltedCameraCoversAtMostThreeTriangles)
{
    for (float pitch = -1.5f; pitch < 1.6f; pitch += 0.25f)
        for (float yaw = 0; yaw < 6.3f; yaw += 0.7f)
        {
            transform.setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), yaw) *
                                     Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), pitch));
            const std::vector<Vec4> triangles = footprint();
            EXPECT_GE(triangles.size(), 3u);
            EXPECT_LE(triangles.size(), 9u);
            for (std::size_t i = 0; i < triangles.size(); i += 3)
                EXPECT_TRUE(isAcceptedByGrid(triangles[i], triangles[i + 1], triangles[i + 2])) << pitch << " " << yaw;
        }
}

TEST_F(Viewer, ParallelCameraCoversARectangleAlongTheAxes)
{
    viewer.setProjectionType(ViewerComponent::PARALLEL);
    const std::vector<Vec4> triangles = footprint();
    ASSERT_EQ(triangles.size(), 6u);
    EXPECT_TRUE(isAcceptedByGrid(triangles[0], triangles[1], triangles[2]));
    EXPECT_TRUE(isAcceptedByGrid(triangles[3], triangles[4], triangles[5]));
    EXPECT_NEAR(area(triangles), 1.0f * 49.99f, 0.01f);
}

TEST_F(Viewer, HullDropsPointsInsideAndOnItsEdges)
{
    std::vector<Vec4> points = {Vec4(0, 9, 0, 1), Vec4(4, 0, 0, 1), Vec4(4, 5, 4, 1), Vec4(0, 0, 4, 1),
                                Vec4(2, 0, 2, 1), Vec4(2, 0, 0, 1), Vec4(4, 0, 2, 1), Vec4(1, 0, 1, 1)};
    ViewerComponentTestAccess::hull(viewer, points);
    ASSERT_EQ(points.size(), 4u);
    EXPECT_EQ(points[0], Vec4(0, 9, 0, 1)) << "from the point of least z, and of least x among those";
    ViewerComponentTestAccess::fan(viewer, points);
    ASSERT_EQ(points.size(), 6u);
    EXPECT_EQ(points[0], points[3]);
    EXPECT_EQ(points[2], points[4]);
    EXPECT_NEAR(area(points), 16, 1e-4f);
}

TEST_F(Viewer, TooFewOrImpossiblePointsMakeNoTriangles)
{
    std::vector<Vec4> two = {Vec4(0, 0, 0, 1), Vec4(1, 0, 0, 1)};
    ViewerComponentTestAccess::hull(viewer, two);
    EXPECT_EQ(two.size(), 2u);
    ViewerComponentTestAccess::fan(viewer, two);
    EXPECT_TRUE(two.empty());
    transform.setPosition(Vec4(std::numeric_limits<float>::quiet_NaN(), 0, 0, 1));
    EXPECT_TRUE(footprint().empty());
    viewer.setVerticalFieldOfViewAngle(0);
    transform.setPosition(Vec4(0, 0, 0, 1));
    footprint(); // any result, no crash
}

TEST_F(Viewer, WeldingMergesCloseNeighboursInTheirOrder)
{
    std::vector<Vec4> points = {Vec4(0, 0, 0, 1), Vec4(0.05f, 0, 0, 1), Vec4(1, 0, 0, 1), Vec4(2, 0, 0, 1),
                                Vec4(2, 0.09f, 0, 1)};
    ViewerComponentTestAccess::weld(viewer, points);
    ASSERT_EQ(points.size(), 3u);
    expectNear(points[0], Vec4(0.025f, 0, 0, 1));
    expectNear(points[1], Vec4(1, 0, 0, 1));
    expectNear(points[2], Vec4(2, 0.045f, 0, 1));
    std::vector<Vec4> three(3, Vec4(0, 0, 0, 1));
    ViewerComponentTestAccess::weld(viewer, three);
    EXPECT_EQ(three.size(), 3u) << "fewer than four are left alone";
}
