// XInput: the state and vibration of up to four game pads.
//
// Operations carry their published names and meaning; they are forwarded to the pads in place, see XInputPlatform.h.
#pragma once

#include "port/win32/WinTypes.h"

constexpr DWORD XUSER_MAX_COUNT = 4;
constexpr DWORD ERROR_DEVICE_NOT_CONNECTED = 1167;
constexpr DWORD ERROR_BAD_ARGUMENTS = 160;

constexpr WORD XINPUT_GAMEPAD_DPAD_UP = 0x0001;
constexpr WORD XINPUT_GAMEPAD_DPAD_DOWN = 0x0002;
constexpr WORD XINPUT_GAMEPAD_DPAD_LEFT = 0x0004;
constexpr WORD XINPUT_GAMEPAD_DPAD_RIGHT = 0x0008;
constexpr WORD XINPUT_GAMEPAD_START = 0x0010;
constexpr WORD XINPUT_GAMEPAD_BACK = 0x0020;
constexpr WORD XINPUT_GAMEPAD_LEFT_THUMB = 0x0040;
constexpr WORD XINPUT_GAMEPAD_RIGHT_THUMB = 0x0080;
constexpr WORD XINPUT_GAMEPAD_LEFT_SHOULDER = 0x0100;
constexpr WORD XINPUT_GAMEPAD_RIGHT_SHOULDER = 0x0200;
constexpr WORD XINPUT_GAMEPAD_A = 0x1000;
constexpr WORD XINPUT_GAMEPAD_B = 0x2000;
constexpr WORD XINPUT_GAMEPAD_X = 0x4000;
constexpr WORD XINPUT_GAMEPAD_Y = 0x8000;

constexpr SHORT XINPUT_GAMEPAD_LEFT_THUMB_DEADZONE = 7849;
constexpr SHORT XINPUT_GAMEPAD_RIGHT_THUMB_DEADZONE = 8689;

struct XINPUT_GAMEPAD
{
    WORD wButtons = 0;     ///< XINPUT_GAMEPAD_ bits of the buttons that are down
    BYTE bLeftTrigger = 0; ///< 0 released to 255 pressed
    BYTE bRightTrigger = 0;
    SHORT sThumbLX = 0; ///< -32768 left to 32767 right
    SHORT sThumbLY = 0; ///< -32768 down to 32767 up
    SHORT sThumbRX = 0;
    SHORT sThumbRY = 0;
};

struct XINPUT_STATE
{
    DWORD dwPacketNumber = 0; ///< differs from the last one where the pad's state does
    XINPUT_GAMEPAD Gamepad;
};

struct XINPUT_VIBRATION
{
    WORD wLeftMotorSpeed = 0;  ///< low frequency, 0 still to 65535 full
    WORD wRightMotorSpeed = 0; ///< high frequency
};

/// The state of a player's pad now.
/// @param userIndex  below XUSER_MAX_COUNT
/// @return ERROR_SUCCESS, ERROR_DEVICE_NOT_CONNECTED while the player has no pad, or ERROR_BAD_ARGUMENTS
DWORD XInputGetState(DWORD userIndex, XINPUT_STATE *state);

/// Sets the motors of a player's pad until they are set again, or for the minute that the host lets them run.
///
/// A pad without motors takes it and stays still.
/// @return as XInputGetState
DWORD XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration);
