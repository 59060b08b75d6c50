#include "port/xinput/SdlPads.h"

#include <SDL.h>

#include <algorithm>
#include <cstring>

namespace port
{

namespace
{
struct ButtonBit
{
    SDL_GameControllerButton button;
    WORD bit;
};

constexpr ButtonBit buttonBits[] = {
    {SDL_CONTROLLER_BUTTON_DPAD_UP, XINPUT_GAMEPAD_DPAD_UP},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, XINPUT_GAMEPAD_DPAD_DOWN},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, XINPUT_GAMEPAD_DPAD_LEFT},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, XINPUT_GAMEPAD_DPAD_RIGHT},
    {SDL_CONTROLLER_BUTTON_START, XINPUT_GAMEPAD_START},
    {SDL_CONTROLLER_BUTTON_BACK, XINPUT_GAMEPAD_BACK},
    {SDL_CONTROLLER_BUTTON_LEFTSTICK, XINPUT_GAMEPAD_LEFT_THUMB},
    {SDL_CONTROLLER_BUTTON_RIGHTSTICK, XINPUT_GAMEPAD_RIGHT_THUMB},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, XINPUT_GAMEPAD_LEFT_SHOULDER},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, XINPUT_GAMEPAD_RIGHT_SHOULDER},
    {SDL_CONTROLLER_BUTTON_A, XINPUT_GAMEPAD_A},
    {SDL_CONTROLLER_BUTTON_B, XINPUT_GAMEPAD_B},
    {SDL_CONTROLLER_BUTTON_X, XINPUT_GAMEPAD_X},
    {SDL_CONTROLLER_BUTTON_Y, XINPUT_GAMEPAD_Y},
};

BYTE triggerOf(SDL_GameController *pad, SDL_GameControllerAxis axis)
{
    const int pressed = std::max<int>(SDL_GameControllerGetAxis(pad, axis), 0);
    return static_cast<BYTE>(pressed * 255 / SDL_JOYSTICK_AXIS_MAX);
}

/// SDL's sticks grow downwards. -1 less the value turns one end of the range exactly into the other.
SHORT upward(SHORT downward)
{
    return static_cast<SHORT>(-1 - downward);
}

/// A stick at rest reads 0, which `upward` alone would make -1.
SHORT verticalOf(SDL_GameController *pad, SDL_GameControllerAxis axis)
{
    const SHORT value = SDL_GameControllerGetAxis(pad, axis);
    return value == 0 ? SHORT(0) : upward(value);
}

XINPUT_GAMEPAD readPad(SDL_GameController *pad)
{
    XINPUT_GAMEPAD state;
    for (const ButtonBit &entry : buttonBits)
        if (SDL_GameControllerGetButton(pad, entry.button))
            state.wButtons |= entry.bit;
    state.bLeftTrigger = triggerOf(pad, SDL_CONTROLLER_AXIS_TRIGGERLEFT);
    state.bRightTrigger = triggerOf(pad, SDL_CONTROLLER_AXIS_TRIGGERRIGHT);
    state.sThumbLX = SDL_GameControllerGetAxis(pad, SDL_CONTROLLER_AXIS_LEFTX);
    state.sThumbLY = verticalOf(pad, SDL_CONTROLLER_AXIS_LEFTY);
    state.sThumbRX = SDL_GameControllerGetAxis(pad, SDL_CONTROLLER_AXIS_RIGHTX);
    state.sThumbRY = verticalOf(pad, SDL_CONTROLLER_AXIS_RIGHTY);
    return state;
}

static_assert(sizeof(XINPUT_GAMEPAD) == 12, "compared as bytes below, so there must be no padding");
} // namespace

SdlPads::~SdlPads()
{
    if (!started)
        return;
    for (const Place &place : places)
        if (place.pad)
            SDL_GameControllerClose(place.pad);
    SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
}

void SdlPads::followPlugs()
{
    if (!started)
    {
        // Pads belong to the game only while its window is in front, but tests and headless runs have none.
        SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER);
        started = true;
    }
    SDL_GameControllerUpdate();

    for (Place &place : places)
    {
        if (!place.pad || SDL_GameControllerGetAttached(place.pad))
            continue;
        SDL_GameControllerClose(place.pad);
        place.pad = nullptr;
    }
    for (int i = 0; i < SDL_NumJoysticks(); ++i)
    {
        Place *place = freePlace();
        if (place && SDL_IsGameController(i) && !isPlaced(SDL_JoystickGetDeviceInstanceID(i)))
            place->pad = SDL_GameControllerOpen(i);
    }
}

bool SdlPads::isPlaced(int instance) const
{
    const auto isThis = [instance](const Place &place)
    { return place.pad && SDL_JoystickInstanceID(SDL_GameControllerGetJoystick(place.pad)) == instance; };
    return std::any_of(places.begin(), places.end(), isThis);
}

SdlPads::Place *SdlPads::freePlace()
{
    const auto found = std::find_if(places.begin(), places.end(), [](const Place &place) { return !place.pad; });
    return found != places.end() ? &*found : nullptr;
}

DWORD SdlPads::XInputGetState(DWORD userIndex, XINPUT_STATE *state)
{
    // A frame asks for the players in order, so that one look at the plugs serves all four.
    if (userIndex == 0 || !started)
        followPlugs();
    Place &place = places[userIndex];
    if (!place.pad || !SDL_GameControllerGetAttached(place.pad))
        return ERROR_DEVICE_NOT_CONNECTED;

    const XINPUT_GAMEPAD now = readPad(place.pad);
    if (std::memcmp(&now, &place.last.Gamepad, sizeof(now)) != 0)
        ++place.last.dwPacketNumber;
    place.last.Gamepad = now;
    *state = place.last;
    return ERROR_SUCCESS;
}

DWORD SdlPads::XInputSetState(DWORD userIndex, XINPUT_VIBRATION *vibration)
{
    constexpr Uint32 longest = SDL_MAX_UINT16; // milliseconds

    Place &place = places[userIndex];
    if (!place.pad || !SDL_GameControllerGetAttached(place.pad))
        return ERROR_DEVICE_NOT_CONNECTED;
    SDL_GameControllerRumble(place.pad, vibration->wLeftMotorSpeed, vibration->wRightMotorSpeed, longest);
    return ERROR_SUCCESS;
}

} // namespace port
