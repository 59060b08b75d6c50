// BoundingVolume: an object's shape, its place in its map's grid, and what happens to who touches it.
#pragma once

#include "physics/grid/GridPlace.h"
#include "physics/volumes/PlacedShape.h"

#include "engine/entities/ObjectGroupComponent.h"
#include "engine/systems/RequestHandle.h"
#include "engine/entities/SimpleComponent.h"

#include "foundation/Vector.h"
#include "object/tree/ReflectorPtr.h"

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
/// what is only looked at and pointed at. Bodies are tested in the order of their making: a stack is built from the
/// bottom up.
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
    /// A test of two volumes: appends the contacts that they have, and tells whether they touch.
    typedef bool (*DetectCollision)(BoundingVolume &one, BoundingVolume &other, std::vector<Collision *> &found);
    typedef std::vector<Handle<BoundingVolume>> ColliderList;

    BoundingVolume();

    /// Says in the log where a designer gave a volume without an extent.
    void onLoadComplete() override;
    /// Draws the shape in the colour of its type, while the debug switches ask for it: the box, a sphere's three great
    /// circles, a bullet's line, and green ticks in the corners of what is a trigger or can be used.
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

    /// The transform beside the volume; null for none.
    ///
    /// This and `findPhysics` are kept: a component that is taken to another entity is missed, or found, from the next
    /// birth or death of any object on.
    TransformComponent *findTransform()
    {
        refreshSiblings();
        return siblings.transform;
    }
    /// The body beside the volume; null for none.
    PhysicsComponent *findPhysics()
    {
        refreshSiblings();
        return siblings.physics;
    }

    /// The shape as it stands at the transform beside the volume; good until that turns.
    PlacedShape shapeAt(const TransformComponent &transform);

    /// What the volume is to others.
    VolumeType getVolumeType() const { return volumeType; }
    /// Chooses what the volume is to others; BV_PARTICLE leaves the tests as they are.
    ///
    /// From its next frame step on the volume stands among the grid's static or moving ones as the type wants it.
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
    void setHitBox(Vec4 val);
    /// The volumes that this one has collided with since its last frame step.
    const ColliderList &getColliders() const { return collisions; }
    /// The last visibility request that saw the volume; 0 for none.
    RequestHandle getLastRequest() const { return lastRequest; }
    void setLastRequest(RequestHandle val) { lastRequest = val; }
    /// Near corner of the rectangle in the grid, cell coordinates.
    Vec4 getPreviousMin() const { return gridPlace.getMin(); }
    /// Far corner of the rectangle in the grid, cell coordinates.
    Vec4 getPreviousMax() const { return gridPlace.getMax(); }
    /// Whether the volume stands in the grid for its entity's parent, and segments pass it by.
    bool getIsPartitioningDummy() const { return isPartitioningDummy; }
    void setIsPartitioningDummy(bool val) { isPartitioningDummy = val; }
    /// Whether light and looks pass through what stops bodies, as through glass or bars.
    bool getSeeThrough() const { return seeThrough; }
    void setSeeThrough(bool val) { seeThrough = val; }
    /// What is called when the player touches a trigger or interacts with the volume; null for nothing.
    ReflectorPtr getTriggerFunc() const { return triggerFunc; }
    /// Sets the function and makes the volume a trigger; null ends both.
    ///
    /// It is called in every frame of a touch, with the volume's entity and the player's body. A bound method that
    /// takes fewer arguments gets the last of them.
    void setTriggerFunc(ReflectorPtr func);
    /// Sets the function and leaves it open whether the volume is a trigger.
    void setTriggerFuncNoTrigger(ReflectorPtr func) { triggerFunc = func; }
    /// Sets the function and lets the interaction ray find the volume; null ends both.
    void setInteractFunc(ReflectorPtr func);
    /// Sets the function and leaves it open whether the interaction ray finds the volume.
    void setInteractFuncNoTrigger(ReflectorPtr func) { triggerFunc = func; }
    /// Sets the function of a thing that can be picked up: taken by interaction alone, never by touch.
    void setPickupFunc(ReflectorPtr func);
    /// Calls the function with the player's component; a bound method that takes two gets the volume's entity first.
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
    /// The point nearest to another one on the line that a bullet is: through the middle along its z axis, hitBox.z
    /// long.
    Vec4 closestPointToLineSeg(Vec4 point);
    /// Where two edges come nearest to each other: the middle between their nearest points.
    ///
    /// Each edge is given by its middle, its direction of length 1 and half its length. Parallel edges, and edges whose
    /// lines come nearest beyond their ends, give the first edge's middle.
    Vec4 contactPoint(Vec4 pointOne, Vec4 axisOne, float sizeOne, Vec4 pointTwo, Vec4 axisTwo, float sizeTwo);

    // What a level's scripts set as the function of a trigger or of an interaction.

    /// Slams the open doors of a group.
    ///
    /// @param group   members have a DoorPhysics or SlidingDoorPhysics; one without is named in the log, once
    /// @param player  whom the doors are told of: a body, a player's component or an entity; may be invalid
    void slamDoors(ObjectGroupComponent::Group group, Handle<Object> player);
    /// Lets the lights of a group swell and fade, from their full strength down to nothing and back.
    ///
    /// A call lasts for one beat, and calls during a beat for the next one: the lights of a trigger that calls this in
    /// every frame pulse while the player touches it, and end at their full strength.
    /// @param group  members have a light; one without is named in the log, once
    /// @param pulse  beats a second; 0 or less ends the pulsing at once
    void pulseLights(ObjectGroupComponent::Group group, float pulse);
    /// Calls `followPlayer` of each member of a group that has such a behaviour; one without is named in the log, once.
    void followPlayer(ObjectGroupComponent::Group group);
    /// Switches the light on or off that stands at "lightSwitchLight/graphics2" below the volume's entity.
    ///
    /// Counts the use in the property `interactCounter` of the component under that key beside the volume, where a
    /// script has put one there: any component of its own with that property.
    void lightSwitchInteract();
    /// Opens the door that is the parent of an entity, for a body or player; the two may come in either order.
    ///
    /// Set as it is, on a trigger or for interaction, it is called with the volume's own entity.
    /// A door is an entity whose "physics" is a DoorPhysics or SlidingDoorPhysics; none is named in the log, once.
    void openParentDoor(Handle<Object> phys, Handle<Object> hEntity);
    /// Closes the door that is the parent of an entity; see `openParentDoor`.
    void closeParentDoor(Handle<Object> phys, Handle<Object> hEntity);
    /// Always false: pairs are tested by `colliding`.
    bool checkOverlaps(Handle<BoundingVolume> other) { return false; }

private:
    friend class PartitioningGrid;

    /// What stands around the volume in the tree; looked up again when any object was born or died, or the volume moved
    /// in the tree.
    struct Siblings
    {
        TransformComponent *transform = nullptr;
        PhysicsComponent *physics = nullptr;
        Handle<MapRootEntity> map;       ///< directly above the entity; invalid where that is none
        std::uint64_t objectChanges = 0; ///< births and deaths that these take account of
    };

    void refreshSiblings()
    {
        if (siblings.objectChanges != ObjectMap().getChangeCount())
            findSiblings();
    }
    void findSiblings();
    Handle<MapRootEntity> mapOf(TransformComponent &transform) const;
    const Matrix4 &rotationOf(const TransformComponent &transform);
    VolumeMeasure measureAt(const TransformComponent &transform);
    VolumeOutline outline();
    bool alreadyCollided(const Handle<BoundingVolume> &other) const;
    void setOffTrigger(BoundingVolume &other, std::vector<Collision *> &found, std::size_t before);
    void callTriggerFunc(const SavedArguments &entityAndToucher, std::size_t offered);

    Vec4 hitBox = Vec4(1.f, 1.f, 1.f, 0.f); ///< metres
    ColliderList collisions;                ///< since the last frame step
    VolumeType volumeType = BV_NONE;
    const DetectCollision *collisionTable; ///< by the other volume's type
    bool trigger = false;
    bool interact = false;
    ReflectorPtr triggerFunc;
    RequestHandle lastRequest = 0;
    bool isPartitioningDummy = false;
    bool seeThrough = false;
    GridPlace gridPlace;
    Siblings siblings;
    KeptRotation rotation; ///< of the transform's orientation
};
