// PlayerComponent: what keys and buttons do.
#include "gameplay/player/PlayerComponent.h"

#include "gameplay/player/PlayerMessages.h"

#include "physics/volumes/BoundingVolume.h"
#include "platform/input/EngineMessage.h"
#include "platform/input/InputMessages.h"

#include "port/win32/VirtualKeys.h"

#include <cmath>

namespace
{

constexpr double BREATH_TO_BEGIN = 0.25; ///< seconds of sprint that must be left for one to begin

/// What a key asks for as long as it is held; MT_NumDirections for none.
PlayerComponent::MovementType movementOf(int key)
{
    switch (key)
    {
    case 'A':
        return PlayerComponent::MT_StrafeLeft;
    case 'D':
        return PlayerComponent::MT_StrafeRight;
    case 'S':
        return PlayerComponent::MT_Down;
    case 'W':
        return PlayerComponent::MT_Up;
    default:
        return PlayerComponent::MT_NumDirections;
    }
}

} // namespace

void PlayerComponent::handleMouseMessage(const ReflectorPtr &, float x, float y)
{
    if (!std::isfinite(mouseMoveX + x) || !std::isfinite(mouseMoveY + y))
        return;
    mouseMoveX += x;
    mouseMoveY += y;
}

void PlayerComponent::handleMouseClick(const ReflectorPtr &, unsigned, float, float)
{
    useInteractor();
}

void PlayerComponent::handleKeyMessage(const ReflectorPtr &messageType, int key)
{
    if (messageType == KeyDownMessage)
        handleKeyDown(key);
    else if (messageType == KeyUpMessage)
        handleKeyUp(key);
}

void PlayerComponent::handleKeyDown(int key)
{
    if (const MovementType movement = movementOf(key); movement != MT_NumDirections)
        movementKeys[movement] = true;
    switch (key)
    {
    case VK_SHIFT:
        return beginSprint();
    case VK_CONTROL:
        return toggleCrouch();
    case VK_SPACE:
    case 'E':
        return useInteractor();
    case 'F':
        return toggleFlashlight();
    case 'R':
        return useBattery();
    default:
        return;
    }
}

void PlayerComponent::handleKeyUp(int key)
{
    const MovementType movement = key == VK_SHIFT ? MT_Sprint : movementOf(key);
    if (movement != MT_NumDirections)
        movementKeys[movement] = false;
}

/// Stands up, and sprints where there is breath for it.
void PlayerComponent::beginSprint()
{
    if (crouched)
    {
        crouched = false;
        sendEngineMessage(PlayerCrouchMessage, false);
    }
    if (sprintLength - BREATH_TO_BEGIN >= fatigue)
        movementKeys[MT_Sprint] = true;
}

void PlayerComponent::toggleCrouch()
{
    if (movementKeys[MT_Sprint])
        return;
    crouched = !crouched;
    sendEngineMessage(PlayerCrouchMessage, crouched);
}

void PlayerComponent::toggleFlashlight()
{
    if (!hasFlashlight)
        return;
    flashlightOn = !flashlightOn;
    sendEngineMessage(FlashlightOn, flashlightOn);
    sendEngineMessage(DisplayHUDMessage);
}

void PlayerComponent::useInteractor()
{
    if (const auto volume = interactor.lookup())
        volume->interactWithPlayer(getHandle());
}
