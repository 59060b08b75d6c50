// ActWatchPlayer: a head turns to the player while nobody sees it turn.
#pragma once

#include "ai/actions/Action.h"

#include "foundation/Vector.h"

#include <vector>

class PerceptionComponent;
class SteeringComponent;
class TransformComponent;
class TransformOffsetComponent;

/// Turns the entity, as a head turns, towards the level's player; goes on for ever.
///
/// Needs the components "transform" and "steering" beside the tree, whose settings say how fast it turns. It turns while
/// the player is within `watchRadius` over the ground and, where a "perception" stands beside the tree or at the entity
/// above, while the player does not see that one. What ties the head to a body, its "parentFollower", is told of each
/// turn, so that the head keeps it. Metres.
class ActWatchPlayer : public Action
{
    KV_REFLECTED(ActWatchPlayer)
public:
    ActWatchPlayer() = default;

    ActionStatus update(Seconds frameTime) override;
    /// Draws the circle within which it turns, with the switch of steering.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    Handle<Action> clone() override { return cloneAction(); }

    /// Finds how far it watches: as far as the steering looks ahead, and 12 m where that says nothing.
    void calculateWatchRadius();
    /// How far it watches, metres.
    float getWatchRadius() const { return watchRadius; }

private:
    void findParts();
    PerceptionComponent *findSenses() const;
    bool mayTurn(const Vec4 &toPlayer) const;

    Handle<TransformOffsetComponent> hParentFollower;
    Handle<TransformComponent> hPlayerTransform;
    Handle<TransformComponent> hTransform;
    Handle<SteeringComponent> hSteering;
    float watchRadius = 0.f;           ///< metres
    std::vector<Vec4> watchRadiusVecs; ///< the circle about the origin, metres
};
