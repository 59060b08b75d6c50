// ActEquipmentBob: what the player carries bobs with the steps.
#pragma once

#include "gameplay/player/BobAction.h"

/// Bobs the entity that it belongs to by that one's own "parentFollower", as the level's player walks; goes on for ever.
class ActEquipmentBob : public BobAction
{
    KV_REFLECTED(ActEquipmentBob)
public:
    ActEquipmentBob() = default;

    Handle<Action> clone() override { return cloneAction(); }

private:
    bool getHandles() override;
};
