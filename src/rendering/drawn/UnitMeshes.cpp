#include "rendering/drawn/UnitMeshes.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/models/DynamicMeshAssetLoader.h"
#include "engine/systems/RequestHandle.h"

namespace
{

Handle<DynamicMeshAsset> requestDynamicMesh()
{
    return handle_cast<DynamicMeshAsset>(getSystemDeref<AssetSystem>().startLoad(
        DynamicMeshAssetLoader::staticType, SCS("<dynamic>"), nullptr, getNextRequestHandle()));
}

/// The mesh that a handle kept; a new one where there is none, or where it went with the asset system.
Handle<MeshAsset> shared(Handle<DynamicMeshAsset> &kept, void (*fill)(DynamicMeshAsset &))
{
    if (kept.isValid())
        return kept;
    kept = requestDynamicMesh();
    if (const auto mesh = kept.lookup())
        fill(*mesh);
    return kept;
}

void fillQuad(DynamicMeshAsset &mesh)
{
    const MeshVector3 towardsEye = {0, 0, -1}, right = {1, 0, 0}, down = {0, -1, 0};
    mesh.setMeshData({{{0, 0, 0}, towardsEye, right, down, {0, 1}},
                      {{0, 1, 0}, towardsEye, right, down, {0, 0}},
                      {{1, 1, 0}, towardsEye, right, down, {1, 0}},
                      {{1, 0, 0}, towardsEye, right, down, {1, 1}}},
                     {0, 1, 2, 0, 2, 3});
}

void fillCube(DynamicMeshAsset &mesh)
{
    Mesh::VertexBufferType corners;
    for (int corner = 0; corner < 8; ++corner)
        corners.push_back({{(corner & 1 ? 0.5f : -0.5f), (corner & 2 ? 0.5f : -0.5f), (corner & 4 ? 0.5f : -0.5f)},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0, 0},
                           {0, 0}});
    // Each face clockwise as seen from outside.
    const std::uint32_t faces[6][4] = {{0, 2, 3, 1}, {5, 7, 6, 4}, {4, 6, 2, 0},
                                       {1, 3, 7, 5}, {1, 5, 4, 0}, {2, 6, 7, 3}};
    Mesh::IndexBufferType indices;
    for (const auto &face : faces)
        indices.insert(indices.end(), {face[0], face[1], face[2], face[0], face[2], face[3]});
    mesh.setMeshData(corners, indices);
}

} // namespace

Handle<MeshAsset> getUnitQuad()
{
    static Handle<DynamicMeshAsset> quad;
    return shared(quad, fillQuad);
}

Handle<MeshAsset> getUnitCube()
{
    static Handle<DynamicMeshAsset> cube;
    return shared(cube, fillCube);
}

Handle<DynamicMeshAsset> makeDynamicMesh(const Object &owner)
{
    const Handle<DynamicMeshAsset> hMesh = requestDynamicMesh();
    if (const auto mesh = hMesh.lookup())
        mesh->setParent(owner.getHandle());
    return hMesh;
}
