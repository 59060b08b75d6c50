#include "gameplay/player/ActTakeFootstep.h"

#include "gameplay/player/PlayerComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "platform/sound/SoundComponent.h"

#include <cmath>
#include <iterator>

ActionStatus ActTakeFootstep::update(Seconds frameTime)
{
    const auto *const transform = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!transform)
        return AS_InvalidHandle;
    const Vec4 position = transform->getPosition();
    if (elapsedTime == 0.0)
    {
        incrementTime(frameTime);
        prevFootstepPos = position;
    }
    const Vec4 way = position - prevFootstepPos;
    if (std::abs(way.x) > FOOTSTEP_DISTNACE || std::abs(way.z) > FOOTSTEP_DISTNACE)
    {
        playFootstep();
        prevFootstepPos = position;
    }
    return AS_InProgress;
}

void ActTakeFootstep::playFootstep()
{
    const auto *const player = componentOf<PlayerComponent>(getParent(), ComponentKeys::player);
    if (auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound))
        voice->playSoundEffect(eventOf(player));
}

/// Names are made when the floor changes: walking on makes none.
const String &ActTakeFootstep::eventOf(const PlayerComponent *player)
{
    static const String stone = SCS("Stone");
    static const char *const gaits[] = {"Walk", "Run", "Crouch"};
    const String now = player ? player->getFloorMaterial() : stone;
    if (now != floor || events[0].empty())
        for (std::size_t gait = 0; gait < std::size(gaits); ++gait)
            events[gait] = String::format("Step%s%s", now.toCString(), gaits[gait]);
    floor = now;
    return events[player && player->isCrouched() ? 2 : player && player->isSprinting() ? 1 : 0];
}
