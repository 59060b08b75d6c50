#include "platform/input/InputDevices.h"

#include "platform/input/InputMessages.h"
#include "platform/input/EngineMessage.h"

#include "foundation/Assertions.h"
#include "foundation/ErrorCode.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float STICK_REACH = 32767.0f;
constexpr float TRIGGER_REACH = 255.0f;
constexpr unsigned BUTTON_BITS = 16;
constexpr float LARGEST_DEAD_ZONE = 0.9f;

/// -1 to 1; the one value beyond, at the low end, counts as the end.
float normalized(SHORT value)
{
    return std::max(static_cast<float>(value) / STICK_REACH, -1.0f);
}
} // namespace

InputDevices::InputDevices()
    : deadZones{XINPUT_GAMEPAD_RIGHT_THUMB_DEADZONE / STICK_REACH, XINPUT_GAMEPAD_LEFT_THUMB_DEADZONE / STICK_REACH}
{
    constexpr USHORT usages[Rawx::INPUT_SIZE] = {HID_USAGE_GENERIC_KEYBOARD, HID_USAGE_GENERIC_MOUSE,
                                                 HID_USAGE_GENERIC_JOYSTICK};
    for (unsigned i = 0; i < Rawx::INPUT_SIZE; ++i)
        deviceList[i] = {HID_USAGE_PAGE_GENERIC, usages[i], 0, nullptr};
}

void InputDevices::registerDevices()
{
    if (!RegisterRawInputDevices(deviceList, Rawx::INPUT_SIZE, sizeof(RAWINPUTDEVICE)))
        KV_WARN("Could not register the raw input devices\n\n%s", winError().toString().toCString());
}

void InputDevices::update(bool atRest)
{
    recorder.advance();
    runRecorder.advance();
    replay.advance();
    for (unsigned player = 0; player < Rawx::PLAYERS; ++player)
    {
        const PadState pad = readPad(player);
        record(player, pad);
        states[player].Gamepad = atRest ? XINPUT_GAMEPAD() : pad.gamepad;
        if (!pad.connected)
            continue;
        applyDeadZone(player, Rawx::RIGHT);
        applyDeadZone(player, Rawx::LEFT);
        checkButtonPress(player);
    }
}

PadState InputDevices::readPad(unsigned player)
{
    states[player] = XINPUT_STATE();
    if (replay.isPlaying())
        return replay.getPad(player);
    const bool connected = XInputGetState(player, &states[player]) == ERROR_SUCCESS;
    return {connected, connected ? states[player].Gamepad : XINPUT_GAMEPAD()};
}

void InputDevices::setDeadZone(Rawx::STICK stick, float part)
{
    if (part >= 0.0f && part <= LARGEST_DEAD_ZONE)
        deadZones[stick] = part;
    else
        KV_ERROR("A dead zone cannot be %g; give it a part of the way from 0 to %g", static_cast<double>(part),
                 static_cast<double>(LARGEST_DEAD_ZONE));
}

void InputDevices::applyDeadZone(unsigned player, Rawx::STICK stick)
{
    XINPUT_GAMEPAD &pad = states[player].Gamepad;
    SHORT &x = stick == Rawx::RIGHT ? pad.sThumbRX : pad.sThumbLX;
    SHORT &y = stick == Rawx::RIGHT ? pad.sThumbRY : pad.sThumbLY;
    const float radius = deadZones[stick] * STICK_REACH;
    if (std::hypot(static_cast<float>(x), static_cast<float>(y)) >= radius)
        return;
    x = 0;
    y = 0;
}

void InputDevices::checkButtonPress(unsigned player)
{
    // A handler may change the pads; what it is told is the state that this frame began with.
    const XINPUT_GAMEPAD pad = states[player].Gamepad;
    for (unsigned bit = 0; bit < BUTTON_BITS; ++bit)
        if (pad.wButtons & (1u << bit))
            sendEngineMessage(ButtonPressed, static_cast<int>(1u << bit), player);
    sendEngineMessage(LeftJoyPos, normalized(pad.sThumbLX), normalized(pad.sThumbLY), player);
    sendEngineMessage(RightJoyPos, normalized(pad.sThumbRX), normalized(pad.sThumbRY), player);
    sendEngineMessage(LeftTriggerPos, pad.bLeftTrigger / TRIGGER_REACH, player);
    sendEngineMessage(RightTriggerPos, pad.bRightTrigger / TRIGGER_REACH, player);
}

void InputDevices::setVibration(unsigned player, WORD vib)
{
    KV_VERIFY(player < Rawx::PLAYERS, "There is no player %u, only 0 to %u", player, Rawx::PLAYERS - 1);
    if (player >= Rawx::PLAYERS)
        return;
    vibration[player] = {vib, vib};
    XInputSetState(player, &vibration[player]);
}

void InputDevices::shutdown()
{
    for (unsigned player = 0; player < Rawx::PLAYERS; ++player)
        if (vibration[player].wLeftMotorSpeed || vibration[player].wRightMotorSpeed)
            setVibration(player, 0);
    recorder.stop();
    runRecorder.stop();
}
