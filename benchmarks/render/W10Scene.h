// W10Scene: the scene of w10_scene.h as a level of the engine, with an entity a ball.
#pragma once

#include "w10_scene.h"

#include "assets/models/MeshAsset.h"
#include "assets/cache/TextureAsset.h"
#include "engine/levels/Coordinator.h"
#include "engine/entities/Entity.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"

#include <vector>

/// Balls on a checkered ground under a camera and lights, in motion.
class W10Scene
{
public:
    static constexpr int WIDTH = 1280, HEIGHT = 720; ///< pixels

    /// Makes the level and puts it in charge.
    W10Scene(int balls, int lights, bool shadow);
    /// Turns every ball and runs one frame of the whole engine.
    void frame();

private:
    Handle<Entity> addEntity(const char *name, Vec4 position);
    Handle<TransformComponent> addModel(Vec4 position, const Handle<MeshAsset> &mesh, Vec4 extents);
    void addVolume(const Handle<Entity> &entity, Vec4 extents);
    void addGrid();
    void addCamera();
    void addPointLights(int count);
    void addSpot(bool shadow);
    Handle<MeshAsset> makeGround() const;

    float side = 0; ///< metres: of the square that the balls stand in
    float yaw = 0;  ///< radians
    std::vector<w10::Place> places;
    Handle<Coordinator> level;
    Handle<MapRootEntity> map;
    Handle<TextureAsset> checker;
    std::vector<Handle<TransformComponent>> balls;
};
