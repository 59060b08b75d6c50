// PhysicsComponent: a point mass that forces move.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <cstdint>

class BoundingVolume;
class Collision;
class TransformComponent;

/// A mass without orientation, under the component key "physics". Its manager moves it once a frame.
///
/// Metres, seconds, kilograms, in the space of the entity's transform. An object needs a bounding volume beside it to
/// be moved at all.
class PhysicsComponent : public SimpleComponent
{
    KV_REFLECTED(PhysicsComponent)
public:
    PhysicsComponent() = default;

    /// Finds the transform that the mass moves.
    void onLoadComplete() override;
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    /// Moves the mass by the frame time of the level's timer "master".
    void doFrame() override;
    /// Update the position and velocity for the object.
    ///
    /// The position first, by the velocity so far, and never below height 0; then the velocity by the forces of this
    /// frame, which are forgotten.
    virtual void doFrame(Seconds frameTime);
    /// Moves the mass by a time of the caller's choice, seconds.
    void integrate(double frameTime) { doFrame(frameTime); }

    /// Finds the transform that the mass moves, the one beside it.
    void setTransformComponent();
    /// The transform that the mass moves.
    Handle<TransformComponent> getTransformComponent() const { return transComp; }

    /// Adds a force to this frame's, newtons.
    void addForce(Vec4 force) { netForce += force; }
    /// Forgets the forces of this frame.
    virtual void clearAccumulator() { netForce = Vec4(); }

    /// Metres a second.
    Vec4 getVelocity() const { return velocity; }
    void setVelocity(Vec4 val) { velocity = val; }
    void setVelocity(float x, float y, float z) { velocity = Vec4(x, y, z, 0.f); }
    /// Acceleration that acts in every frame, metres a second squared.
    Vec4 getAcceleration() const { return acceleration; }
    void setAcceleration(Vec4 val) { acceleration = val; }
    void setAcceleration(float x, float y, float z) { acceleration = Vec4(x, y, z, 0.f); }
    /// What acts in this frame, newtons.
    Vec4 getNetForce() const { return netForce; }
    void setNetForce(Vec4 val) { netForce = val; }
    /// One over the mass; 0 for what no force moves.
    float getInverseMass() const { return inverseMass; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setInverseMass(float val);
    /// Kilograms; infinite for what no force moves.
    float getMass() const { return 1.f / inverseMass; }
    /// Sets the mass; one that is not above 0 is logged as an error and changes nothing.
    void setMass(float m);
    /// Part of the velocity that is left after a second, 0..1.
    float getDamping() const { return damping; }
    /// Sets it; what lies outside of 0..1 is logged as an error and changes nothing.
    void setDamping(float val);
    /// Metres.
    float getRadius() const { return radius; }
    void setRadius(float val) { radius = val; }
    /// Change of the velocity by the last step, damped: what a resting contact takes out of a bounce.
    Vec4 getAccLastFrame() const { return accLastFrame; }
    void setAccLastFrame(Vec4 val) { accLastFrame = val; }
    /// Part of the closing speed that a contact gives back, 0..1; a pair's is the product of the two.
    float getRestitution() const { return restitution; }
    /// Sets it; what lies outside of 0..1 is logged as an error and changes nothing.
    void setRestitution(float val);

    /// Told, on the body of the current player, that a shadow's body stands in the level in this frame.
    virtual void addShadow(Handle<PhysicsComponent> shadow) {}
    /// Told, on the body of a player, of the contact with a trigger, which has no physical effect.
    virtual void takeContact(const Collision &contact, const BoundingVolume &trigger) {}

    /// The volume beside the mass; null for none.
    BoundingVolume *findVolume()
    {
        if (objectChanges != ObjectMap().getChangeCount())
            lookUpVolume();
        return volume;
    }

    // What a level's scripts set as the function of a trigger or of an interaction: `phys` is the body that touched it,
    // or the component of the player who used it.

    /// Fires the spawner under "trigger" beside this body.
    void useObjectSpawner(Handle<Object> phys);
    /// Opens the door that is the parent of this body's entity; one that is no door is named in the log, once.
    void openParentDoor(Handle<Object> phys);
    /// Closes the door that is the parent of this body's entity; see `openParentDoor`.
    void closeParentDoor(Handle<Object> phys);
    /// Plays the sound that bears the name of this body's entity, once for each trigger.
    ///
    /// Nothing is recorded: a map that is loaded again plays it again.
    void playSound(Handle<Object> phys);
    /// Ends the game with the credits when the player arrives, once; again where the map is loaded again.
    void hitCreditsTrigger(Handle<Object> phys);
    /// Replaces the level by the level "Credits"; the game goes on, and the log says so, where there is none.
    void splashCredits();

protected:
    /// Whether a property may take a value within limits; if not, the log says so.
    bool isWithin(const char *property, float val, float least, float most) const;
    /// Ends all motion of a body whose numbers have run out of range, and says so once.
    virtual void stop();
    /// The acceleration of this frame.
    Vec4 totalAcceleration() const { return acceleration + inverseMass * netForce; }
    /// Part that is left after some seconds of what keeps a given part a second.
    static float keptOver(float keptPerSecond, Seconds time);
    TransformComponent *findTransform() const;

    Vec4 velocity;           ///< metres a second
    Vec4 acceleration;       ///< constant part, metres a second squared
    Vec4 netForce;           ///< of this frame, newtons
    float inverseMass = 1.f; ///< 1 / kilograms
    float damping = 1.f;     ///< velocity kept per second
    float radius = 0.5f;     ///< metres
    Vec4 accLastFrame;       ///< metres a second
    Handle<TransformComponent> transComp;
    float restitution = 0.f; ///< 0..1

private:
    void lookUpVolume();

    bool stopTold = false;            ///< the log knows that the body was stopped
    BoundingVolume *volume = nullptr; ///< beside the mass, as long as no object is born or dies
    std::uint64_t objectChanges = 0;  ///< births and deaths that `volume` takes account of
};
