// ActBlobSounds: the blob is heard.
#pragma once

#include "ai/actions/Action.h"

class RigidBody;

/// Begins the loop "BlobIdle" on the component "sound" of its entity, heard by the player's ears, and goes on for ever.
class ActBlobSounds : public Action
{
    KV_REFLECTED(ActBlobSounds)
public:
    ActBlobSounds() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }

    /// The body that sounds: "physics" of its entity, once the loop has begun; invalid where there is none.
    Handle<RigidBody> getPhysics() const { return hPhysics; }

private:
    Handle<RigidBody> hPhysics;
};
