// SlidingDoorPhysics: a door whose leaf slides aside.
#pragma once

#include "physics/doors/LeafDrive.h"
#include "physics/doors/RepeatedRequest.h"
#include "physics/bodies/RigidBody.h"

#include <cstdint>

class ParentFollowerComponent;
class TransformOffsetComponent;

/// A door's leaf that slides out of its doorway, under the component key "physics".
///
/// The entity's transform is the middle of the closed leaf, its volume a box about that, of the type BV_DOOR. The leaf
/// slides along the line of `openVelocity`, as far as it is wide along that line, gathering speed and easing out, and
/// stops at both ends exactly. What it runs into it pushes, but for a player, and for a crate that has nowhere to go, it
/// waits. Where a "parentFollower" stands beside it, the leaf slides in front of its parent: the follower's offset
/// moves, and the follower the transform.
///
///     kaVel.addComponent(leaf, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(1.2, 2.1, 0.08, 0),
///                        volumeType='BV_DOOR')
///     door = kaVel.addComponent(leaf, 'physics', 'SlidingDoorPhysics', openVelocity=kaVel.Vec4(1.2, 0, 0, 0),
///                               direction='Left')
class SlidingDoorPhysics : public RigidBody
{
    KV_REFLECTED(SlidingDoorPhysics)
public:
    /// To which side the leaf opens, for somebody who looks along its z axis.
    enum DIRECTION
    {
        Left = 0, ///< against openVelocity
        Right = 1 ///< along openVelocity
    };

    SlidingDoorPhysics() { setInverseMass(0.f); }

    /// Takes the leaf's place as its closed one, and puts it aside if it is open.
    void onLoadComplete() override;
    using RigidBody::doFrame;
    /// Slides the leaf on.
    void doFrame(Seconds frameTime) override;

    /// Opens the door; does nothing to one that is open or opening.
    ///
    /// A locked door stays as it is and asks for the sound "DoorLocked", each time; else "DoorOpen" is asked for.
    /// @param player  who opens it; makes no difference
    /// @param bottom  the leaf is the second half of a two-part door, as the lower half of a hatch, and slides the
    ///                other way: both halves have the same settings. A leaf on its way keeps to its half until it is
    ///                closed.
    void openDoor(Handle<Object> player, bool bottom);
    /// Closes the door, locked or not, and asks for the sound "DoorOpen".
    /// @param bottom  as in `openDoor`; a leaf comes back the way it went
    void closeDoor(Handle<Object> player, bool bottom);
    /// Opens a closed door and closes an open one: what a volume calls that a player interacts with.
    void interact(Handle<Object> player);

    /// Puts the leaf to its open or closed end, at once and without a sound.
    void setOpen(bool val);
    /// Whether the door is open or opening.
    bool getOpen() const { return open; }
    /// How far the leaf stands open, from 0, closed, to 1 at its own width.
    float getOpenness();
    /// The middle of the leaf when it is closed, in the transform's space.
    Vec4 getClosedMiddle() const;
    DIRECTION getDirection() const { return direction; }
    /// Sets to which side the leaf opens.
    void setDirection(DIRECTION val);
    /// The line along which the leaf slides to the right, along its own axes; its length is the speed, metres a second.
    Vec4 getOpenVelocity() const { return openVelocity; }
    /// Sets line and speed; (0, 0, 0, 0) slides nowhere, and the log says so when the leaf is loaded.
    void setOpenVelocity(Vec4 vel);
    /// Whether the door refuses to be opened.
    bool getLocked() const { return locked; }
    /// Locks or unlocks the door, and leaves the leaf where it is.
    ///
    /// Not recorded: a script that unlocks it for good says so, `kaVel.persist(door, 'setLocked', False)`.
    void setLocked(bool val) { locked = val; }
    /// Whether somebody asks in this frame again who asked in the frame before, or has in this one; for triggers, which
    /// ask in every frame of a touch.
    bool isAskedAgain(std::int64_t frame) { return asked.isRepeatedIn(frame); }
    /// How far the leaf is from closed, metres.
    float getCurrentOffset() const { return currentOffset; }
    /// Puts the leaf that far from closed, metres, at once; below 0 counts as 0.
    void setCurrentOffset(float val);
    /// Whether the leaf is the second half of a two-part door.
    bool getBottom() const { return bottom; }
    /// Makes the leaf the first or the second half; one that stands open changes over to that half's open place.
    void setBottom(bool val);

private:
    Vec4 line() const;
    float travel();
    Vec4 slideTo(float offset) const;
    Vec4 getPlace() const;
    void setPlace(const Vec4 &place);
    ParentFollowerComponent *findFollower() const;
    TransformOffsetComponent *findTurningFollower() const;

    void startSlide();
    float nextOffset(float end, float seconds);
    void stand();
    float clearOfNeighbours(float offset);
    void recordState();

    bool open = false;
    DIRECTION direction = Right;
    Vec4 openVelocity = Vec4(1.2f, 0.f, 0.f, 0.f); ///< own axes, metres a second
    bool locked = false;
    float currentOffset = 0.f; ///< metres from closed

    bool bottom = false;
    bool sliding = false;    ///< on its way to an end
    LeafDrive drive;         ///< of that way, metres
    Vec4 closedPlace;        ///< of the transform, or the follower's offset
    Vec4 standsAt;           ///< as the door left either
    Quaternion standsTurned; ///< the leaf's orientation at that moment
    RepeatedRequest asked;   ///< by triggers, of a locked door
};
