// ActPlayerHeadbob: the player's view bobs with the steps.
#pragma once

#include "gameplay/player/BobAction.h"

/// Bobs the child "camera" of the player's entity; goes on for ever.
class ActPlayerHeadbob : public BobAction
{
    KV_REFLECTED(ActPlayerHeadbob)
public:
    ActPlayerHeadbob() = default;

    Handle<Action> clone() override { return cloneAction(); }

private:
    bool getHandles() override;
};
