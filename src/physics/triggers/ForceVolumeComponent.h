// ForceVolumeComponent: a room full of wind.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Quaternion.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <vector>

class BoundingVolume;
class ForceVolumeComponent;
class PhysicsComponent;
class RigidBody;

/// What a force volume knows of one object that it pushes.
struct ProjectileInfo
{
    Handle<BoundingVolume> hBoundingVolume;
    bool inVolume = false;               ///< in this frame; one that has left loses the volume's spin first
    float originalDamping = 1.f;         ///< of the body, as the volume found it, velocity kept per second
    Vec4 force;                          ///< of this frame, newtons
    Vec4 angularVelocity;                ///< that the body has from this volume, radians a second
    float ownSpin = 0.f;                 ///< of the body, as the volume found it, radians a second
    bool damped = false;                 ///< this volume, and no other one, has changed the damping
    float givenDamping = 1.f;            ///< what it has been changed to
    Handle<ForceVolumeComponent> damper; ///< the other one that has changed it; invalid for none
};

/// Pushes every body whose middle is inside the volume beside it, under the component key "dummy".
///
/// That key's manager runs right before bodies move, so that a force acts in the frame in which it is given. The volume
/// is the box, or ball, of the "boundingVolume" beside it, of a type that stops nobody. Balls, boxes and the player are
/// pushed alike, whatever touches what; walls, doors and shadows are not.
///
///     kaVel.addComponent(shaft, 'boundingVolume', 'BoundingVolume', hitBox=kaVel.Vec4(2, 4, 2, 0),
///                        volumeType='BV_NONE', isPartitioningDummy=True)
///     kaVel.addComponent(shaft, 'dummy', 'ForceVolumeComponent', forceMagnitude=30.0,
///                        forceDirection=kaVel.Vec4(0, 1, 0, 0))
///
/// The force is whole up to `maxForceOffset` and falls off smoothly to nothing at the volume's far end. Gravity is a
/// force too, of 20 N on every body, so that an upward force above 20 N lifts any mass to the height where it is down
/// to 20 N. There it hovers: the damping inside takes the bobbing out of it. Overlapping volumes add their forces; the
/// damping is that of the volume that the body entered first.
class ForceVolumeComponent : public SimpleComponent
{
    KV_REFLECTED(ForceVolumeComponent)
public:
    typedef std::vector<ProjectileInfo> ProjectileList;

    ForceVolumeComponent() = default;

    /// Says in the log where the volume cannot work: under a key that nothing runs, or with a force without direction.
    void onLoadComplete() override;
    /// Gives back what it has changed on the bodies inside.
    void onMurder() override;
    /// Draws the volume, arrows of its force and of what it does to each body, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    /// Pushes what is inside, and lets go of what has left or died.
    void doFrame() override;

    /// Whether bodies that come in are taken; those inside stay taken until they leave.
    bool getAddVolumes() const { return addVolumes; }
    void setAddVolumes(bool val) { addVolumes = val; }
    /// The whole force on each body, newtons; below 0 it acts against its direction.
    float getForceMagnitude() const { return forceMagnitude; }
    void setForceMagnitude(float val);
    /// What a body's damping, the part of its velocity that is left after a second, is multiplied by inside.
    ///
    /// 1 changes nothing, 0 lets nothing move; the product counts up to 1. A body gets its own damping back when it
    /// leaves, unless somebody else has set it meanwhile.
    float getDampingMultiplier() const { return dampingMultiplier; }
    void setDampingMultiplier(float val);
    /// Direction of the force, in the volume's own axes before forceOrientation; its length makes no difference.
    Vec4 getForceDirection() const { return forceDirection; }
    void setForceDirection(Vec4 val);
    /// How far the force is whole: from the volume's middle along the force, metres; below 0 for before the middle.
    ///
    /// From there on it falls off to the volume's far end; beyond that end it is whole in the whole volume. In a shaft
    /// 4 m high that blows upwards 0 lets the force fall off over the upper half, 1 over the last metre, and 2 throws
    /// out what comes in.
    float getMaxForceOffset() const { return maxForceOffset; }
    void setMaxForceOffset(float val);
    /// How fast rigid bodies come to spin about the line of the force, radians a second; the player never does.
    ///
    /// As the force falls off so does the spin, and outside a body loses what it has got of it. Half of them spin the
    /// other way.
    float getMaxAngularVelocity() const { return maxAngularVelocity; }
    void setMaxAngularVelocity(float val);
    /// Colour of the volume in debug drawing.
    Vec4 getForceDebugColor() const { return forceDebugColor; }
    void setForceDebugColor(Vec4 val) { forceDebugColor = val; }
    /// Turn of the force's direction in the volume's own axes.
    Quaternion getForceOrientation() const { return forceOrientation; }
    void setForceOrientation(Quaternion val);

    /// Count of the bodies that the volume pushes, or lets go of.
    int getProjectileCount() const { return static_cast<int>(projectiles.size()); }

private:
    /// The volume and its force in this frame, native space.
    struct Field
    {
        Vec4 centre;
        Matrix4 rotation;
        Vec4 half;       ///< own axes, metres
        bool isBall;     ///< of radius half.x
        Vec4 force;      ///< where it is whole, newtons
        Vec4 direction;  ///< of the force, length 1; 0 for none
        float reach;     ///< from the centre to the far end, metres
        float wholeUpTo; ///< from the centre, metres

        Vec4 local(const Vec4 &point) const;
        bool contains(const Vec4 &point) const;
        float strengthAt(const Vec4 &point) const;
    };

    bool makeField(Field &field);
    void takeInsiders(const Field &field);
    void take(const Handle<BoundingVolume> &volume);
    bool push(ProjectileInfo &info, const Field &field, Seconds seconds);
    bool letGo(ProjectileInfo &info, Seconds seconds);
    void letGoOfAll();
    void spin(ProjectileInfo &info, RigidBody &body, const Vec4 &axis, float part, Seconds seconds) const;

    void damp(ProjectileInfo &info, PhysicsComponent &body) const;
    static void undamp(ProjectileInfo &info, PhysicsComponent &body);
    bool isDampedElsewhere(ProjectileInfo &info) const;
    bool damps(const Handle<BoundingVolume> &volume) const;

    bool addVolumes = true;
    float forceMagnitude = 30.f;                       ///< newtons: half as much again as gravity
    float dampingMultiplier = 0.1f;                    ///< bobs a few times before it hovers
    Vec4 forceDirection = Vec4(0.f, 1.f, 0.f, 0.f);    ///< own axes
    float maxForceOffset = 0.f;                        ///< metres from the middle
    float maxAngularVelocity = 0.f;                    ///< radians a second
    Vec4 forceDebugColor = Vec4(0.3f, 0.8f, 1.f, 1.f); ///< light blue, as air
    Quaternion forceOrientation = Quaternion(1.f, 0.f, 0.f, 0.f);
    ProjectileList projectiles; ///< ascending by volume
};
