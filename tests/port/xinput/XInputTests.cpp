#include "port/xinput/XInput.h"
#include "port/xinput/XInputPlatform.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace
{
/// Game pads that SDL makes up, plugged in while this lives.
class Pads : public testing::Test
{
protected:
    Pads()
    {
        SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER);
    }
    ~Pads() override
    {
        unplug();
        SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
    }

    void plugIn()
    {
        device = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, SDL_CONTROLLER_AXIS_MAX,
                                           SDL_CONTROLLER_BUTTON_MAX, 0);
        ASSERT_GE(device, 0);
        joystick = SDL_JoystickOpen(device);
        for (const int trigger : {SDL_CONTROLLER_AXIS_TRIGGERLEFT, SDL_CONTROLLER_AXIS_TRIGGERRIGHT})
            SDL_JoystickSetVirtualAxis(joystick, trigger, SDL_JOYSTICK_AXIS_MIN);
    }
    void unplug()
    {
        if (!joystick)
            return;
        SDL_JoystickClose(joystick);
        SDL_JoystickDetachVirtual(device);
        joystick = nullptr;
    }

    XINPUT_STATE read(DWORD player = 0)
    {
        XINPUT_STATE state;
        EXPECT_EQ(XInputGetState(player, &state), ERROR_SUCCESS);
        return state;
    }

    int device = -1;
    SDL_Joystick *joystick = nullptr;
};

struct FakePads : port::XInputPlatform
{
    DWORD XInputGetState(DWORD, XINPUT_STATE *state) override
    {
        state->Gamepad.sThumbLX = 99;
        return ERROR_SUCCESS;
    }
    DWORD XInputSetState(DWORD, XINPUT_VIBRATION *) override { return ERROR_SUCCESS; }
};
} // namespace

TEST_F(Pads, ComesAndGoesWhilePlaying)
{
    XINPUT_STATE state;
    EXPECT_EQ(XInputGetState(0, &state), ERROR_DEVICE_NOT_CONNECTED);

    plugIn();
    EXPECT_EQ(XInputGetState(0, &state), ERROR_SUCCESS);
    EXPECT_EQ(XInputGetState(1, &state), ERROR_DEVICE_NOT_CONNECTED);

    unplug();
    EXPECT_EQ(XInputGetState(0, &state), ERROR_DEVICE_NOT_CONNECTED);
    XINPUT_VIBRATION vibration;
    EXPECT_EQ(XInputSetState(0, &vibration), ERROR_DEVICE_NOT_CONNECTED);
}

TEST_F(Pads, SticksGrowUpwardsAndTriggersSpanAByte)
{
    plugIn();
    const XINPUT_STATE rest = read();
    EXPECT_EQ(rest.Gamepad.sThumbLY, 0);
    EXPECT_EQ(rest.Gamepad.bLeftTrigger, 0);

    SDL_JoystickSetVirtualAxis(joystick, SDL_CONTROLLER_AXIS_LEFTX, -32768);
    SDL_JoystickSetVirtualAxis(joystick, SDL_CONTROLLER_AXIS_LEFTY, -32768);
    SDL_JoystickSetVirtualAxis(joystick, SDL_CONTROLLER_AXIS_RIGHTY, 32767);
    SDL_JoystickSetVirtualAxis(joystick, SDL_CONTROLLER_AXIS_TRIGGERRIGHT, 32767);
    const XINPUT_STATE pushed = read();

    EXPECT_EQ(pushed.Gamepad.sThumbLX, -32768);
    EXPECT_EQ(pushed.Gamepad.sThumbLY, 32767) << "pushed up";
    EXPECT_EQ(pushed.Gamepad.sThumbRY, -32768) << "pulled down";
    EXPECT_EQ(pushed.Gamepad.bRightTrigger, 255);
    EXPECT_NE(pushed.dwPacketNumber, rest.dwPacketNumber);
    EXPECT_EQ(read().dwPacketNumber, pushed.dwPacketNumber) << "nothing has changed since";
}

TEST_F(Pads, ButtonsHaveTheirPublishedBits)
{
    plugIn();
    SDL_JoystickSetVirtualButton(joystick, SDL_CONTROLLER_BUTTON_A, 1);
    SDL_JoystickSetVirtualButton(joystick, SDL_CONTROLLER_BUTTON_DPAD_LEFT, 1);
    EXPECT_EQ(read().Gamepad.wButtons, XINPUT_GAMEPAD_A | XINPUT_GAMEPAD_DPAD_LEFT);
}

TEST_F(Pads, BadArgumentsAndStandInsAreHandledInFront)
{
    XINPUT_STATE state;
    EXPECT_EQ(XInputGetState(XUSER_MAX_COUNT, &state), ERROR_BAD_ARGUMENTS);
    EXPECT_EQ(XInputGetState(0, nullptr), ERROR_BAD_ARGUMENTS);

    FakePads fake;
    port::installXInputPlatform(&fake);
    EXPECT_EQ(XInputGetState(3, &state), ERROR_SUCCESS);
    EXPECT_EQ(state.Gamepad.sThumbLX, 99);
    EXPECT_EQ(port::installXInputPlatform(nullptr), &fake);
}
