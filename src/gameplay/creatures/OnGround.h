// OnGround: keeps what steers over a plan on the floor, up and down stairs.
#pragma once

#include "engine/entities/SimpleComponent.h"

class TransformComponent;

/// Keeps its entity at a height above the ground below it, under the component key "form".
///
/// For bodies that are moved over the ground plan alone, as followers move them. The ground is what would stop a body,
/// from 40 cm above the place to three below it, but for the entity itself and the player; where there is none
/// the height stays. Metres, space of the entity's transform.
/// @cost a segment a frame
class OnGround : public SimpleComponent
{
    KV_REFLECTED(OnGround)
public:
    OnGround() = default;

    /// Goes up or down to the ground, some metres a second at most.
    void doFrame() override;

    /// Height of its place above the ground, metres.
    float getGroundBelow() const { return groundBelow; }
    void setGroundBelow(float val);

protected:
    TransformComponent *transform() const;
    /// Seconds of the level's time that this frame takes; 0 in a level that is stopped.
    float frameSeconds();

private:
    float groundBelow = 0.25f; ///< metres
};
