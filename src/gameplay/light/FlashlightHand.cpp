#include "gameplay/light/FlashlightHand.h"

#include "gameplay/player/PlayerLookup.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "engine/transforms/TransformOffsetComponent.h"
#include "physics/volumes/FiniteProperty.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{

// The spring: a beam that trails a view turning by 180 degrees a second by 11, and swings over by a twentieth.
constexpr float STIFFNESS = 19.f; ///< radians a second of the free swing
constexpr float DAMPING = 0.62f;  ///< 1 would not swing over at all
constexpr float FARTHEST = 0.20f; ///< radians off the view: the beam never leaves the picture
constexpr float JUMP = 1.2f;      ///< radians of a frame from which on the view was set, and not turned

constexpr float TILT = 0.45f; ///< radians that the beam tilts for a metre that a step moves the light

constexpr float STILLS = 1.1f;      ///< shaking that passes in a second
constexpr float WIDEST = 0.14f;     ///< radians of the strongest shaking
constexpr float SHAKES = 9.f;       ///< a second
constexpr float TREMBLING = 0.004f; ///< radians that no hand is without
constexpr float TREMBLES = 0.9f;    ///< a second

/// Turn about the view's y and x.
Quaternion turnOf(float right, float down)
{
    return Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), right) * Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), down);
}

} // namespace

void FlashlightHand::Spring::step(float viewTurn, float seconds)
{
    // While the view turns evenly the angle swings about the one at which the spring keeps up with it.
    const float viewSpeed = viewTurn / seconds;
    const float trailing = -2.f * DAMPING * viewSpeed / STIFFNESS;
    const float off = angle - trailing, offSpeed = speed - viewSpeed;
    const float swing = STIFFNESS * std::sqrt(1.f - DAMPING * DAMPING), fade = DAMPING * STIFFNESS;
    const float c = std::cos(swing * seconds), s = std::sin(swing * seconds), left = std::exp(-fade * seconds);
    const float sine = (offSpeed + fade * off) / swing;
    angle = trailing + left * (off * c + sine * s);
    speed = viewSpeed + left * ((sine * swing - fade * off) * c - (off * swing + fade * sine) * s);
    if (std::abs(angle) <= FARTHEST)
        return;
    angle = std::copysign(FARTHEST, angle);
    speed = viewSpeed;
}

void FlashlightHand::doFrame()
{
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const auto hand = entity ? entity->getParent().lookup() : Handle<Object>::Result{};
    if (!level || !hand)
        return;
    auto *const follower = componentOf<TransformOffsetComponent>(getParent(), ComponentKeys::parentFollower);
    const auto *const neck = componentOf<TransformOffsetComponent>(entity->getParent(), ComponentKeys::parentFollower);
    const auto *const body = componentOf<TransformComponent>(hand->getParent(), ComponentKeys::transform);
    if (!follower || !neck || !body)
        return letGo();
    const Quaternion view = body->getOrientation() * neck->getOrientationOffset();
    const float seconds = stepLength(level->getTimer(TimerNames::master).getFrameTimeSeconds());
    if (!isFinite(view) || seconds <= 0.f)
        return;
    if (!isHeld)
        restingPlace = follower->getPositionOffset();
    follow(view, seconds);
    const Vec4 step = follower->getPositionOffset() - restingPlace;
    follower->setOrientationOffset(turnOf(across.angle + TILT * step.x, along.angle - TILT * step.y) * shakenTurn());
}

/// Lets the hand trail the view by what that has turned since the last frame.
void FlashlightHand::follow(const Quaternion &view, float seconds)
{
    Quaternion turn = lastView.inverse() * view;
    lastView = view;
    if (turn.r < 0.f)
        turn = Quaternion(-turn.r, -turn.i, -turn.j, -turn.k);
    // Twice the vector part is the turn's angles as long as they are small; large ones are made the right length.
    const float sine = std::sqrt(turn.i * turn.i + turn.j * turn.j + turn.k * turn.k);
    const float angle = 2.f * std::atan2(sine, turn.r);
    const float scale = sine > 1e-6f ? angle / sine : 2.f;
    if (!isHeld || angle > JUMP)
    {
        across = along = Spring();
        age = isHeld ? age : 0.0;
        isHeld = true;
        return;
    }
    age += static_cast<Seconds>(seconds);
    shaking = std::max(shaking - STILLS * seconds, 0.f);
    across.step(turn.j * scale, seconds);
    along.step(turn.i * scale, seconds);
}

/// What trembling and shaking make of the hand at this moment.
Quaternion FlashlightHand::shakenTurn() const
{
    const auto at = [this](float rate, float row) {
        return noise.generateNoise(
            Vec4(static_cast<float>(std::fmod(age * static_cast<double>(rate), 256.0)), row, 0.5f));
    };
    const float blow = WIDEST * shaking * shaking;
    return turnOf(TREMBLING * at(TREMBLES, 0.5f) + blow * at(SHAKES, 10.5f),
                  TREMBLING * at(TREMBLES, 20.5f) + blow * at(SHAKES, 30.5f));
}

void FlashlightHand::letGo()
{
    isHeld = false;
    shaking = 0.f;
}

void FlashlightHand::shake(float amount)
{
    if (isUsable(*this, "the shaking", amount))
        shaking = std::clamp(shaking + std::max(amount, 0.f), 0.f, 1.f);
}
