// RigidCollision: one contact of two bodies, resolved at once and alone.
#pragma once

#include "physics/volumes/Collision.h"

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

class PhysicsComponent;
class PlayerPhysics;

/// A contact point, found by a volume's test.
///
/// Resolving it moves the two bodies apart and changes their velocities along the normal; it turns nothing and knows no
/// friction. The player is not thrown back but slides.
///
/// All contacts of a frame are found before the first one is resolved, and two of them may stop the same body: a floor
/// of two slabs, the corner of a room, a pile. So each counts what earlier ones have moved, or a body would be taken
/// out of its depth twice and thrown. A contact with what nothing moves has the last word.
class RigidCollision : public Collision
{
public:
    RigidCollision() = default;

    /// Resolves what earlier contacts have left of the penetration; passes on when that is nothing.
    void resolve() override;
    /// Notes how the two bodies stand to each other now that the depth has been found, and whether one of them gives
    /// no way.
    void noteDetection();
    /// Moves the bodies out of each other, each by its share of the inverse mass.
    virtual void resolvePenetration();
    /// Gives the bodies their new velocities, unless they move apart already.
    virtual void resolveVelocities();

    /// Used for sorting collisions in the resolver, based on the separating velocities.
    bool operator<(const RigidCollision &rhs) const { return separatingVelocity() < rhs.separatingVelocity(); }
    /// Used for sorting collisions in the resolver, based on the separating velocities.
    bool operator>(const RigidCollision &rhs) const { return separatingVelocity() > rhs.separatingVelocity(); }

    /// Speed at which the bodies move apart along the normal, metres a second; a missing body stands still.
    float separatingVelocity() const;

    Vec4 contactPos;              ///< native space, metres
    float restitution = 0.f;      ///< product of both bodies' restitution
    Vec4 contactNormal;           ///< from the second body towards the first
    float penetration = 0.f;      ///< depth along the normal, metres
    Matrix4 worldToContact;       ///< rows: the normal and two tangents
    Matrix4 contactToWorld;       ///< columns: the normal and two tangents
    Vec4 impulse;                 ///< contact coordinates until it is known, then native space
    Vec4 relPosition[2];          ///< contactPos minus each body's position
    Vec4 contactVelocity;         ///< of the first body against the second, contact coordinates
    float linearMovement[2] = {}; ///< change of place along the normal, metres
    float angularMovement[2] = {};

private:
    PhysicsComponent *findBody(int index) const;
    Vec4 wayBetween() const;
    void bringPenetrationUpToDate();
    void generateContactMatrices();
    void calculateRelPositions();
    void setContactVelocity();
    void calculateImpulse();
    Vec4 alongSurface(const Vec4 &velocity) const;
    void tellPlayers() const;
    static void tellPlayer(PlayerPhysics &player, const Vec4 &normal, const PhysicsComponent *other);

    Vec4 foundApart; ///< from the second body to the first as the depth was found, metres
};
