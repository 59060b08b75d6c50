// DoorPhysics: a door that swings on its hinge.
#pragma once

#include "physics/doors/LeafDrive.h"
#include "physics/doors/RepeatedRequest.h"
#include "physics/bodies/RigidBody.h"

#include <cstdint>

/// A door's leaf that turns about a hinge, under the component key "physics".
///
/// The entity's transform is the middle of the leaf as it was placed, its volume a box about that, of the type BV_DOOR,
/// which walls let pass; the hinge stands `pivotPosition` away from the middle. Angles are radians about the pivot, 0
/// is closed, and nothing takes the leaf past 90 degrees either way. Place and orientation follow from the angle and
/// the pose in which the leaf was placed, so that nothing drifts however often it swings; a script that moves the leaf
/// takes the hinge along.
///
///     leaf = kaVel.make('Entity', parent=map, name='cellarDoor')
///     kaVel.addComponent(leaf, 'transform', 'TransformComponent', position=kaVel.Vec4(0.45, 1.05, 4, 1))
///     volume = kaVel.addComponent(leaf, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(0.9, 2.1, 0.08, 0),
///                                 volumeType='BV_DOOR')
///     door = kaVel.addComponent(leaf, 'physics', 'DoorPhysics', pivotPosition=kaVel.Vec4(-0.45, 0, 0, 0))
///     volume.setInteractFunc(door.interact)
///
/// It opens away from whoever opens it, gathers speed as something heavy does and eases out; it falls shut at
/// `closingVelocity`. What it runs into it pushes, but for a player, and for a crate that has nowhere to go, it waits. A
/// torque of a script turns it too: it then stays where it comes to rest. Contacts do not move it, whatever mass it is
/// given. A "parentFollower" beside it would place the leaf in every frame too, and the door not turn: a door of
/// something that moves is a SlidingDoorPhysics.
class DoorPhysics : public RigidBody
{
    KV_REFLECTED(DoorPhysics)
public:
    DoorPhysics() { setInverseMass(0.f); }

    /// Takes the transform's pose as the one in which the leaf was placed, and stands the leaf at its angle.
    void onLoadComplete() override;
    using RigidBody::doFrame;
    /// Turns the leaf by the torques of this frame, its own swing among them, and stops it at its limits.
    void doFrame(Seconds frameTime) override;

    /// Opens the door away from a player; does nothing to one that is open or opening.
    ///
    /// A locked door stays as it is and asks for the sound "DoorLocked", each time; else "DoorOpen" is asked for.
    /// @param other  the player's entity or any of its components; without one, or without its transform, the door
    ///               opens towards positive angles
    void openDoor(Handle<Object> other);
    /// Closes the door, locked or not, and asks for the sound "DoorOpen".
    /// @param other  who closes it; makes no difference
    void closeDoor(Handle<Object> other);
    /// Closes the door with a bang: this once at 8 radians a second, where its own closingVelocity is not higher.
    /// @param other  as for `closeDoor`
    void slamDoor(Handle<Object> other);
    /// Opens a closed door and closes an open one: what a volume calls that a player interacts with.
    void interact(Handle<Object> player);

    /// Stands the door open or closed, at once and without a sound: how a reloaded map gets back the doors it had.
    ///
    /// Opens it to the side on which it is ajar, a closed one towards positive angles. Before the load is complete it
    /// says how the door is to stand then, in any order with the angles; false leaves it at its angle.
    void setOpen(bool val);
    /// Whether the door is open or opening.
    bool getOpen() const { return opening; }
    /// How far the leaf stands open, from 0, closed, to 1 at 90 degrees.
    float getOpenness() const;
    /// The middle of the leaf when it is closed, in the transform's space.
    Vec4 getClosedMiddle() const;
    /// How the leaf is turned when it is closed.
    Quaternion getClosedTurn() const;
    /// Whether the door refuses to be opened.
    bool getLocked() const { return locked; }
    /// Locks or unlocks the door, and leaves the leaf where it is.
    ///
    /// Not recorded: a script that unlocks it for good says so, `kaVel.persist(door, 'setLocked', False)`.
    void setLocked(bool val) { locked = val; }
    /// Whether somebody asks in this frame again who asked in the frame before, or has in this one; for triggers, which
    /// ask in every frame of a touch.
    bool isAskedAgain(std::int64_t frame) { return asked.isRepeatedIn(frame); }

    /// The hinge's axis; its sign alone counts, (0, 1, 0, 0) or (0, -1, 0, 0): which way positive angles go.
    Vec4 getPivot() const { return pivot; }
    /// Sets the hinge's axis by its y, as a door only turns about the vertical; with a y of 0 it does not turn.
    ///
    /// A leaf that stands open goes to where its angle has it now.
    void setPivot(Vec4 val);
    /// Where the hinge is: from the leaf's middle, along the leaf's own axes, metres.
    Vec4 getPivotPosition() const { return pivotPosition; }
    /// Sets the hinge's place; (0, 0, 0, 0), the default, turns the leaf about its middle.
    ///
    /// A leaf that stands open goes to where its angle has it now.
    void setPivotPosition(Vec4 val);
    /// The leaf's angle, radians from closed.
    float getPrevAngle() const { return prevAngle; }
    /// Stands the leaf at an angle at once, radians from closed, at most 90 degrees either way.
    void setPrevAngle(float val);
    /// Turn from the pose in which the leaf was placed to its closed one, radians.
    float getClosedAngle() const { return closedAngle; }
    /// Tells where closed is for a door that is placed ajar; the leaf stays where it stands, its angle counts anew.
    void setClosedAngle(float val);
    /// How fast the door falls shut at most, radians a second.
    float getClosingVelocity() const { return closingVelocity; }
    /// Sets how fast the door falls shut, radians a second; 2 is a push, 8 a slam. Anything but a number above 0 is
    /// logged as an error and changes nothing.
    void setClosingVelocity(float val);

private:
    /// The leaf in space.
    struct Pose
    {
        Vec4 position;
        Quaternion orientation;
    };

    void followMove();
    void rememberPlacement(const TransformComponent &transform);
    Pose poseAt(float turn) const;
    Pose closedPose() const;
    void stand();
    void placeLeaf();
    void standAt(float angle);
    float openAngle() const;

    float awayFrom(const Handle<Object> &player) const;
    void startSwing(float angle);
    void endSwing();
    void recordState();
    Vec4 swingTorque(float seconds);
    void turnByTorques(float seconds);
    float stopped(float angle, bool driven);
    bool reaches(float angle) const;
    float clearOfNeighbours(float angle);

    float offsetAngle = 0.f;               ///< turn of the transform from the placed pose, radians
    Vec4 pivot = Vec4(0.f, 1.f, 0.f, 0.f); ///< axis of the angles
    Vec4 pivotPosition;                    ///< from the middle, own axes, metres
    float prevAngle = 0.f;                 ///< radians from closed
    float closedAngle = 0.f;               ///< from the placed pose, radians
    float targetAngle = 0.f;               ///< where the swing ends, radians from closed
    float closingVelocity = 2.f;           ///< radians a second: shut in a second
    bool opening = false;                  ///< or open
    float closeDirection = 0.f;            ///< sign of the turn by which the door closes
    bool locked = false;

    bool angleGiven = false; ///< before the load was complete
    bool swinging = false;   ///< on its own way to targetAngle
    bool slamming = false;   ///< in that swing
    LeafDrive drive;         ///< of that swing, radians
    Pose placed;             ///< the leaf when offsetAngle is 0
    Pose stands;             ///< as the door left the transform
    RepeatedRequest asked;   ///< by triggers, of a locked door
};
