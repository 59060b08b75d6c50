// The host's events as window messages.
#include "port/win32/SdlPlatform.h"

#include "port/process/EndRequests.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/SdlKeys.h"
#include "port/win32/SdlVideo.h"
#include "port/win32/WideText.h"

#include <SDL.h>

#include <cmath>
#include <cstring>
#include <utility>

namespace port
{

namespace
{
/// What shells add to a signal's number to tell of a process that it ended.
constexpr int EXIT_CODE_OF_SIGNAL = 128;

/// Names of the devices in raw input records; only their difference from null and each other counts.
const HANDLE hostKeyboard = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(1));
const HANDLE hostMouse = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(2));

/// What a mouse button is in raw input and in messages, by SDL's number less one.
struct MouseButton
{
    USHORT rawDown;
    USHORT rawUp;
    UINT messageDown;
    UINT messageUp;
    WORD held;   ///< its bit in the state word of mouse messages
    WORD number; ///< 1 or 2 where two buttons share a message
};

constexpr MouseButton mouseButtons[] = {
    {RI_MOUSE_LEFT_BUTTON_DOWN, RI_MOUSE_LEFT_BUTTON_UP, WM_LBUTTONDOWN, WM_LBUTTONUP, 0x0001, 0},
    {RI_MOUSE_MIDDLE_BUTTON_DOWN, RI_MOUSE_MIDDLE_BUTTON_UP, WM_MBUTTONDOWN, WM_MBUTTONUP, 0x0010, 0},
    {RI_MOUSE_RIGHT_BUTTON_DOWN, RI_MOUSE_RIGHT_BUTTON_UP, WM_RBUTTONDOWN, WM_RBUTTONUP, 0x0002, 0},
    {RI_MOUSE_BUTTON_4_DOWN, RI_MOUSE_BUTTON_4_UP, WM_XBUTTONDOWN, WM_XBUTTONUP, 0x0020, 1},
    {RI_MOUSE_BUTTON_5_DOWN, RI_MOUSE_BUTTON_5_UP, WM_XBUTTONDOWN, WM_XBUTTONUP, 0x0040, 2},
};

WORD heldButtonsAndModifiers()
{
    constexpr WORD shiftHeld = 0x0004;
    constexpr WORD controlHeld = 0x0008;

    const Uint32 pressed = SDL_GetMouseState(nullptr, nullptr);
    WORD held = 0;
    for (unsigned i = 0; i < std::size(mouseButtons); ++i)
        if (pressed & SDL_BUTTON(i + 1))
            held |= mouseButtons[i].held;
    const SDL_Keymod modifiers = SDL_GetModState();
    if (modifiers & KMOD_SHIFT)
        held |= shiftHeld;
    if (modifiers & KMOD_CTRL)
        held |= controlHeld;
    return held;
}

WPARAM stateAnd(WORD high)
{
    return heldButtonsAndModifiers() | static_cast<WPARAM>(high) << 16;
}

/// The lParam of a key message: one press, the scan code, and the flags of what was and is.
LPARAM keyDetails(const SDL_KeyboardEvent &event, bool extended)
{
    const bool up = event.state == SDL_RELEASED;
    DWORD details = 1u | (static_cast<DWORD>(event.keysym.scancode) & 0xFF) << 16;
    if (extended)
        details |= 1u << 24;
    if (up || event.repeat)
        details |= 1u << 30;
    if (up)
        details |= 1u << 31;
    return static_cast<LPARAM>(details);
}
} // namespace

BOOL SdlPlatform::PeekMessageA(LPMSG msg, HWND hWnd, UINT first, UINT last, UINT removeMsg)
{
    if (!msg)
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    pumpEvents();
    if (const std::optional<MSG> found = queue.next(hWnd, first, last, (removeMsg & PM_REMOVE) != 0))
        *msg = *found;
    else if (!paintMessage(msg, hWnd, first, last))
    {
        // Who reads along sees the log as of this frame, not as of the next line.
        flushDebugOutput();
        return FALSE;
    }
    GetCursorPos(&msg->pt);
    return TRUE;
}

bool SdlPlatform::paintMessage(LPMSG msg, HWND hWnd, UINT first, UINT last)
{
    const bool wanted = (first == 0 && last == 0) || (first <= WM_PAINT && WM_PAINT <= last);
    for (const Window &window : windows)
    {
        if (!wanted || !window.needsPaint || (hWnd && hWnd != window.handle))
            continue;
        *msg = MSG();
        msg->hwnd = window.handle;
        msg->message = WM_PAINT;
        msg->time = SDL_GetTicks();
        return true;
    }
    return false;
}

BOOL SdlPlatform::TranslateMessage(const MSG *msg)
{
    if (!msg || msg->message < WM_KEYDOWN || msg->message > WM_SYSKEYUP || msg->message == WM_CHAR)
        return FALSE;
    const WPARAM key = msg->wParam;
    const bool control = key == VK_BACK || key == VK_TAB || key == VK_RETURN || key == VK_ESCAPE;
    if (msg->message == WM_KEYDOWN && control)
        postTo(msg->hwnd, WM_CHAR, key, msg->lParam);
    return TRUE;
}

void SdlPlatform::Sleep(DWORD milliseconds)
{
    SDL_Delay(milliseconds);
}

DWORD SdlPlatform::MsgWaitForMultipleObjects(DWORD count, const HANDLE *, BOOL, DWORD milliseconds, DWORD)
{
    if (count != 0)
    {
        SetLastError(ERROR_CALL_NOT_IMPLEMENTED);
        return WAIT_FAILED;
    }
    if (!queue.empty())
        return WAIT_OBJECT_0;
    if (!SdlVideo::get().works())
    {
        SDL_Delay(milliseconds);
        return WAIT_TIMEOUT;
    }
    return SDL_WaitEventTimeout(nullptr, static_cast<int>(milliseconds)) ? WAIT_OBJECT_0 : WAIT_TIMEOUT;
}

LRESULT SdlPlatform::DispatchMessageA(const MSG *msg)
{
    if (!msg || !msg->hwnd)
        return 0;
    return SendMessageA(msg->hwnd, msg->message, msg->wParam, msg->lParam);
}

LRESULT SdlPlatform::SendMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window *window = find(hWnd);
    return window ? window->procedure(hWnd, message, wParam, lParam) : 0;
}

BOOL SdlPlatform::PostMessageA(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (hWnd && !find(hWnd))
        return FALSE;
    postTo(hWnd, message, wParam, lParam);
    return TRUE;
}

void SdlPlatform::PostQuitMessage(int exitCode)
{
    queue.postQuit(exitCode);
}

void SdlPlatform::postTo(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    MSG msg;
    msg.hwnd = hWnd;
    msg.message = message;
    msg.wParam = wParam;
    msg.lParam = lParam;
    msg.time = SDL_GetTicks();
    queue.post(msg);
}

void SdlPlatform::pumpEvents()
{
    if (const int signal = takeEndRequest())
        endOnRequest(signal);
    if (!SdlVideo::started() || !SdlVideo::started()->works())
        return;
    SDL_Event event;
    while (SDL_PollEvent(&event))
        handleEvent(event);
}

void SdlPlatform::endOnRequest(int signal)
{
    // Nobody sees the windows of an off-screen run close: its exit code tells that it did not come to its own end.
    if (windows.empty() || isOffscreen())
        PostQuitMessage(EXIT_CODE_OF_SIGNAL + signal);
    else
        closeAllWindows();
}

void SdlPlatform::closeAllWindows()
{
    for (const Window &window : windows)
        postTo(window.handle, WM_CLOSE, 0, 0);
}

void SdlPlatform::handleEvent(const SDL_Event &event)
{
    switch (event.type)
    {
    case SDL_QUIT:
        // The desktop asks every window to close, as its button would.
        closeAllWindows();
        if (windows.empty())
            PostQuitMessage(0);
        break;
    case SDL_WINDOWEVENT:
        handleWindowEvent(event.window);
        break;
    case SDL_KEYDOWN:
    case SDL_KEYUP:
        handleKey(event.key);
        break;
    case SDL_TEXTINPUT:
        handleText(event.text);
        break;
    case SDL_MOUSEMOTION:
        handleMotion(event.motion);
        break;
    case SDL_MOUSEBUTTONDOWN:
    case SDL_MOUSEBUTTONUP:
        handleButton(event.button);
        break;
    case SDL_MOUSEWHEEL:
        handleWheel(event.wheel);
        break;
    default:
        break;
    }
}

void SdlPlatform::handleWindowEvent(const SDL_WindowEvent &event)
{
    Window *window = findNative(event.windowID);
    if (!window)
        return;
    const HWND handle = window->handle;
    switch (event.event)
    {
    case SDL_WINDOWEVENT_CLOSE:
        postTo(handle, WM_CLOSE, 0, 0);
        break;
    case SDL_WINDOWEVENT_FOCUS_GAINED:
        activate(handle, true);
        break;
    case SDL_WINDOWEVENT_FOCUS_LOST:
        activate(handle, false);
        break;
    case SDL_WINDOWEVENT_EXPOSED:
        window->needsPaint = true;
        break;
    case SDL_WINDOWEVENT_SIZE_CHANGED:
    case SDL_WINDOWEVENT_MINIMIZED:
    case SDL_WINDOWEVENT_MAXIMIZED:
    case SDL_WINDOWEVENT_RESTORED:
    case SDL_WINDOWEVENT_SHOWN:
        tellSize(*window);
        break;
    default:
        break;
    }
}

void SdlPlatform::tellSize(const Window &window)
{
    const Uint32 flags = SDL_GetWindowFlags(window.native);
    if (flags & SDL_WINDOW_MINIMIZED)
    {
        SendMessageA(window.handle, WM_SIZE, SIZE_MINIMIZED, 0);
        return;
    }
    int width = 0;
    int height = 0;
    SDL_GetWindowSize(window.native, &width, &height);
    SendMessageA(window.handle, WM_SIZE, flags & SDL_WINDOW_MAXIMIZED ? SIZE_MAXIMIZED : SIZE_RESTORED,
                 MAKELPARAM(static_cast<DWORD>(width), static_cast<DWORD>(height)));
}

void SdlPlatform::activate(HWND hWnd, bool active)
{
    if ((activeWindow == hWnd) == active)
        return;
    activeWindow = active ? hWnd : nullptr;
    if (active)
    {
        SendMessageA(hWnd, WM_ACTIVATEAPP, TRUE, 0);
        SendMessageA(hWnd, WM_NCACTIVATE, TRUE, 0);
        SendMessageA(hWnd, WM_ACTIVATE, WA_ACTIVE, 0);
        SendMessageA(hWnd, WM_SETFOCUS, 0, 0);
        return;
    }
    holdCursor(false);
    SendMessageA(hWnd, WM_NCACTIVATE, FALSE, 0);
    SendMessageA(hWnd, WM_ACTIVATE, WA_INACTIVE, 0);
    SendMessageA(hWnd, WM_ACTIVATEAPP, FALSE, 0);
    SendMessageA(hWnd, WM_KILLFOCUS, 0, 0);
}

HWND SdlPlatform::inputTarget(unsigned sdlWindowId)
{
    const Window *window = findNative(sdlWindowId);
    if (window)
        return window->handle;
    return activeWindow || windows.empty() ? activeWindow : windows.front().handle;
}

void SdlPlatform::handleKey(const SDL_KeyboardEvent &event)
{
    const KeyCode key = keyCodeOf(event.keysym.scancode);
    const HWND target = inputTarget(event.windowID);
    if (!key.virtualKey || !target)
        return;

    const bool down = event.state == SDL_PRESSED;
    const bool withAlt = (event.keysym.mod & KMOD_ALT) != 0;
    const UINT message = down ? (withAlt ? WM_SYSKEYDOWN : WM_KEYDOWN) : (withAlt ? WM_SYSKEYUP : WM_KEYUP);
    if (keyboard.registered)
    {
        RAWINPUT input = keyInput(key.virtualKey, down);
        input.header.hDevice = hostKeyboard;
        input.data.keyboard.MakeCode = static_cast<USHORT>(event.keysym.scancode);
        input.data.keyboard.Flags |= key.extended ? RI_KEY_E0 : 0;
        input.data.keyboard.Message = message;
        postDeviceInput(target, input);
    }
    if (!keyboard.noLegacy)
        postTo(target, message, key.virtualKey, keyDetails(event, key.extended));
}

void SdlPlatform::handleText(const SDL_TextInputEvent &event)
{
    WCHAR units[SDL_TEXTINPUTEVENT_TEXT_SIZE];
    const int length = static_cast<int>(strnlen(event.text, sizeof(event.text)));
    const int count = MultiByteToWideChar(CP_UTF8, 0, event.text, length, units, static_cast<int>(std::size(units)));
    const HWND target = inputTarget(event.windowID);
    for (int i = 0; target && !keyboard.noLegacy && i < count; ++i)
        postTo(target, WM_CHAR, units[i], 1);
}

void SdlPlatform::forgetComposition()
{
    if (!SDL_IsTextInputActive())
        return;
    SDL_StopTextInput();
    SDL_StartTextInput();
}

bool SdlPlatform::hearsMouse(HWND target) const
{
    return mouse.registered && target == activeWindow;
}

void SdlPlatform::handleMotion(const SDL_MouseMotionEvent &event)
{
    const HWND target = inputTarget(event.windowID);
    if (!target)
        return;
    // Putting the cursor somewhere moves it, but not the mouse.
    if (hearsMouse(target) && (event.xrel != 0 || event.yrel != 0))
    {
        RAWINPUT input = mouseInput(event.xrel, event.yrel);
        input.header.hDevice = hostMouse;
        postDeviceInput(target, input);
    }
    SendMessageA(target, WM_SETCURSOR, reinterpret_cast<WPARAM>(target), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    if (!mouse.noLegacy && !cursorHeld)
        postTo(target, WM_MOUSEMOVE, stateAnd(0), MAKELPARAM(event.x, event.y));
}

void SdlPlatform::handleButton(const SDL_MouseButtonEvent &event)
{
    const HWND target = inputTarget(event.windowID);
    if (!target || event.button < 1 || event.button > std::size(mouseButtons))
        return;
    const MouseButton &button = mouseButtons[event.button - 1];
    const bool down = event.state == SDL_PRESSED;
    // A button that was pressed in front and let go behind must not stay down.
    if (hearsMouse(target) || (mouse.registered && !down))
    {
        RAWINPUT input = mouseInput(0, 0, down ? button.rawDown : button.rawUp);
        input.header.hDevice = hostMouse;
        postDeviceInput(target, input);
    }
    if (!mouse.noLegacy)
        postTo(target, down ? button.messageDown : button.messageUp, stateAnd(button.number),
               MAKELPARAM(event.x, event.y));
}

void SdlPlatform::handleWheel(const SDL_MouseWheelEvent &event)
{
    const HWND target = inputTarget(event.windowID);
    const float notches = event.direction == SDL_MOUSEWHEEL_FLIPPED ? -event.preciseY : event.preciseY;
    const auto turned = static_cast<SHORT>(std::lround(notches * WHEEL_DELTA));
    if (!target || turned == 0)
        return;
    if (hearsMouse(target))
    {
        RAWINPUT input = mouseInput(0, 0, 0, turned);
        input.header.hDevice = hostMouse;
        postDeviceInput(target, input);
    }
    POINT place{0, 0};
    GetCursorPos(&place);
    if (!mouse.noLegacy)
        postTo(target, WM_MOUSEWHEEL, stateAnd(static_cast<WORD>(turned)), MAKELPARAM(place.x, place.y));
}

BOOL SdlPlatform::RegisterRawInputDevices(const RAWINPUTDEVICE *devices, UINT count, UINT size)
{
    if (!devices || count == 0 || size != sizeof(RAWINPUTDEVICE))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    for (UINT i = 0; i < count; ++i)
    {
        RawDevice *device = rawDevice(devices[i].usUsagePage, devices[i].usUsage);
        if (!device)
            continue;
        device->registered = (devices[i].dwFlags & RIDEV_REMOVE) == 0;
        device->noLegacy = device->registered && (devices[i].dwFlags & RIDEV_NOLEGACY) == RIDEV_NOLEGACY;
    }
    return TRUE;
}

SdlPlatform::RawDevice *SdlPlatform::rawDevice(USHORT usagePage, USHORT usage)
{
    if (usagePage != HID_USAGE_PAGE_GENERIC)
        return nullptr;
    if (usage == HID_USAGE_GENERIC_KEYBOARD)
        return &keyboard;
    return usage == HID_USAGE_GENERIC_MOUSE ? &mouse : nullptr;
}

UINT SdlPlatform::GetRawInputData(HRAWINPUT rawInput, UINT command, LPVOID data, PUINT size, UINT headerSize)
{
    constexpr UINT failed = static_cast<UINT>(-1);
    if (!size || headerSize != sizeof(RAWINPUTHEADER) || (command != RID_INPUT && command != RID_HEADER))
    {
        SetLastError(ERROR_INVALID_PARAMETER);
        return failed;
    }
    const RAWINPUT *record = queue.rawInput(rawInput);
    if (!record)
    {
        SetLastError(ERROR_INVALID_HANDLE);
        return failed;
    }

    const UINT needed = command == RID_INPUT ? sizeof(RAWINPUT) : sizeof(RAWINPUTHEADER);
    const UINT room = std::exchange(*size, needed);
    if (!data)
        return 0;
    if (room < needed)
    {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return failed;
    }
    std::memcpy(data, record, needed);
    return needed;
}

void SdlPlatform::postDeviceInput(HWND hWnd, const RAWINPUT &input)
{
    queue.postInput(hWnd, input, SDL_GetTicks());
}

bool SdlPlatform::postRawInput(const RAWINPUT &input)
{
    const HWND target = inputTarget(0);
    if (!target)
        return false;
    postDeviceInput(target, input);
    return true;
}

} // namespace port
