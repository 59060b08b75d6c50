#include "assets/building/MeshBuilder.h"
#include "assets/models/MeshMath.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <random>
#include <tuple>

namespace
{

typedef std::tuple<long, long, long> Place;

Place placeOf(const DefaultMeshVertex &vertex)
{
    const MeshVector3 &p = vertex.position;
    return {std::lround(p.x * 1e4f), std::lround(p.y * 1e4f), std::lround(p.z * 1e4f)};
}

typedef std::array<const DefaultMeshVertex *, 3> Corners;

std::vector<Corners> trianglesOf(const MeshBuilder &mesh)
{
    std::vector<Corners> triangles;
    for (std::size_t i = 0; i + 2 < mesh.getIndices().size(); i += 3)
    {
        const MeshBuilder::Index *corner = &mesh.getIndices()[i];
        const MeshBuilder::VertexVec &all = mesh.getVertices();
        triangles.push_back({&all[corner[0]], &all[corner[1]], &all[corner[2]]});
    }
    return triangles;
}

/// Whether every edge between two places is met as often in the other direction.
bool isWatertight(const MeshBuilder &mesh)
{
    std::map<std::pair<Place, Place>, int> edges;
    for (const Corners &corners : trianglesOf(mesh))
        for (std::size_t k = 0; k < 3; ++k)
        {
            const Place from = placeOf(*corners[k]), to = placeOf(*corners[(k + 1) % 3]);
            ++edges[{from, to}];
            --edges[{to, from}];
        }
    return std::all_of(edges.begin(), edges.end(), [](const auto &edge) { return edge.second == 0; });
}

/// Volume inside a closed mesh whose faces look outwards; negative when they look inwards.
double volumeOf(const MeshBuilder &mesh)
{
    double sum = 0;
    for (const auto &[a, b, c] : trianglesOf(mesh))
        sum += toDirection(a->position).dot(toDirection(b->position).cross(toDirection(c->position)));
    return sum / 6;
}

/// Whether every normal leans to the front of each triangle it belongs to.
void expectNormalsInFront(const MeshBuilder &mesh)
{
    for (const Corners &corners : trianglesOf(mesh))
    {
        const Vec4 face = faceVector(corners[0]->position, corners[1]->position, corners[2]->position);
        for (const DefaultMeshVertex *corner : corners)
            ASSERT_GT(face.dot(toDirection(corner->normal)), 0);
    }
}

void expectOrthonormal(const MeshBuilder &mesh)
{
    for (const DefaultMeshVertex &vertex : mesh.getVertices())
    {
        const Vec4 n = toDirection(vertex.normal), t = toDirection(vertex.tangent), b = toDirection(vertex.bitangent);
        for (const Vec4 &axis : {n, t, b})
            ASSERT_NEAR(axis.magnitude(), 1, 1e-5);
        for (const float leaning : {n.dot(t), n.dot(b), t.dot(b)})
            ASSERT_NEAR(leaning, 0, 1e-5);
    }
}

/// Whether u grows along the tangent and v along the bitangent of each triangle's corners.
void expectTangentsFollowTexture(const MeshBuilder &mesh)
{
    for (const Corners &corners : trianglesOf(mesh))
        for (std::size_t k = 0; k < 3; ++k)
        {
            const DefaultMeshVertex &here = *corners[k], &next = *corners[(k + 1) % 3];
            const Vec4 way = toDirection(next.position - here.position);
            const MeshVector2 uv = next.texCoord0 - here.texCoord0;
            if (uv.x != 0 && uv.y != 0)
                continue;
            EXPECT_GT(way.dot(toDirection(uv.y == 0 ? here.tangent : here.bitangent)) * (uv.x + uv.y), 0);
        }
}

Matrix4 moved(float x, float y, float z)
{
    Matrix4 m;
    m.translate(Vec4(x, y, z));
    return m;
}

MeshPolygon frame()
{
    return {{{-2, -2}, {2, -2}, {2, 2}, {-2, 2}}, {{{-1, -1}, {1, -1}, {1, 1}, {-1, 1}}}};
}

/// A mesh of triangles that share nothing but places, with textures by chance and some of no extent.
MeshBuilder shards(unsigned seed)
{
    std::mt19937 chance(seed);
    const auto some = [&chance](unsigned steps) { return static_cast<float>(chance() % steps); };
    MeshBuilder mesh;
    for (int i = 0; i < 300; ++i)
    {
        for (int k = 0; k < 3; ++k)
            mesh.addVertex(Vec4(some(3), some(3), some(3), 1), Vec4(some(3) - 1, some(3) - 1, some(3) - 1, 0),
                           {some(3), some(3)});
        const auto first = static_cast<MeshBuilder::Index>(3 * i);
        mesh.addTriangle(first, first + 1, first + 2);
    }
    return mesh;
}

} // namespace

TEST(MeshBuilder, ClosedShapesAreWatertightAndFaceOutwards)
{
    const struct
    {
        const char *name;
        double volume;
        void (*add)(MeshBuilder &, const Matrix4 &);
    } shapes[] = {
        {"box", 8 * 6, [](MeshBuilder &m, const Matrix4 &p) { m.addBox(Vec4(1, 2, -3), p); }},
        {"cylinder", PI * 4 * 3, [](MeshBuilder &m, const Matrix4 &p) { m.addCylinder(2, -3, 64, p); }},
        {"sphere", PI * 4 / 3 * 8, [](MeshBuilder &m, const Matrix4 &p) { m.addSphere(2, 64, 32, p); }},
        {"least sphere", 2.0 / 3 * std::sqrt(27.0) / 4,
         [](MeshBuilder &m, const Matrix4 &p) { m.addSphere(1, 3, 2, p); }},
        {"frame", 12 * 3,
         [](MeshBuilder &m, const Matrix4 &p) { EXPECT_TRUE(m.addExtrusion(frame(), 3, p).succeeded()); }},
    };
    Matrix4 mirror;
    mirror.scale(-1, 1, 1);
    for (const auto &shape : shapes)
        for (const Matrix4 &placement : {Matrix4(), moved(3, 4, 5), moved(1, 0, 0) * mirror})
        {
            SCOPED_TRACE(shape.name);
            MeshBuilder mesh;
            shape.add(mesh, placement);
            EXPECT_TRUE(isWatertight(mesh));
            EXPECT_NEAR(volumeOf(mesh), shape.volume, 0.01 * shape.volume);
            expectNormalsInFront(mesh);
            mesh.generateTangents();
            expectOrthonormal(mesh);
            expectTangentsFollowTexture(mesh);
            mesh.flip();
            EXPECT_NEAR(volumeOf(mesh), -shape.volume, 0.01 * shape.volume);
        }
}

TEST(MeshBuilder, ExtrusionAlongStationsStaysClosedWhereHolesTouch)
{
    // A bend of a quarter circle whose plan has two holes that meet in one point and one that meets the border.
    MeshPolygon plan = {{{-2, -2}, {2, -2}, {2, 2}, {-2, 2}},
                        {{{-1, -1}, {0, 0}, {-1, 1}}, {{0, 0}, {1, -1}, {1, 1}}, {{2, -1.5f}, {1, -1.2f}, {1, -1.8f}}}};
    std::vector<Matrix4> stations;
    for (int i = 0; i <= 6; ++i)
    {
        const float angle = PI / 2 * static_cast<float>(i) / 6;
        const Matrix4 turn(std::cos(angle), std::sin(angle), 0, -std::sin(angle), std::cos(angle), 0, 0, 0, 1);
        stations.push_back(turn * moved(-5, 0, 0));
    }
    MeshBuilder bend;
    ASSERT_TRUE(bend.addExtrusion(plan, stations).succeeded());
    EXPECT_TRUE(isWatertight(bend));
    EXPECT_GT(volumeOf(bend), 0);
    expectNormalsInFront(bend);
    EXPECT_EQ(bend.addExtrusion(plan, {Matrix4()}).getCode(), ErrorCode::OUT_OF_BOUNDS);
    EXPECT_EQ(bend.addExtrusion(plan, 0).getCode(), ErrorCode::OUT_OF_BOUNDS);
}

TEST(MeshBuilder, TangentFramesAreOrthonormalWhateverTheTextureIs)
{
    for (unsigned seed = 1; seed <= 20; ++seed)
    {
        MeshBuilder mesh = shards(seed);
        mesh.weld();
        mesh.generateTangents();
        expectOrthonormal(mesh);
        mesh.applyWorldTextureCoordinates(0.5f, moved(1, 2, 3));
        mesh.smoothNormals(1);
        mesh.generateTangents();
        expectOrthonormal(mesh);
    }
}

TEST(MeshBuilder, PlaneShowsItsTextureUprightAndAMirroredOneSplitsItsVertices)
{
    MeshBuilder plane, mesh;
    plane.addPlane(4, 2, 4, 3);
    plane.generateTangents();
    EXPECT_EQ(plane.getTriangleCount(), 24u);
    EXPECT_EQ(plane.getVertices()[0].position, (MeshVector3{-2, 0, 1})) << "the image's top left";
    expectNormalsInFront(plane);
    expectTangentsFollowTexture(plane);

    const Vec4 front(0, 0, -1, 0);
    mesh.addVertex(Vec4(0, 1, 0, 1), front, {0, 0});
    mesh.addVertex(Vec4(0, 0, 0, 1), front, {0, 1});
    mesh.addVertex(Vec4(1, 0, 0, 1), front, {1, 1});
    mesh.addVertex(Vec4(-1, 0, 0, 1), front, {1, 1});
    mesh.addTriangle(0, 2, 1);
    mesh.addTriangle(0, 1, 3);
    mesh.generateTangents();
    ASSERT_EQ(mesh.getVertices().size(), 6u);
    expectNormalsInFront(mesh);
    expectTangentsFollowTexture(mesh);
}

TEST(MeshBuilder, WeldJoinsTheFirstVertexWithinReachAsSearchingAllPairsWould)
{
    std::mt19937 chance(7);
    MeshBuilder mesh;
    for (int i = 0; i < 600; ++i)
    {
        // Knots of vertices a little apart, some within reach of each other and some not, on both sides of cell edges.
        const auto near = [&chance]
        { return static_cast<float>(chance() % 4) + 0.0004f * static_cast<float>(chance() % 9); };
        const auto index = mesh.addVertex(Vec4(near(), near() - 2, 0, 1), Vec4(0, 1, 0, 0));
        if (index % 3 == 2)
            mesh.addTriangle(index - 2, index - 1, index);
    }
    std::vector<MeshVector3> expected;
    const float reach = 0.001f;
    for (const DefaultMeshVertex &vertex : mesh.getVertices())
    {
        bool found = false;
        for (const MeshVector3 &other : expected)
            found |= std::fabs(other.x - vertex.position.x) <= reach && std::fabs(other.y - vertex.position.y) <= reach;
        if (!found)
            expected.push_back(vertex.position);
    }
    mesh.weld(reach);
    ASSERT_EQ(mesh.getVertices().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(mesh.getVertices()[i].position, expected[i]);
    for (const Corners &corners : trianglesOf(mesh))
        EXPECT_NE(corners[0], corners[1]) << "a triangle without area";
}

TEST(MeshBuilder, NormalsAreSmoothBelowTheCreaseAngleAndSplitAbove)
{
    MeshBuilder smooth;
    smooth.addCylinder(1, 2, 32);
    smooth.smoothNormals(0.5f);
    for (const DefaultMeshVertex &vertex : smooth.getVertices())
    {
        const Vec4 out = toUnit(Vec4(vertex.position.x, 0, vertex.position.z, 0), Vec4());
        const Vec4 normal = toDirection(vertex.normal);
        EXPECT_TRUE(std::fabs(normal.y) > 0.999f || normal.dot(out) > 0.999f) << "neither a cap's nor a side's";
    }
    MeshBuilder box;
    box.addBox(Vec4(1, 1, 1));
    box.smoothNormals();
    for (const DefaultMeshVertex &vertex : box.getVertices())
        EXPECT_GT(toDirection(vertex.normal).dot(toUnit(toDirection(vertex.position), Vec4())), 0.9999f);
    box.flattenNormals();
    for (const DefaultMeshVertex &vertex : box.getVertices())
        EXPECT_NEAR(std::fabs(vertex.normal.x) + std::fabs(vertex.normal.y) + std::fabs(vertex.normal.z), 1, 1e-6);
}

TEST(MeshBuilder, WorldTextureJoinsNeighboursAndIsNeverMirrored)
{
    MeshBuilder box;
    box.addBox(Vec4(1, 1, 1));
    box.applyWorldTextureCoordinates(2, moved(10, 0, 0));
    box.generateTangents();
    expectTangentsFollowTexture(box);
    for (const DefaultMeshVertex &vertex : box.getVertices())
    {
        const Vec4 n = toDirection(vertex.normal), t = toDirection(vertex.tangent), b = toDirection(vertex.bitangent);
        EXPECT_GT(n.cross(t).dot(b), 0) << "mirrored";
        if (vertex.normal.y < 0.5f)
            continue;
        EXPECT_EQ(vertex.texCoord0, (MeshVector2{2 * (vertex.position.x + 10), -2 * vertex.position.z}));
    }
}

TEST(MeshBuilder, MergedMeshKeepsUnitSquareFramesUnderAnyMatrix)
{
    MeshBuilder ball, merged;
    ball.addSphere(1, 16, 8);
    ball.generateTangents();
    Matrix4 squash;
    squash.scale(3, 0.5f, -1);
    merged.merge(ball, squash);
    merged.merge(merged, moved(9, 0, 0));
    EXPECT_EQ(merged.getVertices().size(), 2 * ball.getVertices().size());
    EXPECT_NEAR(volumeOf(merged), 2 * 1.5 * volumeOf(ball), 1e-3);
    expectNormalsInFront(merged);
    expectOrthonormal(merged);
}
