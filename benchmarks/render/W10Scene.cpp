#include "W10Scene.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/models/DynamicMeshAssetLoader.h"
#include "engine/levels/GameLoop.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/levels/MapRootEntity.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/grid/PartitioningGrid.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/frame/ViewerComponent.h"
#include "platform/window/WindowSystem2.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace
{

constexpr const char *CHECKER = "w10_checker.tga";

constexpr float BRIGHTNESS = 0.15f; ///< of lights of strength 1, so that the engine's exposure shows them as bright

/// The scene's axes are right-handed, the engine's left-handed: z changes its sign, and triangles their order.
Vec4 place(float x, float y, float z)
{
    return Vec4(x, y, -z, 1);
}

/// Orientation of what looks from a place towards the origin, upright.
Quaternion towardsOrigin(Vec4 from)
{
    const float yaw = std::atan2(-from.x, -from.z);
    const float pitch = std::atan2(from.y, std::hypot(from.x, from.z));
    return Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), yaw) * Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), pitch);
}

/// The checker of the workload as an uncompressed 32-bit TGA file.
void writeChecker()
{
    constexpr int side = 256;
    std::vector<unsigned char> file = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 1, 32, 0x28};
    for (int y = 0; y < side; ++y)
        for (int x = 0; x < side; ++x)
        {
            const bool light = (x / 32 + y / 32) & 1;
            const unsigned char blueFirst[] = {static_cast<unsigned char>(light ? 160 : 120),
                                               static_cast<unsigned char>(light ? 180 : 100),
                                               static_cast<unsigned char>(light ? 200 : 90), 255};
            file.insert(file.end(), blueFirst, blueFirst + 4);
        }
    std::FILE *out = std::fopen(CHECKER, "wb");
    if (!out || std::fwrite(file.data(), 1, file.size(), out) != file.size())
        std::exit(1);
    std::fclose(out);
}

Handle<TextureAsset> loadChecker()
{
    writeChecker();
    const Handle<TextureAsset> texture = construct<TextureAsset>(defaultAllocationCategory);
    texture.lookup()->setFileName(SCS(CHECKER));
    texture.lookup()->startLoad();
    std::remove(CHECKER);
    return texture;
}

Handle<MeshAsset> makeMesh(const Mesh::VertexBufferType &vertices, const Mesh::IndexBufferType &indices)
{
    const Handle<MeshAsset> mesh = handle_cast<MeshAsset>(
        getSystemDeref<AssetSystem>().startLoad(DynamicMeshAssetLoader::staticType, SCS("<dynamic>"), nullptr, 0));
    mesh.lookup()->setMeshData(vertices, indices);
    return mesh;
}

Handle<MeshAsset> makeBall()
{
    const w10::Mesh source = w10::ball();
    Mesh::VertexBufferType vertices;
    for (const w10::V &v : source.v)
    {
        const float ring = std::hypot(v.n[0], v.n[2]);
        const MeshVector3 tangent = ring > 0 ? MeshVector3{-v.n[2] / ring, 0, -v.n[0] / ring} : MeshVector3{1, 0, 0};
        vertices.push_back(
            {{v.p[0], v.p[1], -v.p[2]}, {v.n[0], v.n[1], -v.n[2]}, tangent, {0, -1, 0}, {v.uv[0], v.uv[1]}});
    }
    Mesh::IndexBufferType indices;
    for (std::size_t i = 0; i < source.i.size(); i += 3)
        for (const std::size_t corner : {i, i + 2, i + 1})
            indices.push_back(source.i[corner]);
    return makeMesh(vertices, indices);
}

template <class T>
typename Handle<T>::Result addComponent(const Handle<Entity> &entity, const char *key)
{
    return handle_cast<T>(entity.lookup()->addComponent(SCS(key), T::staticType)).lookup();
}

TransformComponent &transformOf(const Handle<Entity> &entity)
{
    return *handle_cast<TransformComponent>(entity.lookup()->getComponent(SCS("transform"))).lookup();
}

} // namespace

W10Scene::W10Scene(int count, int lights, bool shadow) : places(w10::places(count, side))
{
    getSystemDeref<WindowSystem2>().setWindowedSize(WIDTH, HEIGHT);
    getSystemDeref<GlobalConfigSystem>().setDefaultSceneAmbient(0.2f);
    getSystemDeref<GraphicsSystem2>().setAntialiasing(false); // the peers draw without it
    level = construct<Coordinator>(defaultAllocationCategory);
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(level);
    map = construct<MapRootEntity>(defaultAllocationCategory);
    map.lookup()->setName(SCS("map"));
    map.lookup()->setParent(level);
    addComponent<TransformComponent>(map, "transform")->setScale(Vec4(2 * side, 100, 2 * side, 0));
    addGrid();
    checker = loadChecker();
    // Later meshes are drawn first, so the ground is shaded where no ball hides it.
    addModel(place(0, 0, 0), makeGround(), Vec4(side + 4, 0.1f, side + 4, 0));
    const Handle<MeshAsset> ball = makeBall();
    for (const w10::Place &p : places)
        balls.push_back(addModel(place(p.x, 0.5f, p.z), ball, Vec4(1, 1, 1, 0)));
    addCamera();
    addPointLights(lights);
    addSpot(shadow);
}

void W10Scene::frame()
{
    yaw += 0.01f;
    const Quaternion turn = Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), -yaw);
    for (const Handle<TransformComponent> &ball : balls)
        ball.lookup()->setOrientation(turn);
    getSystemDeref<GameLoopSystem>().doFrame();
}

Handle<Entity> W10Scene::addEntity(const char *name, Vec4 position)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    entity.lookup()->setName(SCS(name));
    entity.lookup()->setParent(map);
    addComponent<TransformComponent>(entity, "transform")->setPosition(position);
    return entity;
}

void W10Scene::addVolume(const Handle<Entity> &entity, Vec4 extents)
{
    const auto volume = addComponent<BoundingVolume>(entity, "boundingVolume");
    volume->setVolumeType(BoundingVolume::BV_NONE);
    volume->setHitBox(extents);
    volume->onLoadComplete();
}

Handle<TransformComponent> W10Scene::addModel(Vec4 position, const Handle<MeshAsset> &mesh, Vec4 extents)
{
    const Handle<Entity> entity = addEntity("model", position);
    const auto model = addComponent<ModelGraphicsComponent2>(entity, "graphics2");
    model->setMesh(mesh);
    model->setTexture(checker);
    model->setLayer(SceneGraph::WORLD);
    model->onLoadComplete();
    addVolume(entity, extents);
    return handle_cast<TransformComponent>(entity.lookup()->getComponent(SCS("transform")));
}

void W10Scene::addGrid()
{
    const Handle<Entity> entity = addEntity(".MapData_partitioningGrid", Vec4(0, 0, 0, 1));
    const auto grid = addComponent<PartitioningGrid>(entity, "partitioning");
    grid->setPosition(Vec4(0, 0, 0, 1));
    grid->setSize(Vec4(2 * side, 0, 2 * side, 0));
    grid->setCellSize(4.0f);
    grid->onLoadBegin();
}

void W10Scene::addCamera()
{
    const Vec4 eye = place(0, 0.6f * side, 0.9f * side);
    const Handle<Entity> camera = addEntity("camera", eye);
    transformOf(camera).setOrientation(towardsOrigin(eye));
    const auto viewer = addComponent<ViewerComponent>(camera, "viewer");
    viewer->setVerticalFieldOfViewAngle(1.0471976f);
    viewer->setNearClipDistance(0.5f);
    viewer->setFarClipDistance(4 * side);
    handle_cast<GraphicsManager2>(level.lookup()->getManager(SCS("graphics2"))).lookup()->pushCamera(camera);
}

void W10Scene::addPointLights(int count)
{
    constexpr float colors[4][3] = {{1, .8f, .6f}, {.6f, .8f, 1}, {.8f, 1, .6f}, {1, .6f, .8f}};
    for (int i = 0; i < count; ++i)
    {
        const auto lattice = [this](int step) { return (static_cast<float>(step) + 0.5f) * side / 4 - side / 2; };
        const Handle<Entity> entity = addEntity("point", place(lattice(i % 4), 3, lattice(i / 4)));
        const auto light = addComponent<LightComponent>(entity, "graphics2");
        const float(&color)[3] = colors[i % 4];
        light->setDiffuseColor(Vec4(color[0] * BRIGHTNESS, color[1] * BRIGHTNESS, color[2] * BRIGHTNESS, 0));
        light->setIsSpot(false);
        light->setLightFalloffEnd(side / 6);
        light->setLayer(SceneGraph::LIGHT);
        light->onLoadComplete();
    }
}

void W10Scene::addSpot(bool shadow)
{
    constexpr float degree = 0.017453293f;
    const float reach = 2 * side, radius = reach * std::tan(25 * degree);
    const Vec4 position = place(-0.35f * side, 0.4f * side, 0.35f * side);
    const Handle<Entity> entity = addEntity("spot", position);
    transformOf(entity).setOrientation(towardsOrigin(position));
    transformOf(entity).setScale(Vec4(radius, radius, reach, 0));
    addVolume(entity, Vec4(side, side, side, 0));
    const auto viewer = addComponent<ViewerComponent>(entity, "viewer");
    viewer->setNearClipDistance(0.5f);
    viewer->setFarClipDistance(reach);
    const auto light = addComponent<LightComponent>(entity, "graphics2");
    light->setDiffuseColor(Vec4(BRIGHTNESS, BRIGHTNESS, BRIGHTNESS, 0));
    light->setSpotInnerAngle(20 * degree);
    light->setSpotOuterAngle(25 * degree);
    light->setLightFalloffEnd(reach);
    light->setCastShadows(shadow);
    light->setLayer(SceneGraph::LIGHT);
    light->onLoadComplete();
}

Handle<MeshAsset> W10Scene::makeGround() const
{
    const float half = side / 2 + 2;
    const auto corner = [half](float x, float z) {
        return DefaultMeshVertex{
            {x * half, 0, z * half}, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}, {x / 2 + 0.5f, z / 2 + 0.5f}};
    };
    return makeMesh({corner(-1, -1), corner(-1, 1), corner(1, 1), corner(1, -1)}, {0, 1, 2, 0, 2, 3});
}
