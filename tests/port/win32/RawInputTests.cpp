#include "port/win32/OffscreenWindow.h"

#include "port/win32/Diagnostics.h"
#include "port/win32/MessageQueue.h"
#include "port/win32/SdlKeys.h"

#include <map>

namespace
{
class RawInputEvents : public OffscreenWindow
{
protected:
    void pushButton(Uint8 button, bool down)
    {
        SDL_Event event{};
        event.button.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        event.button.windowID = SDL_GetWindowID(port::sdlWindow(hWnd));
        event.button.button = button;
        event.button.state = down ? SDL_PRESSED : SDL_RELEASED;
        push(event);
    }

    void pushWheel(float notches, Uint32 direction = SDL_MOUSEWHEEL_NORMAL)
    {
        SDL_Event event{};
        event.wheel.type = SDL_MOUSEWHEEL;
        event.wheel.preciseY = notches;
        event.wheel.direction = direction;
        push(event);
    }
};
} // namespace

TEST_F(RawInputEvents, HeldKeyRepeatsAndTellsItsRelease)
{
    pushKey(SDL_SCANCODE_W, true);
    pushKey(SDL_SCANCODE_W, true, true);
    pushKey(SDL_SCANCODE_W, false);
    drain();

    const auto inputs = heardOf(WM_INPUT);
    ASSERT_EQ(inputs.size(), 3u);
    for (const Heard &input : inputs)
    {
        EXPECT_EQ(input.raw.header.dwType, RIM_TYPEKEYBOARD);
        EXPECT_NE(input.raw.header.hDevice, nullptr);
        EXPECT_EQ(input.raw.data.keyboard.VKey, 'W');
    }
    EXPECT_EQ(inputs[1].raw.data.keyboard.Flags & RI_KEY_BREAK, 0);
    EXPECT_EQ(inputs[2].raw.data.keyboard.Flags & RI_KEY_BREAK, RI_KEY_BREAK);
    ASSERT_EQ(heardOf(WM_KEYDOWN).size(), 2u);
    EXPECT_NE(heardOf(WM_KEYDOWN)[1].lParam & (1 << 30), 0) << "the second one is a repeat";
    EXPECT_EQ(heardOf(WM_KEYUP).size(), 1u);
}

TEST_F(RawInputEvents, BothSidesOfAModifierHaveOneCode)
{
    pushKey(SDL_SCANCODE_LCTRL, true);
    pushKey(SDL_SCANCODE_RCTRL, true);
    pushKey(SDL_SCANCODE_F4, true, false, KMOD_LALT);
    drain();

    const auto inputs = heardOf(WM_INPUT);
    ASSERT_EQ(inputs.size(), 3u);
    EXPECT_EQ(inputs[0].raw.data.keyboard.VKey, VK_CONTROL);
    EXPECT_EQ(inputs[1].raw.data.keyboard.VKey, VK_CONTROL);
    EXPECT_EQ(inputs[0].raw.data.keyboard.Flags & RI_KEY_E0, 0);
    EXPECT_EQ(inputs[1].raw.data.keyboard.Flags & RI_KEY_E0, RI_KEY_E0);
    EXPECT_EQ(inputs[2].raw.data.keyboard.Message, WM_SYSKEYDOWN);
}

TEST_F(RawInputEvents, MouseTellsMotionButtonsAndWheel)
{
    SDL_Event motion{};
    motion.motion.type = SDL_MOUSEMOTION;
    motion.motion.x = 30;
    motion.motion.xrel = -4;
    motion.motion.yrel = 9;
    push(motion);
    for (Uint8 button = 1; button <= 5; ++button)
        pushButton(button, true);
    pushButton(SDL_BUTTON_RIGHT, false);
    pushWheel(-1.0f);
    pushWheel(0.5f, SDL_MOUSEWHEEL_FLIPPED);
    drain();

    const auto inputs = heardOf(WM_INPUT);
    ASSERT_EQ(inputs.size(), 9u);
    EXPECT_EQ(inputs[0].raw.data.mouse.lLastX, -4);
    EXPECT_EQ(inputs[0].raw.data.mouse.lLastY, 9);
    const USHORT buttons[] = {RI_MOUSE_LEFT_BUTTON_DOWN, RI_MOUSE_MIDDLE_BUTTON_DOWN, RI_MOUSE_RIGHT_BUTTON_DOWN,
                              RI_MOUSE_BUTTON_4_DOWN,    RI_MOUSE_BUTTON_5_DOWN,      RI_MOUSE_RIGHT_BUTTON_UP};
    for (std::size_t i = 0; i < std::size(buttons); ++i)
        EXPECT_EQ(inputs[i + 1].raw.data.mouse.usButtonFlags, buttons[i]);
    EXPECT_EQ(inputs[7].raw.data.mouse.usButtonFlags, RI_MOUSE_WHEEL);
    EXPECT_EQ(SHORT(inputs[7].raw.data.mouse.usButtonData), -120);
    EXPECT_EQ(SHORT(inputs[8].raw.data.mouse.usButtonData), -60);
    EXPECT_EQ(heardOf(WM_MOUSEMOVE).size(), 1u);
    EXPECT_EQ(heardOf(WM_SETCURSOR).size(), 1u);
}

TEST_F(RawInputEvents, MouseOverAWindowBehindAnotherIsNotHeardButLetsItsButtonsGo)
{
    pushButton(SDL_BUTTON_LEFT, true);
    pushWindowEvent(SDL_WINDOWEVENT_FOCUS_LOST);
    SDL_Event motion{};
    motion.motion.type = SDL_MOUSEMOTION;
    motion.motion.windowID = SDL_GetWindowID(port::sdlWindow(hWnd));
    motion.motion.xrel = 40;
    push(motion);
    pushButton(SDL_BUTTON_RIGHT, true);
    pushButton(SDL_BUTTON_LEFT, false);
    drain();

    auto inputs = heardOf(WM_INPUT);
    ASSERT_EQ(inputs.size(), 2u);
    EXPECT_EQ(inputs[0].raw.data.mouse.usButtonFlags, RI_MOUSE_LEFT_BUTTON_DOWN);
    EXPECT_EQ(inputs[1].raw.data.mouse.usButtonFlags, RI_MOUSE_LEFT_BUTTON_UP);

    pushWindowEvent(SDL_WINDOWEVENT_FOCUS_GAINED);
    push(motion);
    drain();
    EXPECT_EQ(heardOf(WM_INPUT).size(), 3u) << "it is heard again in front";
}

TEST_F(RawInputEvents, TextArrivesAsCharactersAndControlKeysByTranslation)
{
    SDL_Event text{};
    text.text.type = SDL_TEXTINPUT;
    SDL_strlcpy(text.text.text, "a\xC3\xA4", sizeof(text.text.text));
    push(text);
    pushKey(SDL_SCANCODE_RETURN, true);
    drain();

    const auto characters = heardOf(WM_CHAR);
    ASSERT_EQ(characters.size(), 3u);
    EXPECT_EQ(characters[0].wParam, WPARAM('a'));
    EXPECT_EQ(characters[1].wParam, 0xE4u);
    EXPECT_EQ(characters[2].wParam, 13u);
}

TEST_F(RawInputEvents, NothingIsReportedForDevicesThatWereSignedOff)
{
    const RAWINPUTDEVICE off{HID_USAGE_PAGE_GENERIC, HID_USAGE_GENERIC_KEYBOARD, RIDEV_REMOVE, nullptr};
    ASSERT_TRUE(RegisterRawInputDevices(&off, 1, sizeof(off)));
    pushKey(SDL_SCANCODE_W, true);
    drain();
    EXPECT_TRUE(heardOf(WM_INPUT).empty());
    EXPECT_EQ(heardOf(WM_KEYDOWN).size(), 1u);
}

TEST_F(RawInputEvents, MadeUpInputTakesTheSameWay)
{
    EXPECT_TRUE(port::postRawInput(port::keyInput(VK_ESCAPE, true)));
    drain();
    ASSERT_EQ(heardOf(WM_INPUT).size(), 1u);
    EXPECT_EQ(heardOf(WM_INPUT)[0].raw.data.keyboard.VKey, VK_ESCAPE);
    EXPECT_EQ(heardOf(WM_INPUT)[0].raw.header.hDevice, nullptr);

    DestroyWindow(hWnd);
    EXPECT_FALSE(port::postRawInput(port::keyInput(VK_ESCAPE, false))) << "there is no window to hear it";
}

TEST_F(RawInputEvents, RecordsAreHandedOutWholeOrNotAtAll)
{
    port::postRawInput(port::mouseInput(1, 2));
    MSG msg;
    ASSERT_TRUE(PeekMessageA(&msg, nullptr, WM_INPUT, WM_INPUT, PM_REMOVE));
    const auto handle = reinterpret_cast<HRAWINPUT>(msg.lParam);

    UINT size = 0;
    EXPECT_EQ(GetRawInputData(handle, RID_INPUT, nullptr, &size, sizeof(RAWINPUTHEADER)), 0u);
    EXPECT_EQ(size, sizeof(RAWINPUT));
    RAWINPUT record;
    size = sizeof(RAWINPUT) - 1;
    EXPECT_EQ(GetRawInputData(handle, RID_INPUT, &record, &size, sizeof(RAWINPUTHEADER)), UINT(-1));
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(GetRawInputData(nullptr, RID_INPUT, &record, &size, sizeof(RAWINPUTHEADER)), UINT(-1));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
}

TEST(MessageQueue, FloodOfInputLosesNothing)
{
    port::MessageQueue queue;
    constexpr int count = 5000;
    for (int i = 0; i < count; ++i)
        queue.postInput(nullptr, port::mouseInput(i, 0), 0);

    for (int i = 0; i < count; ++i)
    {
        const auto message = queue.next(nullptr, 0, 0, true);
        ASSERT_TRUE(message);
        const RAWINPUT *record = queue.rawInput(reinterpret_cast<HRAWINPUT>(message->lParam));
        ASSERT_NE(record, nullptr);
        ASSERT_EQ(record->data.mouse.lLastX, i);
    }
    EXPECT_TRUE(queue.empty());
}

TEST(VirtualKeys, NoTwoKeysShareACodeExceptTwins)
{
    std::map<USHORT, std::vector<int>> keys;
    for (int scancode = 0; scancode < SDL_NUM_SCANCODES; ++scancode)
        if (const USHORT key = port::keyCodeOf(scancode).virtualKey)
            keys[key].push_back(scancode);

    for (const USHORT twin : {VK_SHIFT, VK_CONTROL, VK_MENU, VK_RETURN, VK_OEM_5, VK_VOLUME_MUTE, VK_KANA})
    {
        EXPECT_EQ(keys[twin].size(), 2u) << "key " << twin;
        keys.erase(twin);
    }
    for (const auto &[key, scancodes] : keys)
        EXPECT_EQ(scancodes.size(), 1u) << "key " << key;
}

TEST(VirtualKeys, FollowThePublishedNumbers)
{
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_Z).virtualKey, 'Z');
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_0).virtualKey, '0');
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_9).virtualKey, '9');
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_F12).virtualKey, 0x7B);
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_F24).virtualKey, 0x87);
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_KP_9).virtualKey, 0x69);
    EXPECT_EQ(port::keyCodeOf(SDL_SCANCODE_GRAVE).virtualKey, 0xC0);
    EXPECT_EQ(port::keyCodeOf(-1).virtualKey, 0);
    EXPECT_EQ(port::keyCodeOf(SDL_NUM_SCANCODES).virtualKey, 0);
}
