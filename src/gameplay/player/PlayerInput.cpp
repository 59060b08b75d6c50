// PlayerComponent: what keys and buttons do.
#include "gameplay/player/PlayerComponent.h"

#include "gameplay/player/PlayerMessages.h"

#include "physics/volumes/BoundingVolume.h"
#include "platform/input/EngineMessage.h"
#include "platform/input/InputMessages.h"
#include "platform/input/InputSystem.h"

#include "foundation/Logger.h"
#include "port/win32/VirtualKeys.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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

/// Whether a screen is before the player, which takes what he presses.
bool screenTakesInput()
{
    return getSystemDeref<InputSystem>().getScreenTakesInput();
}

} // namespace

void PlayerComponent::handleMouseMessage(const ReflectorPtr &, float x, float y)
{
    if (screenTakesInput() || !std::isfinite(mouseMoveX + x) || !std::isfinite(mouseMoveY + y))
        return;
    mouseMoveX += x;
    mouseMoveY += y;
}

void PlayerComponent::handleMouseClick(const ReflectorPtr &, unsigned click, float, float)
{
    constexpr unsigned buttons = 32;
    if (click < buttons && !screenTakesInput() && (useButtons >> click & 1u))
        useInteractor();
}

void PlayerComponent::bindKey(int key, int standsFor)
{
    if (key > 0 && key < KEYS && standsFor >= 0 && standsFor < KEYS)
        keyMeanings[key] = static_cast<unsigned char>(standsFor);
    else
        KV_LOGF(Logger_::I_ERROR, "%s of %s: key %d cannot stand for key %d; they go from 1 to %d.",
                getName().toCString(), getParent().toString().toCString(), key, standsFor, KEYS - 1);
}

void PlayerComponent::freeKeys()
{
    std::fill(std::begin(keyMeanings), std::end(keyMeanings), static_cast<unsigned char>(0));
}

int PlayerComponent::meaningOf(int key) const
{
    return key > 0 && key < KEYS ? keyMeanings[key] : 0;
}

/// Whether another key that stands for the same as a key is held.
bool PlayerComponent::isHeldByAnother(int key) const
{
    for (int other = 1; other < KEYS; ++other)
        if (other != key && heldKeys[static_cast<std::size_t>(other)] && keyMeanings[other] == keyMeanings[key])
            return true;
    return false;
}

void PlayerComponent::handleKeyMessage(const ReflectorPtr &messageType, int key)
{
    const int meaning = meaningOf(key);
    if (meaning == 0)
        return;
    if (messageType == KeyDownMessage)
    {
        if (screenTakesInput())
            return;
        heldKeys.set(static_cast<std::size_t>(key));
        handleKeyDown(meaning);
    }
    else if (messageType == KeyUpMessage)
    {
        heldKeys.reset(static_cast<std::size_t>(key));
        if (!isHeldByAnother(key))
            handleKeyUp(meaning);
    }
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
