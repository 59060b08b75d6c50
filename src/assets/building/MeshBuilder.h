// MeshBuilder: gathers vertices and triangles, shapes and polygons, into one mesh.
#pragma once

#include "assets/models/Mesh.h"
#include "assets/models/MeshBounds.h"

#include "foundation/ErrorCode.h"
#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <cstdint>
#include <vector>

class Variant;

/// A flat area drawn as a plan: an outline and the holes in it. Metres.
///
/// A plan's x and y are x and z of the mesh. Outlines are closed by themselves and may run either way round; points
/// may repeat, lie on a straight line, and a hole may touch the outline or another hole.
struct MeshPolygon
{
    typedef std::vector<MeshVector2> Outline;

    Outline outline;
    std::vector<Outline> holes; ///< none by default
};

/// Builds a triangle mesh step by step.
///
/// Mesh space, metres, left-handed; front faces are clockwise. Texture coordinates start at the top left of the
/// image; a tangent points to growing u, a bitangent to growing v. What adds a shape sets positions, normals and
/// texture coordinates; tangents are right after generateTangents alone. A plain value, not part of the object tree.
class MeshBuilder
{
public:
    typedef std::uint32_t Index;
    typedef Mesh::VertexBufferType VertexVec;
    typedef Mesh::IndexBufferType IndexVec;

    void clear();
    /// Makes room for that many more vertices and triangles.
    void reserve(std::size_t moreVertices, std::size_t moreTriangles);

    /// Appends one vertex and returns its number.
    Index addVertex(const DefaultMeshVertex &vertex);
    /// Appends one vertex whose tangent frame is any that fits the normal, and returns its number.
    Index addVertex(const Vec4 &position, const Vec4 &normal, MeshVector2 texCoord = {0, 0});
    /// Appends a triangle of present vertices, clockwise seen from its front. A number out of range is an assertion
    /// and adds nothing.
    void addTriangle(Index a, Index b, Index c);
    /// Appends two triangles of present vertices, clockwise seen from the front: a, b, c and a, c, d.
    void addQuad(Index a, Index b, Index c, Index d);

    /// Appends three vertices, clockwise seen from the front, with the triangle's own normal and no texture.
    void addTriangle(const Vec4 &a, const Vec4 &b, const Vec4 &c);
    /// Appends a flat quad with the whole texture on it; the corners as seen from its front.
    void addQuad(const Vec4 &topLeft, const Vec4 &topRight, const Vec4 &bottomRight, const Vec4 &bottomLeft);

    /// Appends a polygon that faces +y before `placement`; its texture coordinates are the plan's metres, v downwards.
    /// @return MAP_DATA_ERROR for an outline or hole that crosses itself or another, lies outside or has no area,
    ///         OUT_OF_BOUNDS for a coordinate that is no number or beyond 1e6; the mesh is then as it was
    /// @cost the square of the points, a few nanoseconds each
    ErrorCode addPolygon(const MeshPolygon &polygon, const Matrix4 &placement = Matrix4());
    /// Appends the solid between a plan at height 0 and the same plan at `height`: caps, and sides of each edge.
    ///
    /// Texture coordinates are metres: the plan's on the caps, along the outline and down from the top on the sides.
    /// @return as addPolygon, and OUT_OF_BOUNDS for a height that is not above 0
    ErrorCode addExtrusion(const MeshPolygon &polygon, float height, const Matrix4 &placement = Matrix4());
    /// Appends the solid that a plan sweeps over when it is placed at one station after another.
    ///
    /// Each station places the plan; the next one must lie on the side that the plan's +y faces.
    /// @return as addPolygon, and OUT_OF_BOUNDS for fewer than two stations
    ErrorCode addExtrusion(const MeshPolygon &polygon, const std::vector<Matrix4> &stations);

    /// Appends a box around the origin with the whole texture on each face.
    /// @param halfSizes  half of each edge, metres; the sign does not count
    void addBox(const Vec4 &halfSizes, const Matrix4 &placement = Matrix4());
    /// Appends a rectangle around the origin in the x/z plane that faces +y; the texture's top is at +z. The signs of
    /// sizes do not count, here and below.
    /// @param columns, rows  cells along x and z; less than 1 is an assertion and counts as 1
    void addPlane(float width, float depth, int columns = 1, int rows = 1, const Matrix4 &placement = Matrix4());
    /// Appends a capped cylinder around the y axis with its middle at the origin; the texture goes once around.
    /// @param segments  sides; less than 3 is an assertion and counts as 3
    void addCylinder(float radius, float height, int segments = 16, const Matrix4 &placement = Matrix4());
    /// Appends a sphere around the origin; the texture goes once around, its top at +y.
    /// @param segments  sides around the y axis; less than 3 is an assertion and counts as 3
    /// @param rings     bands from pole to pole; less than 2 is an assertion and counts as 2
    void addSphere(float radius, int segments = 16, int rings = 8, const Matrix4 &placement = Matrix4());

    /// Appends a copy of another mesh, placed by a matrix. One that mirrors turns the triangles round as well.
    void merge(const MeshBuilder &other, const Matrix4 &placement = Matrix4());
    /// Moves every vertex by a matrix; one that mirrors turns the triangles round as well.
    void transform(const Matrix4 &placement);
    /// Turns the mesh inside out: every triangle and every normal.
    void flip();
    /// Turns every triangle round; normals stay.
    void flipTriangles();

    /// Makes one vertex of those that differ by at most `tolerance` in every number, and drops the triangles and
    /// vertices that this leaves without use.
    /// @param tolerance  metres for positions, the numbers themselves for the rest
    /// @cost linear as long as few vertices share a place
    void weld(float tolerance = 1e-5f);
    /// Drops the triangles with an area below `leastArea`, square metres; vertices stay.
    void dropFlatTriangles(float leastArea = 1e-9f);
    /// Gives each triangle its own normal; shared vertices are split.
    /// @cost linear, but the square of the triangles that share one vertex
    void flattenNormals();
    /// Gives each corner the mean, weighted by angle, of the triangles at its place that turn off by at most the
    /// crease angle; vertices with corners that differ are split.
    /// @param creaseAngle  radians; PI smooths every edge
    /// @cost linear, but the square of the triangles that meet at one place
    void smoothNormals(float creaseAngle = PI);
    /// Makes tangents and bitangents from normals and texture coordinates; the result is orthonormal everywhere.
    ///
    /// A vertex where the texture meets its mirror image is split. Where the texture has no extent the frame is any
    /// that fits the normal; where the normal has no length it becomes +y first.
    void generateTangents();
    /// Replaces texture coordinates by positions along the two axes that a triangle faces least; splits the vertices
    /// between triangles of different axes.
    /// @param scale    repeats of the texture a metre
    /// @param toWorld  place of the mesh in the world, so that neighbours' textures join
    void applyWorldTextureCoordinates(float scale = 1, const Matrix4 &toWorld = Matrix4());

    const VertexVec &getVertices() const { return vertices; }
    const IndexVec &getIndices() const { return indices; }
    std::size_t getTriangleCount() const { return indices.size() / 3; }
    /// The box around all vertices; both corners at the origin without any.
    MeshBounds getBounds() const { return boundsOf(vertices); }

    /// A copy of what was gathered, ready for a model file or the device.
    Mesh toMesh() const;

private:
    VertexVec vertices;
    IndexVec indices; ///< three a triangle
};

/// How a builder comes from a script, whose class `MeshBuilder` it is; defined beside that class.
bool fromVariant(const Variant &v, MeshBuilder &builder);
