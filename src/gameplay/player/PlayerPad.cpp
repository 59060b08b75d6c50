// PlayerComponent: what the sticks of a pad do.
#include "gameplay/player/PlayerComponent.h"

#include "platform/input/InputMessages.h"
#include "platform/input/InputSystem.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float ASKS = 0.15f;             ///< part of a stick's way from which it counts as a held key
constexpr float USUAL_SENSITIVITY = 12.f; ///< of the mouse, radians for the window's longer side

/// How far a stick stands beyond its dead zone, in the direction that it stands in: 0 at the zone's edge, 1 at the end.
/// @param curve  0 answers in proportion, 1 by the cube: fine in the middle
Vec4 answered(float x, float y, float deadZone, float curve)
{
    const float length = std::hypot(x, y);
    if (!(length > deadZone) || !std::isfinite(length))
        return Vec4();
    const float way = std::min((length - deadZone) / (1.f - deadZone), 1.f);
    const float answer = way * (1.f - curve + curve * way * way) / length;
    return Vec4(x * answer, y * answer, 0.f, 0.f);
}

} // namespace

void PlayerComponent::handleStickMessage(const ReflectorPtr &messageType, float x, float y, unsigned pad)
{
    const InputSystem &input = getSystemDeref<InputSystem>();
    if (pad != 0 || input.getScreenTakesInput())
        return;
    if (messageType == LeftJoyPos)
        walkStick = answered(x, y, input.getWalkDeadZone(), 0.f);
    else if (messageType == RightJoyPos)
        lookStick = answered(x, y, input.getLookDeadZone(), 0.65f);
    sticksAreNew = true;
}

/// A pad that tells nothing any more is gone, and asks for nothing.
void PlayerComponent::forgetOldSticks()
{
    if (!sticksAreNew)
        walkStick = lookStick = Vec4();
    sticksAreNew = false;
}

/// The mouse's way that a stick at its end takes the place of in a frame; what damps the mouse damps the stick.
float PlayerComponent::stickTurn(Seconds frameTime) const
{
    return stickTurnRate * static_cast<float>(frameTime) / USUAL_SENSITIVITY;
}

bool PlayerComponent::doesStickAsk(MovementType type) const
{
    switch (type)
    {
    case MT_Up:
        return walkStick.y > ASKS;
    case MT_Down:
        return walkStick.y < -ASKS;
    case MT_StrafeRight:
        return walkStick.x > ASKS;
    case MT_StrafeLeft:
        return walkStick.x < -ASKS;
    default:
        return false;
    }
}

void PlayerComponent::setStickTurnRate(float val)
{
    take("stickTurnRate", stickTurnRate, val, -100.f, 100.f);
}

void PlayerComponent::setStickUpright(float val)
{
    take("stickUpright", stickUpright, val, -100.f, 100.f);
}
