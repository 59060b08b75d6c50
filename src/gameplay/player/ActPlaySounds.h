// ActPlaySounds: the air of a place is heard.
#pragma once

#include "ai/actions/Action.h"

/// Plays the event "Ambience" of its entity's component "sound", once in the action's life, and goes on for ever.
class ActPlaySounds : public Action
{
    KV_REFLECTED(ActPlaySounds)
public:
    ActPlaySounds() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }

    /// Whether the event was played.
    bool getPlayed() const { return played; }

private:
    bool played = false;
};
