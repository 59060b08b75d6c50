#include "gameplay/player/PlayerEyes.h"

#include "gameplay/player/PlayerLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/bodies/PlayerPhysics.h"
#include "physics/volumes/BoundingVolume.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float FOLLOWS = 14.f;      ///< a second: how fast the view comes after the feet
constexpr float HIGHEST_STEP = 0.4f; ///< metres: more than that in a frame is no step
constexpr float FARTHEST = 0.25f;    ///< metres that the view may lag behind
constexpr float SPRING = 11.f;       ///< a second: how fast a landing is over
constexpr float TAKEN = 0.4f;        ///< part of a fall's speed that the knees pass on
constexpr float HARDEST = 6.f;       ///< metres a second: a harder landing looks no different
constexpr float FELT = 1.f;          ///< metres a second: a softer one is not seen

} // namespace

void PlayerEyes::doFrame()
{
    const auto entity = getParent().lookup();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!entity || !level)
        return;
    const Handle<Object> player = entity->getParent();
    auto *const eyes = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    const auto *const place = componentOf<TransformComponent>(player, ComponentKeys::transform);
    const auto *const volume = componentOf<BoundingVolume>(player, ComponentKeys::boundingVolume);
    const auto *const body = componentOf<PlayerPhysics>(player, ComponentKeys::physics);
    if (!eyes || !place || !volume || !body || !body->getSurefooted())
        return;
    const float seconds = stepLength(level->getTimer(TimerNames::master).getFrameTimeSeconds());
    follow(place->getPosition().y - 0.5f * volume->getHitBox().y, body->isOnGround(), seconds);
    sink(*body, seconds);
    eyes->setPosition(eyes->getPosition() + Vec4(0.f, getOffset(), 0.f, 0.f));
}

void PlayerEyes::setShakeAmount(float val)
{
    if (val >= 0.f && val <= 1.f)
        shakeAmount = val;
    else
        KV_LOGF(Logger_::I_ERROR, "shakeAmount of %s cannot be %g; give it a part from 0 to 1.",
                getParent().toString().toCString(), static_cast<double>(val));
}

/// Keeps the view back by what a step has lifted or lowered the feet, and lets it come after them.
void PlayerEyes::follow(float feet, bool onGround, float seconds)
{
    const float step = hasFeet ? feet - feetBefore : 0.f;
    feetBefore = feet;
    hasFeet = true;
    if (onGround && std::abs(step) < HIGHEST_STEP)
        lag = std::clamp(lag - step, -FARTHEST, FARTHEST);
    lag -= lag * easedPart(FOLLOWS, seconds);
}

/// Lets a landing press the view down and a spring without swinging bring it back; exact for any length of a frame.
void PlayerEyes::sink(const PlayerPhysics &body, float seconds)
{
    const bool landed = body.getLandings() != landings;
    landings = body.getLandings();
    if (landed && body.getLandingSpeed() > FELT)
        dipSpeed -= TAKEN * std::min(body.getLandingSpeed(), HARDEST);
    const float pull = dipSpeed + SPRING * dip, left = std::exp(-SPRING * seconds);
    dip = (dip + pull * seconds) * left;
    dipSpeed = (dipSpeed - SPRING * pull * seconds) * left;
}
