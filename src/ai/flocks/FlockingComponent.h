// FlockingComponent: a group of boids that make for one target together.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/Allocators.h"
#include "foundation/KVString.h"
#include "foundation/Vector.h"
#include "object/tree/ReflectorPtr.h"

#include <cstddef>
#include <vector>

class Entity;
class TransformComponent;
class Variant;

/// What flocks make their boids under.
extern AllocationCategory FlockAllocation;

/// Leads boids towards a target that they share, and keeps neighbours together, under the component key "flocking".
///
/// Metres, seconds. The boids are entities below the flock's own, built by the pattern `Boid`; each is led through its
/// "steering". The flock is at work only while it is more than 55 m from the map's entity "Player": near the player its
/// boids are left to their own minds. A boid without "steering" is passed over, one that has died falls out. What is to
/// fly in the player's own room, as moths do, is a `SwarmComponent`.
class FlockingComponent : public SimpleComponent
{
    KV_REFLECTED(FlockingComponent)
public:
    typedef std::vector<Handle<Entity>> BoidContainer;
    typedef std::vector<bool> FlagCont;

    /// Cosine of the angle to either side of a boid's heading within which it sees neighbours: 50 degrees.
    static constexpr float NEIGHBORHOOD_ANGLE = 0.64278764f;
    /// The most boids of a flock: each looks at all of them in every frame.
    static constexpr std::size_t MOST_BOIDS = 512;

    /// What the boids make for.
    struct FlockTarget
    {
        Vec4 pos;
        Vec4 vel;        ///< metres a second
        float fTime = 0; ///< seconds since it was set
    };

    FlockingComponent() = default;

    /// Builds the boids.
    void onLoadComplete() override;
    /// Draws each boid's neighbourhood, lines to those in it and one to the target, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    /// Leads the boids.
    void doFrame() override;

    /// Sets what the boids make for; its time begins anew. Places and velocities that are no numbers are refused.
    void setFlockTarget(Vec4 position, Vec4 velocity);
    /// Whether the flock's own place is within targetRadius of its target.
    bool atFlockTarget();
    /// Calls the flock home, or sends it to its target again; for whoever hands messages on.
    /// @param val  whether the boids make for the flock's own place instead of the target
    void handleFlockMessage(const ReflectorPtr &messageType, bool val);

    /// Builds as many boids as the population says; more than MOST_BOIDS are refused, with an error.
    void populateFlock();
    /// Builds one boid below the flock's entity; an invalid handle where the pattern fails.
    Handle<Entity> spawnBoid(String name);
    /// Takes an entity that there is already into the flock; nothing for one that is in it, and for a full flock.
    void addBoid(Handle<Entity> boid);

    /// Marks a boid's neighbours: within neighborhoodSize of it, and before it.
    void prepNeighborhood(Handle<Entity> boid);
    /// The mean place of the marked boids; zero for none.
    Vec4 getNeighborhoodCenter();
    /// The mean velocity of the marked boids; zero for none.
    Vec4 getNeighborhoodAvgVel();
    /// Has a boid pursue the target and keep with its neighbours.
    void cohesion(Handle<Entity> boid);

    /// The boids in the order of their arrival.
    BoidContainer getBoids() const { return boids; }
    /// The number of the next boid that is built.
    int getBoidID() const { return boidID; }
    void setBoidID(int val) { boidID = val; }
    /// Whether the boids make for the flock's own place instead of the target.
    bool getOverrideTargetPos() const { return overrideTargetPos; }
    void setOverrideTargetPos(bool val) { overrideTargetPos = val; }
    /// How many boids `populateFlock` builds.
    unsigned getPopulation() const { return population; }
    void setPopulation(unsigned val) { population = val; }
    /// How far a boid sees its neighbours, metres.
    float getNeighborhoodSize() const { return neighborhoodSize; }
    void setNeighborhoodSize(float val);
    /// How strongly a boid keeps with its neighbours, beside 1 for the target.
    float getCohesionWeight() const { return cohesionWeight; }
    void setCohesionWeight(float val);
    /// Within this distance of its target the flock is there, metres.
    float getTargetRadius() const { return targetRadius; }
    void setTargetRadius(float val);
    /// What the boids make for.
    FlockTarget getTarget() const { return flockTarget; }
    void setTarget(const FlockTarget &val);
    /// The boids that were marked last.
    BoidContainer getNeighborhood() const { return marked(inNeighborhood); }
    /// The boids that were marked at the end of the last frame step.
    BoidContainer getLastNeighborhood() const { return marked(wasInNeighborhood); }

private:
    TransformComponent *findTransform();
    TransformComponent *findPlayer(TransformComponent &transform);
    void dropDead();
    BoidContainer marked(const FlagCont &flags) const;

    BoidContainer boids;
    int boidID = 0;
    bool overrideTargetPos = false;
    unsigned population = 0;
    float neighborhoodSize = 0.f;
    float cohesionWeight = 0.f;
    float targetRadius = 0.f;
    FlockTarget flockTarget;
    FlagCont inNeighborhood;
    FlagCont wasInNeighborhood;

    bool playerMissed = false; ///< the log knows that there is no player
    bool parentMissed = false; ///< the log knows that there is no parent
};

/// How it crosses the reflection layer: as the script class `FlockTarget`.
/// @{
void SetToVariant(Variant &v, const FlockingComponent::FlockTarget &target);
bool fromVariant(const Variant &v, FlockingComponent::FlockTarget &target);
/// @}
