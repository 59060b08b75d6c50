#include "gameplay/player/ActTakeFootstep.h"

#include "gameplay/player/PlayerComponent.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/bodies/PlayerPhysics.h"
#include "platform/sound/SoundComponent.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{
constexpr float LONGEST_STRIDE = 2.f; ///< metres of a frame's way that feet can go
constexpr float HEARD_LANDING = 1.5f; ///< metres a second downwards
} // namespace

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
    const float length = std::max(std::abs(way.x), std::abs(way.z));
    auto *const player = componentOf<PlayerComponent>(getParent(), ComponentKeys::player);
    const auto *const body = componentOf<PlayerPhysics>(getParent(), ComponentKeys::physics);
    const bool walks = body && body->getSurefooted();
    if (length > LONGEST_STRIDE || (walks && !body->isOnGround()))
        prevFootstepPos = position; // led elsewhere, or in the air
    else if (length > FOOTSTEP_DISTNACE)
        takeStep(player, position);
    if (player && walks)
        player->setStride(std::max(std::abs(position.x - prevFootstepPos.x), std::abs(position.z - prevFootstepPos.z)) /
                          FOOTSTEP_DISTNACE);
    if (walks && body->getLandings() != landingsHeard)
        land(*body);
    return AS_InProgress;
}

void ActTakeFootstep::takeStep(PlayerComponent *player, const Vec4 &position)
{
    playFootstep(gaitOf(player));
    prevFootstepPos = position;
    if (player)
        player->countStep();
}

/// Both feet come down after a fall that is worth it.
void ActTakeFootstep::land(const PlayerPhysics &body)
{
    if (landingsHeard >= 0 && body.getLandingSpeed() > HEARD_LANDING)
        playFootstep(RUN);
    landingsHeard = body.getLandings();
}

void ActTakeFootstep::playFootstep(Gait gait)
{
    auto *const player = componentOf<PlayerComponent>(getParent(), ComponentKeys::player);
    if (player)
        player->feelFloor();
    if (auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound))
        voice->playSoundEffect(eventOf(player, gait));
}

ActTakeFootstep::Gait ActTakeFootstep::gaitOf(const PlayerComponent *player)
{
    return player && player->isCrouched() ? CROUCH : player && player->isSprinting() ? RUN : WALK;
}

/// Names are made when the floor changes: walking on makes none.
const String &ActTakeFootstep::eventOf(const PlayerComponent *player, Gait gait)
{
    static const String stone = SCS("Stone");
    static const char *const gaits[] = {"Walk", "Run", "Crouch"};
    const String now = player ? player->getFloorMaterial() : stone;
    if (now != floor || events[0].empty())
        for (std::size_t each = 0; each < std::size(gaits); ++each)
            events[each] = String::format("Step%s%s", now.toCString(), gaits[each]);
    floor = now;
    return events[gait];
}
