// OffscreenWindow: a window without a display, and a record of what its procedure was told.
#pragma once

#include "port/win32/SdlWindow.h"
#include "port/win32/Win32Platform.h"

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <vector>

/// A visible window of 640x360 with raw keyboard and mouse, and the loop that serves it.
class OffscreenWindow : public testing::Test
{
protected:
    static constexpr int QUIT_VALUE = 7;

    OffscreenWindow()
    {
        setenv("KAVEL_HEADLESS", "1", 1);
        heard.clear();
        WNDCLASSEXA windowClass;
        windowClass.lpfnWndProc = listen;
        windowClass.lpszClassName = "OffscreenWindow";
        RegisterClassExA(&windowClass);
        hWnd = CreateWindowExA(0, "OffscreenWindow", "test", WS_VISIBLE | WS_CAPTION, 100, 50, 640, 360, nullptr,
                               nullptr, nullptr, nullptr);
        const RAWINPUTDEVICE devices[] = {{HID_USAGE_PAGE_GENERIC, HID_USAGE_GENERIC_KEYBOARD, 0, nullptr},
                                          {HID_USAGE_PAGE_GENERIC, HID_USAGE_GENERIC_MOUSE, 0, nullptr}};
        RegisterRawInputDevices(devices, 2, sizeof(RAWINPUTDEVICE));
        UpdateWindow(hWnd);
        drain();
        heard.clear();
    }

    ~OffscreenWindow() override
    {
        DestroyWindow(hWnd);
        UnregisterClassA("OffscreenWindow", nullptr);
        drain();
    }

    /// Runs the loop until it is empty or meets WM_QUIT, which it returns.
    std::optional<MSG> drain()
    {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
        {
            TranslateMessage(&msg);
            DispatchMessageA(&msg);
            if (msg.message == WM_QUIT)
                return msg;
        }
        return std::nullopt;
    }

    void push(SDL_Event event) { SDL_PushEvent(&event); }

    void pushWindowEvent(Uint8 kind)
    {
        SDL_Event event{};
        event.window.type = SDL_WINDOWEVENT;
        event.window.windowID = SDL_GetWindowID(port::sdlWindow(hWnd));
        event.window.event = kind;
        push(event);
    }

    void pushKey(SDL_Scancode scancode, bool down, bool repeat = false, Uint16 modifiers = KMOD_NONE)
    {
        SDL_Event event{};
        event.key.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.windowID = SDL_GetWindowID(port::sdlWindow(hWnd));
        event.key.state = down ? SDL_PRESSED : SDL_RELEASED;
        event.key.repeat = repeat;
        event.key.keysym.scancode = scancode;
        event.key.keysym.mod = modifiers;
        push(event);
    }

    struct Heard
    {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        RAWINPUT raw; ///< of WM_INPUT
    };

    static std::vector<Heard> heardOf(UINT message)
    {
        std::vector<Heard> found;
        for (const Heard &entry : heard)
            if (entry.message == message)
                found.push_back(entry);
        return found;
    }

    HWND hWnd = nullptr;
    static inline std::vector<Heard> heard;

private:
    static LRESULT CALLBACK listen(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam)
    {
        Heard entry{message, wParam, lParam, RAWINPUT()};
        UINT size = sizeof(RAWINPUT);
        if (message == WM_INPUT)
            GetRawInputData(reinterpret_cast<HRAWINPUT>(lParam), RID_INPUT, &entry.raw, &size, sizeof(RAWINPUTHEADER));
        heard.push_back(entry);
        if (message == WM_DESTROY)
            PostQuitMessage(QUIT_VALUE);
        return DefWindowProcA(hWnd, message, wParam, lParam);
    }
};
