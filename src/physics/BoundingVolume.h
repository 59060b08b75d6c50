// BoundingVolume: an object's shape, its place in its map's grid, and what happens to who touches it.
#pragma once

#include "physics/RayCollision.h"
#include "physics/VolumeListGrid.h"

#include "engine/RequestHandle.h"
#include "engine/SimpleComponent.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"
#include "object/ReflectorPtr.h"

#include <cstdint>
#include <vector>

class Collision;
class MapRootEntity;
class PartitioningGrid;
class PhysicsComponent;
class SavedArguments;
class TransformComponent;

/// Collision shape, place in the map's partitioning grid, and trigger or interaction of an object, under the component
/// key "boundingVolume".
///
/// A box, or a sphere, about the position of the entity's transform, in the space of that transform; metres. Culled
/// drawing (the layers WORLD, LIGHT and DECAL) finds an object by its volume, so that what is drawn there needs one:
///
///     kaVel.addComponent(entity, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(1, 2, 1, 0),
///                        volumeType='BV_NONE')
///
/// `BV_WALL` is for what never moves by itself and stops others, `BV_BOX` and `BV_SPHERE` for bodies, `BV_NONE` for
/// what is only looked at and pointed at.
class BoundingVolume : public SimpleComponent
{
    KV_REFLECTED(BoundingVolume)
public:
    /// What a volume is to others: it decides which pairs are tested, and how.
    enum VolumeType
    {
        BV_SPHERE = 0,              ///< a ball of diameter hitBox.x
        BV_BOX = 1,                 ///< a movable box
        BV_NONE = 2,                ///< collides with nothing
        BV_WALL = 3,                ///< an immovable box, kept among the grid's static volumes
        BV_DOOR = 4,                ///< a box that walls and doors let pass
        BV_PLAYER = 5,              ///< the player, who slides along what it touches
        BV_SHADOW = 6,              ///< stopped by walls only
        BV_BULLET = 7,              ///< a line along its own z axis, hitBox.z long
        BV_PARTICLE = 8,            ///< keeps the tests of the type before it
        BV_CONTAINER = 9,           ///< notices boxes without stopping them
        BV_PARTITIONING_DUMMY = 10, ///< stands for an object that only needs a place in the grid
        NUM_VOLUMES = 11            ///< count
    };
    typedef bool (BoundingVolume::*DetectCollision)(Handle<BoundingVolume> other, std::vector<Collision *> &collisions);
    typedef std::vector<Handle<BoundingVolume>> ColliderList;

    BoundingVolume();

    /// Says in the log where a designer gave a volume without an extent.
    void onLoadComplete() override;
    /// Draws the box, or the sphere's three great circles, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    /// Puts the volume into its map's grid, or moves it there after its transform, and forgets the frame's contacts.
    ///
    /// A change of height alone is none.
    void doFrame() override;
    /// Tests this volume with another one and appends what they have in common.
    ///
    /// A pair is tested once a frame. A contact with the player calls the function of a volume that is a trigger, and
    /// then has no physical effect.
    /// @return whether the volumes touch; false for a pair whose types do not
    virtual bool colliding(Handle<BoundingVolume> other, std::vector<Collision *> &collisions);

    /// What the volume is to others.
    VolumeType getVolumeType() const { return volumeType; }
    /// Chooses what the volume is to others; BV_PARTICLE leaves the tests as they are.
    void setVolumeType(VolumeType t);
    /// Whether touching the player calls the trigger's function and has no physical effect.
    bool getTrigger() const { return trigger; }
    void setTrigger(bool val) { trigger = val; }
    /// Whether the interaction ray finds the volume.
    bool getInteract() const { return interact; }
    void setInteract(bool val) { interact = val; }
    /// Full extents of the box, metres; x is also the diameter of a sphere.
    Vec4 getHitBox() const { return hitBox; }
    /// Sets the extents; the grid finds the volume by them from the next frame step on, moved or not.
    void setHitBox(Vec4 val)
    {
        hitBox = val;
        hitBoxChanged = true;
    }
    /// The volumes that this one has collided with since its last frame step.
    const ColliderList &getColliders() const { return collisions; }
    /// The last visibility request that saw the volume; 0 for none.
    RequestHandle getLastRequest() const { return lastRequest; }
    void setLastRequest(RequestHandle val) { lastRequest = val; }
    /// Near corner of the rectangle in the grid, cell coordinates.
    Vec4 getPreviousMin() const { return previousMin; }
    /// Far corner of the rectangle in the grid, cell coordinates.
    Vec4 getPreviousMax() const { return previousMax; }
    /// Whether the volume stands in the grid for its entity's parent, and segments pass it by.
    bool getIsPartitioningDummy() const { return isPartitioningDummy; }
    void setIsPartitioningDummy(bool val) { isPartitioningDummy = val; }
    /// What is called when the player touches a trigger or interacts with the volume; null for nothing.
    ReflectorPtr getTriggerFunc() const { return triggerFunc; }
    /// Sets the function and makes the volume a trigger; null ends both.
    void setTriggerFunc(ReflectorPtr func);
    /// Sets the function and leaves it open whether the volume is a trigger.
    void setTriggerFuncNoTrigger(ReflectorPtr func) { triggerFunc = func; }
    /// Sets the function and lets the interaction ray find the volume; null ends both.
    void setInteractFunc(ReflectorPtr func);
    /// Sets the function and leaves it open whether the interaction ray finds the volume.
    void setInteractFuncNoTrigger(ReflectorPtr func) { triggerFunc = func; }
    /// Sets the function of a thing that can be picked up: taken by interaction alone, never by touch.
    void setPickupFunc(ReflectorPtr func);
    /// Calls the function with the player's component.
    void interactWithPlayer(Handle<Object> player);

    /// Whether a point lies in the box, give or take the rounding of its place.
    bool boxToPoint(Vec4 point);
    /// The same for a box of given extents about a given place, turned as this one.
    bool boxToPoint(Vec4 point, Vec4 boundingBox, Vec4 boxPos);
    /// Whether a point lies in the box; if so, the nearest place outside of it and how deep the point lies.
    /// @param nonCollidingPoint  the point itself where it lies outside
    /// @param depth              metres; 0 where it lies outside
    bool boxToPointWithInfo(Vec4 point, Vec4 &nonCollidingPoint, float &depth);
    /// Where a segment enters the sphere.
    /// @param direction  whole extent of the segment, not normalised
    RayCollision sphereToLineSegmentWithInfo(Vec4 pos, Vec4 direction);
    /// Where a segment enters the box; one that starts inside has the parameter 0 and no normal.
    /// @param direction  whole extent of the segment, not normalised
    RayCollision boxToLineSegmentWithInfo(Vec4 pos, Vec4 direction);
    /// The point nearest to another one on the line that a bullet is: through the middle along its z axis, hitBox.z long.
    Vec4 closestPointToLineSeg(Vec4 point);
    /// Where two edges come nearest to each other: the middle between their nearest points.
    ///
    /// Each edge is given by its middle, its direction of length 1 and half its length. Parallel edges, and edges whose
    /// lines come nearest beyond their ends, give the first edge's middle.
    Vec4 contactPoint(Vec4 pointOne, Vec4 axisOne, float sizeOne, Vec4 pointTwo, Vec4 axisTwo, float sizeTwo);

private:
    friend class PartitioningGrid;
    friend class RigidCollision;

    /// Where a grid put the volume last.
    struct GridPlace
    {
        Handle<PartitioningGrid> grid;
        VolumeListGrid::Slot slot = VolumeListGrid::NO_SLOT;
        bool isStatic = false;
        bool several = false; ///< it may stand elsewhere too: it was put somewhere before it was taken away
    };

    /// The components that stand beside the volume; looked up again when any object was born or died, or the volume
    /// moved in the tree.
    struct Siblings
    {
        TransformComponent *transform = nullptr;
        PhysicsComponent *physics = nullptr;
        std::uint64_t objectChanges = 0; ///< births and deaths that these take account of
    };

    /// What a test tells of a contact.
    struct Contact
    {
        Vec4 position;
        Vec4 normal; ///< from the second volume to the first
        float penetration;
    };

    TransformComponent *findTransform()
    {
        refreshSiblings();
        return siblings.transform;
    }
    PhysicsComponent *findPhysics()
    {
        refreshSiblings();
        return siblings.physics;
    }
    void refreshSiblings()
    {
        if (siblings.objectChanges != ObjectMap().getChangeCount())
            findSiblings();
    }
    void findSiblings();
    /// The rotation of the transform's orientation, made when that has changed.
    const Matrix4 &rotationOf(const TransformComponent &transform);
    VolumeOutline outline();
    bool alreadyCollided(const Handle<BoundingVolume> &other) const;
    void setOffTrigger(BoundingVolume &other, std::vector<Collision *> &found, std::size_t before);
    void callTriggerFunc(SavedArguments arguments);

    static const DetectCollision *testsOfType(VolumeType type);
    bool neverCollide(Handle<BoundingVolume>, std::vector<Collision *> &) { return false; }
    bool sphereToSphere(Handle<BoundingVolume> other, std::vector<Collision *> &found);
    bool sphereToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found);
    bool boxToSphere(Handle<BoundingVolume> sphere, std::vector<Collision *> &found);
    bool boxToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found);
    bool sphereToLineSegment(Handle<BoundingVolume> line, std::vector<Collision *> &found);
    bool boxToLineSegment(Handle<BoundingVolume> line, std::vector<Collision *> &found);
    bool lineSegmentToSphere(Handle<BoundingVolume> sphere, std::vector<Collision *> &found);
    bool lineSegmentToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found);
    bool containerToBox(Handle<BoundingVolume> box, std::vector<Collision *> &found);
    bool playerToLight(Handle<BoundingVolume> light, std::vector<Collision *> &found);
    bool lightToPlayer(Handle<BoundingVolume> player, std::vector<Collision *> &found);

    Contact sphereContact(const Vec4 &centre, const Vec4 &normal, float penetration) const;
    bool edgeToEdge(BoundingVolume &other, const Vec4 &toCenter, std::vector<Collision *> &found, const Vec4 &axis,
                    float depth, int edgeOne, int edgeTwo);
    bool fillPointToBoxCollision(BoundingVolume &other, const Vec4 &toCenter, std::vector<Collision *> &found,
                                 const Vec4 &axis, float depth, const Vec4 &scale);
    static bool addContact(BoundingVolume &first, BoundingVolume &second, const Contact &contact,
                           std::vector<Collision *> &found);
    static void dropLast(std::vector<Collision *> &found);

    Vec4 hitBox = Vec4(1.f, 1.f, 1.f, 0.f); ///< metres
    Vec4 previousPosition;                  ///< at the last frame step, native space, y 0
    Quaternion previousOrientation;         ///< at the last frame step
    Vec4 previousMin;                       ///< cell coordinates of the rectangle in the grid
    Vec4 previousMax;                       ///< cell coordinates of the rectangle in the grid
    Handle<MapRootEntity> previousMap;      ///< at the last frame step
    ColliderList collisions;                ///< since the last frame step
    VolumeType volumeType = BV_NONE;
    DetectCollision collisionTable[NUM_VOLUMES]; ///< by the other volume's type
    bool trigger = false;
    bool interact = false;
    ReflectorPtr triggerFunc;
    RequestHandle lastRequest = 0;
    bool isPartitioningDummy = false;
    float previousHeight = 0.f; ///< y at the last frame step
    bool typeChanged = true;    ///< since the last frame step
    bool hitBoxChanged = false; ///< since the last frame step: it may reach into cells that do not keep it
    GridPlace gridPlace;
    Siblings siblings;
    Quaternion rotationOrientation; ///< what `rotation` was made from
    Matrix4 rotation;
};
