// DustParticleSystemComponent: dust that hangs in the air of a box and shows where light falls on it.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/LightInAir.h"

#include "assets/models/Mesh.h"

#include "foundation/Matrix4.h"
#include "foundation/TimeTypes.h"

#include <random>
#include <vector>

class DynamicMeshAsset;

/// Motes that drift slowly in the box of their entity's transform: around its position, as large as its scale.
///
/// A mote keeps its place in the world while the box moves: it leaves on one side and comes in on the other, unseen, so
/// that a box on the player is dust everywhere. Motes swirl with the level's "master" timer and stand still in a
/// stopped level. The lights of the level light them by the same law as surfaces, without shadows; no light in reach,
/// and nothing is drawn. Belongs in the layer WORLD_DEBUG: drawn onto the finished picture, hidden by what is in front.
class DustParticleSystemComponent : public GraphicsComponent2
{
    KV_REFLECTED(DustParticleSystemComponent)
public:
    DustParticleSystemComponent() = default;

    /// Makes the mesh, then enters the scene graph.
    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    /// Writes nothing: every cloud is a draw call of its own.
    void objectDraw(BatchProxy &batch) override;
    /// 0 while no light reaches the box, and while the box is behind the camera or farther than the draw distance.
    int objectGetInstanceCount() override;
    /// Moves the motes by the time that has passed, and lights them.
    ErrorCode batchPreRender() override;

    int getCount() const { return count; }
    /// How many motes hang in the box, 0 to 20000.
    void setCount(int val);
    float getSize() const { return size; }
    /// Width of a mote, metres, 0.0005 to 0.1; each is a little larger or smaller.
    void setSize(float val);
    Vec4 getColor() const { return color; }
    /// Colour of the motes, linear; its alpha is how much light they return.
    void setColor(const Vec4 &val) { color = val; }
    float getDriftSpeed() const { return driftSpeed; }
    /// How fast the air carries the motes, metres a second, 0 to 2.
    void setDriftSpeed(float val);
    float getDrawDistance() const { return drawDistance; }
    /// How far from the camera the box is still drawn, metres, 0 to 1000.
    void setDrawDistance(float val);

    /// The lit motes as they were last drawn, one point each; invalid before the load.
    Handle<DynamicMeshAsset> getMesh() const { return mesh; }
    /// Motes drawn in the last frame: those that light fell on.
    int getLitCount() const { return static_cast<int>(vertices.size()); }

private:
    struct Particle
    {
        Vec4 position; ///< world space, metres
        float size;    ///< share of the common size
        float shine;   ///< share of the light that it returns
        float weight;  ///< how fast it sinks, share of the drift speed
    };
    class Box;

    bool isInView(const Box &box) const;
    void findLights(const Box &box);
    void fitCount(const Box &box);
    float takeElapsedTime();
    void drift(const Box &box, float seconds);
    void light(const Box &box);

    std::vector<Particle> particles;
    Handle<DynamicMeshAsset> mesh;   ///< one point for each lit mote, its colour in the normal, its size in u
    Mesh::VertexBufferType vertices; ///< what the mesh is given
    std::vector<LightInAir> lights;  ///< those that reach the box in this frame
    TimerTicks lastTicks = 0;        ///< of the "master" timer at the last step
    float swirlTime = 0;             ///< seconds that the air has moved
    std::minstd_rand dice;           ///< of its own: what is drawn must not change the game's chance

    int count = 1000;
    float size = 0.005f;                          ///< metres
    Vec4 color = Vec4(0.55f, 0.52f, 0.45f, 1.0f); ///< linear
    float driftSpeed = 0.03f;                     ///< metres a second
    float drawDistance = 20.0f;                   ///< metres
};
