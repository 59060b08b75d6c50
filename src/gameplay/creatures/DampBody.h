// DampBody: the shape of something wet and black that pours along, made anew in each frame.
#pragma once

#include "assets/models/Mesh.h"
#include "gameplay/creatures/OnGround.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <array>

class DynamicMeshAsset;
class TransformComponent;

/// Fills a mesh with a heap that lies, pours or rears up where its entity stands, under the component key "form".
///
/// Its entity is kept on the ground. Its lumps stay behind in the world while it moves, so
/// that it flows; it leans the way it goes, reaches ahead with fingers, and keeps within the walls, doors and things
/// around it: in a doorway it is drawn narrow and rises for it. Metres, seconds of the timer "master". The mesh belongs
/// to whoever draws it.
/// @cost a few segments and one upload of some 600 vertices a frame; allocates nothing once it has its size
class DampBody : public OnGround
{
    KV_REFLECTED(DampBody)
public:
    /// Directions around it, and rings from its rim to its crown.
    static constexpr int SIDES = 40, RINGS = 14;

    DampBody() = default;

    /// Flows on.
    void doFrame() override;

    /// The mesh that it fills.
    Handle<DynamicMeshAsset> getMesh() const { return hMesh; }
    void setMesh(Handle<DynamicMeshAsset> val) { hMesh = val; }
    /// How far it is to rear up: 0 lies flat, 1 stands.
    float getRearing() const { return rearing; }
    void setRearing(float val);
    /// How much it boils, 0 to 1, as it does in the light.
    float getBoiling() const { return boiling; }
    void setBoiling(float val);
    /// Its radius at rest, metres.
    float getGirth() const { return girth; }
    void setGirth(float val);
    /// How tall it is now, metres.
    float getTallness() const { return tallness; }

private:
    /// What a shape is made from, for one frame.
    struct Flow
    {
        Vec4 place;
        Vec4 heading;       ///< over the ground, length 1
        float hurry = 0.f;  ///< 0 at rest, 1 at a run
        float radius = 0.f; ///< metres
    };

    /// What the points in one direction have in common.
    struct Spoke
    {
        Vec4 direction;    ///< over the ground, length 1
        float reach = 0.f; ///< metres, whatever stands there
        float room = 0.f;  ///< metres up to what stands there
    };

    /// What the points of one ring have in common.
    struct Band
    {
        int ring = 0;
        float height = 0.f; ///< 0 at the rim, 1 at the crown
        float body = 0.f;   ///< share of its girth that is left there
        float up = 0.f;     ///< metres above the ground
        float sway = 0.f;   ///< metres aside
    };

    void feelAround(const TransformComponent &transform);
    Flow flowOn(const TransformComponent &transform, float seconds);
    void shape(const Flow &flow, const TransformComponent &transform);
    Vec4 pointOf(const Flow &flow, const Spoke &spoke, const Band &band) const;
    float reachTo(const Flow &flow, const Vec4 &direction) const;
    Band bandOf(int ring) const;
    void findNormals();
    void prepareMesh();
    static std::size_t vertexAt(int ring, int side)
    {
        return static_cast<std::size_t>(ring) * SIDES + static_cast<std::size_t>(side);
    }

    Handle<DynamicMeshAsset> hMesh;
    float rearing = 0.3f;
    float boiling = 0.f;
    float girth = 0.62f; ///< metres

    std::array<float, SIDES> room; ///< metres that are free in each direction
    int nextSide = 0;              ///< that is felt for next
    bool hasFelt = false;
    float reared = 0.3f;  ///< as far as it has come
    float boiled = 0.f;   ///< as far as it has come
    float tallness = 0.f; ///< metres
    Seconds time = 0;     ///< of its life, by which it boils
    Vec4 velocity;        ///< smoothed, metres a second
    Vec4 lastPlace;       ///< w 0 before the first frame
    Vec4 facing = Vec4(0.f, 0.f, 1.f, 0.f);
    Mesh::VertexBufferType vertices;
    Mesh::IndexBufferType indices;
};
