#include "assets/building/PolygonTriangulator.h"
#include "foundation/precompile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

namespace
{

typedef MeshPolygon::Outline Outline;

/// Numbers of one seed; the same on every run.
class Chance
{
public:
    explicit Chance(unsigned seed) : engine(seed) {}
    int whole(int below) { return static_cast<int>(engine() % static_cast<unsigned>(below)); }
    float real(float low, float high) { return low + (high - low) * static_cast<float>(engine() / 4294967296.0); }

private:
    std::mt19937 engine;
};

double cross(const MeshVector2 &a, const MeshVector2 &b, const MeshVector2 &c)
{
    return (double(b.x) - a.x) * (double(c.y) - a.y) - (double(b.y) - a.y) * (double(c.x) - a.x);
}

double signedArea(const Outline &outline)
{
    double sum = 0;
    for (std::size_t i = 0; i < outline.size(); ++i)
    {
        const MeshVector2 &a = outline[i], &b = outline[(i + 1) % outline.size()];
        sum += double(a.x) * b.y - double(b.x) * a.y;
    }
    return sum / 2;
}

bool isInside(const Outline &outline, const MeshVector2 &p)
{
    bool inside = false;
    for (std::size_t i = 0; i < outline.size(); ++i)
    {
        const MeshVector2 &a = outline[i], &b = outline[(i + 1) % outline.size()];
        if ((a.y > p.y) != (b.y > p.y) && p.x < a.x + (double(p.y) - a.y) / (double(b.y) - a.y) * (double(b.x) - a.x))
            inside = !inside;
    }
    return inside;
}

/// The sum of the triangles; each must be clockwise.
double areaOf(const TriangulatedPlan &plan)
{
    double sum = 0;
    for (std::size_t i = 0; i + 2 < plan.triangles.size(); i += 3)
    {
        const double area = -cross(plan.points[plan.triangles[i]], plan.points[plan.triangles[i + 1]],
                                   plan.points[plan.triangles[i + 2]]);
        EXPECT_GT(area, -1e-4) << "a triangle that is not clockwise";
        sum += area / 2;
    }
    return sum;
}

/// Turns an outline, reverses it by chance and adds points that change nothing.
Outline disguised(Outline outline, Chance &chance, float angle)
{
    Outline result;
    for (std::size_t i = 0; i < outline.size(); ++i)
    {
        const MeshVector2 &a = outline[i], &b = outline[(i + 1) % outline.size()];
        result.push_back(a);
        if (chance.whole(3) == 0)
            result.push_back(a);
        if (chance.whole(3) == 0)
            result.push_back(a + (b - a) * 0.5f);
    }
    for (MeshVector2 &p : result)
        p = {p.x * std::cos(angle) - p.y * std::sin(angle), p.x * std::sin(angle) + p.y * std::cos(angle)};
    if (chance.whole(2))
        std::reverse(result.begin(), result.end());
    return result;
}

Outline star(Chance &chance, MeshVector2 middle, float radius, int points)
{
    Outline outline;
    for (int i = 0; i < points; ++i)
    {
        const float angle = 2 * PI * static_cast<float>(i) / static_cast<float>(points);
        const float reach = radius * chance.real(0.2f, 1);
        outline.push_back(middle + MeshVector2{std::cos(angle), std::sin(angle)} * reach);
    }
    return outline;
}

Outline square(float x, float y, float size)
{
    return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}};
}

/// Whether the triangles cover what the outlines say: they have its area, and none of them lies elsewhere.
void expectCovered(const MeshPolygon &polygon, double area)
{
    const ErrorReturn<TriangulatedPlan> plan = triangulate(polygon);
    ASSERT_TRUE(plan.succeeded());
    EXPECT_NEAR(areaOf(plan.value), area, 1e-3);
    const std::vector<MeshVector2> &points = plan.value.points;
    for (std::size_t i = 0; i + 2 < plan.value.triangles.size(); i += 3)
    {
        const std::uint32_t *corner = &plan.value.triangles[i];
        const MeshVector2 &a = points[corner[0]], &b = points[corner[1]], &c = points[corner[2]];
        if (std::fabs(cross(a, b, c)) < 1e-3)
            continue; // its middle may be on either side of the border
        const MeshVector2 middle = (a + b + c) / 3;
        EXPECT_TRUE(isInside(polygon.outline, middle)) << middle.x << ", " << middle.y;
        for (const Outline &hole : polygon.holes)
            EXPECT_FALSE(isInside(hole, middle)) << middle.x << ", " << middle.y;
    }
}

/// Whether two lines cross at a place that is no point of the outline.
bool crossesProperly(const Outline &outline, const MeshVector2 &a, const MeshVector2 &b, const MeshVector2 &c,
                     const MeshVector2 &d)
{
    for (const MeshVector2 &p : outline)
        if (cross(a, b, p) == 0 && cross(c, d, p) == 0)
            return false;
    return cross(a, b, c) * cross(a, b, d) < 0 && cross(c, d, a) * cross(c, d, b) < 0;
}

} // namespace

TEST(PolygonTriangulator, StarsWithStarsCutOutAreCoveredOnce)
{
    Chance chance(31);
    for (int round = 0; round < 60 && !HasFailure(); ++round)
    {
        SCOPED_TRACE(round);
        MeshPolygon polygon;
        const float angle = chance.real(0, 6);
        polygon.outline = disguised(star(chance, {0, 0}, 50, 5 + chance.whole(40)), chance, angle);
        double expected = std::fabs(signedArea(polygon.outline));
        for (int hole = 0; hole < chance.whole(5); ++hole)
        {
            const float around = angle + 1.5f * static_cast<float>(hole);
            // Within the least reach of the outline's chords; four to a circle do not meet.
            const Outline cut =
                star(chance, MeshVector2{std::cos(around), std::sin(around)} * 4, 2.4f, 3 + chance.whole(9));
            polygon.holes.push_back(disguised(cut, chance, 0));
            expected -= std::fabs(signedArea(cut));
        }
        expectCovered(polygon, expected);
    }
}

TEST(PolygonTriangulator, HolesThatTouchEachOtherAndTheOutlineAreCutOut)
{
    Chance chance(32);
    for (int round = 0; round < 60 && !HasFailure(); ++round)
    {
        SCOPED_TRACE(round);
        const float angle = chance.real(0, 6);
        MeshPolygon polygon;
        polygon.outline = disguised(square(-2, -2, 4), chance, angle);
        int cut = 0;
        for (int cell = 0; cell < 16; ++cell)
            if (chance.whole(3) == 0 && ++cut)
                polygon.holes.push_back(disguised(
                    square(static_cast<float>(cell % 4 - 2), static_cast<float>(cell / 4 - 2), 1), chance, angle));
        expectCovered(polygon, 16 - cut);
    }
}

TEST(PolygonTriangulator, ScribblesFailWhereTheyCrossAndKeepTheirAreaWhereNot)
{
    Chance chance(33);
    int cut = 0, refused = 0;
    for (int round = 0; round < 5000 && !HasFailure(); ++round)
    {
        MeshPolygon polygon;
        for (int i = 3 + chance.whole(6); i > 0; --i)
            polygon.outline.push_back({static_cast<float>(chance.whole(5)), static_cast<float>(chance.whole(5))});
        const Outline &line = polygon.outline;
        bool crosses = false;
        for (std::size_t i = 0; i < line.size(); ++i)
            for (std::size_t j = 0; j < i; ++j)
                crosses |=
                    crossesProperly(line, line[i], line[(i + 1) % line.size()], line[j], line[(j + 1) % line.size()]);

        const ErrorReturn<TriangulatedPlan> plan = triangulate(polygon);
        ++(plan.succeeded() ? cut : refused);
        if (!plan.succeeded())
            continue;
        EXPECT_FALSE(crosses) << "round " << round;
        EXPECT_NEAR(areaOf(plan.value), std::fabs(signedArea(line)), 1e-4) << "round " << round;
        double enclosed = 0;
        for (const TriangulatedPlan::Side &side : plan.value.sides)
            enclosed += cross({0, 0}, plan.value.points[side.from], plan.value.points[side.to]) / 2;
        EXPECT_NEAR(enclosed, std::fabs(signedArea(line)), 1e-4) << "round " << round;
    }
    EXPECT_GT(cut, 500);
    EXPECT_GT(refused, 500);
}

TEST(PolygonTriangulator, FaultyPlansAreNamedAndAddNothing)
{
    const float nothing = std::numeric_limits<float>::quiet_NaN();
    const struct
    {
        const char *what;
        MeshPolygon polygon;
        ErrorCode::Code code;
    } faults[] = {
        {"no points", {}, ErrorCode::MAP_DATA_ERROR},
        {"a line", {{{0, 0}, {1, 1}, {2, 2}}, {}}, ErrorCode::MAP_DATA_ERROR},
        {"a bow", {{{0, 0}, {2, 2}, {2, 0}, {0, 3}}, {}}, ErrorCode::MAP_DATA_ERROR},
        {"twice around", {{{0, 0}, {1, 0}, {1, 1}, {0, 0}, {1, 0}, {1, 1}}, {}}, ErrorCode::MAP_DATA_ERROR},
        {"hole outside", {square(0, 0, 4), {square(1, 1, 1), square(5, 1, 1)}}, ErrorCode::MAP_DATA_ERROR},
        {"hole inside the box only", {{{0, 0}, {4, 0}, {0, 4}}, {square(2.5f, 2.5f, 1)}}, ErrorCode::MAP_DATA_ERROR},
        {"hole across the border", {square(0, 0, 4), {square(3, 1, 2)}}, ErrorCode::MAP_DATA_ERROR},
        {"hole in a hole", {square(0, 0, 4), {square(1, 1, 2), square(1.5f, 1.5f, 1)}}, ErrorCode::MAP_DATA_ERROR},
        {"hole without area", {square(0, 0, 4), {{{1, 1}, {2, 2}}}}, ErrorCode::MAP_DATA_ERROR},
        {"no number", {{{0, 0}, {nothing, 0}, {1, 1}}, {}}, ErrorCode::OUT_OF_BOUNDS},
        {"too far", {{{0, 0}, {1e7f, 0}, {1, 1}}, {}}, ErrorCode::OUT_OF_BOUNDS},
    };
    for (const auto &fault : faults)
    {
        MeshBuilder mesh;
        EXPECT_EQ(mesh.addPolygon(fault.polygon).getCode(), fault.code) << fault.what;
        EXPECT_EQ(mesh.addExtrusion(fault.polygon, 1).getCode(), fault.code) << fault.what;
        EXPECT_TRUE(mesh.getVertices().empty() && mesh.getIndices().empty()) << fault.what;
    }
}
