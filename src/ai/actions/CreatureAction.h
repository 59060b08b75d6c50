// CreatureAction: what a creature does with its senses and its legs.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

#include <cstdint>

class MapRootEntity;
class PathFollower;
class PerceptionComponent;
class SteeringComponent;
class TransformComponent;

/// Base of the actions of creatures that perceive and walk.
///
/// Goes by the components "transform", "pathFollower", "perception" and "steering" beside the tree; an action that
/// lacks one that it needs says AS_InvalidHandle. Metres and seconds in the space of the creature's map. Chance is the
/// engine's own. What scripts set on an action, its copies have as well.
class CreatureAction : public Action
{
    KV_REFLECTED(CreatureAction)
public:
    CreatureAction() = default;

    void reset() override;
    /// Stands still, and has the next step begin afresh.
    void terminate() override;

    /// How fast it goes, metres a second; 0 for as fast as its follower has it.
    float getSpeed() const { return speed; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setSpeed(float val) { setMeasure(speed, "speed", val); }
    /// Whether the action is complete as soon as the creature knows of its target.
    bool getHeeds() const { return heeds; }
    void setHeeds(bool val) { heeds = val; }
    /// How far it goes, or looks for places, metres; what it means stands at the action.
    float getReach() const { return reach; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setReach(float val) { setMeasure(reach, "reach", val); }

protected:
    /// What a creature acts with; null parts for what it does not have.
    struct Parts
    {
        TransformComponent *transform = nullptr;
        PathFollower *follower = nullptr;
        PerceptionComponent *senses = nullptr;
        SteeringComponent *steering = nullptr;
        std::uint64_t objectChanges = 0; ///< births and deaths that these take account of
        Handle<Object> creature;

        /// Whether it can walk.
        bool canWalk() const { return transform && follower; }
    };
    /// How far the legs are that were set going.
    enum Legs
    {
        ON_THE_WAY,
        THERE,
        STUCK
    };

    const Parts &parts();
    Handle<MapRootEntity> map();
    Vec4 place();
    /// Has the creature go to a place.
    void goTo(const Vec4 &where);
    void stop();
    Legs legs();
    /// Whether the creature knows of its target now, and minds.
    bool isCalledOff();
    /// Finds a place by chance where the creature has room, at some distance from another, along the ground.
    bool findPlace(const Vec4 &around, float least, float most, Vec4 &found);
    /// Turns the creature on the spot towards a direction.
    void turnTo(const Vec4 &direction, Seconds frameTime);
    /// Looks to both sides of a direction, by the time worked.
    void lookAround(const Vec4 &ahead, Seconds frameTime);
    /// A copy with this action's speed, reach, duration and heed.
    Handle<Action> cloneCreatureAction() const;
    void setMeasure(float &field, const char *property, float val);

    bool begun = false; ///< the work has begun since the last reset
    float speed = 0.f;  ///< metres a second
    float reach = 0.f;  ///< metres
    bool heeds = true;

private:
    Parts known;
};
