#include "tools/editor/OverlayGraphics.h"

#include "assets/building/MeshBuilder.h"
#include "assets/models/DynamicMeshAsset.h"
#include "rendering/device/BatchProxy.h"
#include "rendering/drawn/UnitMeshes.h"
#include "rendering/frame/RenderParams.h"

#include <cmath>

namespace
{
/// What stays the same from batch to batch, made once.
struct BatchConstants
{
    const String defaultSet = SCS("Default");
    const String worldToClip = SCS("worldToClip");
    const String effect = SCS("editor.fx");
    const String wires = SCS("Wires");
    const String hiddenWires = SCS("HiddenWires");
    const String faces = SCS("Faces");
    const String hiddenFaces = SCS("HiddenFaces");
    const String solids = SCS("Solids");
};

/// The four corners of a line, each with both ends, its side as seen along its own way, and as seen along the line's.
void addWire(Mesh::VertexBufferType &vertices, Mesh::IndexBufferType &indices, MeshVector3 from, MeshVector3 to)
{
    const auto first = static_cast<u32>(vertices.size());
    const MeshVector3 none = {0, 0, 0};
    for (const float side : {-1.f, 1.f})
    {
        vertices.push_back({from, none, to, none, {side, side}});
        vertices.push_back({to, none, from, none, {-side, side}});
    }
    for (const u32 offset : {0u, 1u, 2u, 1u, 3u, 2u})
        indices.push_back(first + offset);
}

void fillBoxEdges(DynamicMeshAsset &mesh)
{
    Mesh::VertexBufferType vertices;
    Mesh::IndexBufferType indices;
    const auto corner = [](int number) {
        return MeshVector3{number & 1 ? 0.5f : -0.5f, number & 2 ? 0.5f : -0.5f, number & 4 ? 0.5f : -0.5f};
    };
    for (int from = 0; from < 8; ++from)
        for (const int along : {1, 2, 4})
            if (!(from & along))
                addWire(vertices, indices, corner(from), corner(from | along));
    mesh.setMeshData(vertices, indices);
}

void fillLine(DynamicMeshAsset &mesh)
{
    Mesh::VertexBufferType vertices;
    Mesh::IndexBufferType indices;
    addWire(vertices, indices, {0, 0, 0}, {1, 0, 0});
    mesh.setMeshData(vertices, indices);
}

void fillArea(DynamicMeshAsset &mesh)
{
    MeshBuilder square;
    square.addQuad(Vec4(0, 0, 1, 1), Vec4(1, 0, 1, 1), Vec4(1, 0, 0, 1), Vec4(0, 0, 0, 1));
    mesh.setMeshData(square);
}

void fillCone(DynamicMeshAsset &mesh)
{
    constexpr int sides = 12;
    MeshBuilder cone;
    const auto rim = [](int side)
    {
        const float angle = 2.f * PI * static_cast<float>(side) / sides;
        return Vec4(0.f, std::cos(angle), std::sin(angle), 1.f);
    };
    for (int side = 0; side < sides; ++side)
    {
        cone.addTriangle(rim(side), Vec4(1, 0, 0, 1), rim(side + 1));
        cone.addTriangle(rim(side + 1), Vec4(0, 0, 0, 1), rim(side));
    }
    mesh.setMeshData(cone);
}

void fillCube(DynamicMeshAsset &mesh)
{
    MeshBuilder cube;
    cube.addBox(Vec4(0.5f, 0.5f, 0.5f, 0.f));
    mesh.setMeshData(cube);
}
} // namespace

void OverlayGraphics::onLoadComplete()
{
    expectLayer({SceneGraph::SCREEN_DEBUG, SceneGraph::WORLD_DEBUG});
    static constexpr void (*fillers[])(DynamicMeshAsset &) = {fillArea, fillBoxEdges, fillLine, fillCone, fillCube};
    mesh = makeDynamicMesh(*this);
    const auto made = mesh.lookup();
    if (made && shape >= OS_AREA && shape <= OS_CUBE)
        fillers[shape](*made);
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams OverlayGraphics::batchGetParams()
{
    static const BatchConstants names;
    const bool hidden = getLayer() == SceneGraph::WORLD_DEBUG;
    const String &wires = hidden ? names.hiddenWires : names.wires;
    const String &faces = hidden ? names.hiddenFaces : names.faces;
    const String &technique = isWire() ? wires : shape == OS_AREA ? faces : names.solids;
    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = MVT_DEFAULT_INSTANCE;
    params.mesh = mesh;
    params.shaders.insert(names.defaultSet, GraphicsSystem2::ShaderID(names.effect, technique));
    params.shaderConstants.emplace_back(names.worldToClip, worldToClip.transpose());
    return params;
}

void OverlayGraphics::objectDraw(BatchProxy &batch)
{
    for (const DefaultInstanceVertex &instance : instances)
        batch.addInstanceData(instance);
}

int OverlayGraphics::objectGetInstanceCount()
{
    return static_cast<int>(instances.size());
}

DefaultInstanceVertex OverlayGraphics::place(const Matrix4 &matrix, const Vec4 &color, float width)
{
    DefaultInstanceVertex instance;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            instance.modelMatrix[row][column] = matrix[row][column];
    instance.normalMatrix[0] = {color.x, color.y, color.z};
    instance.normalMatrix[1] = {color.w, width, 0.f};
    instance.normalMatrix[2] = {0.f, 0.f, 0.f};
    return instance;
}
