// FakeWindow: a window of 800x400 for input that needs no real one.
#pragma once

#include "platform/window/InputWindow.h"
#include "port/win32/SdlPlatform.h"

/// Stands where the window system stands; the cursor is where the test puts it.
struct FakeWindow : InputWindow
{
    FakeWindow() { InputWindow::setCurrent(this); }
    ~FakeWindow() override { InputWindow::setCurrent(nullptr); }

    HWND getWindowHandle() const override { return nullptr; }
    int getHeight() const override { return 400; }
    bool isCursorRelative() const override { return relative; }
    void setCursorRelative(bool val) override { relative = val; }
    WindowCoordinate convertWindowCoordinate(const WindowCoordinate &in, WindowCoordinateSystem xTarget,
                                             WindowCoordinateSystem yTarget) const override
    {
        return in.convert(xTarget, yTarget, 800, 400, 800.0f);
    }

    bool relative = true;
};

/// Hands out the records that a test made, by the number that stands for the message's lParam.
struct FakeRawInput : port::SdlPlatform
{
    UINT GetRawInputData(HRAWINPUT rawInput, UINT, LPVOID data, PUINT size, UINT) override
    {
        if (reinterpret_cast<std::uintptr_t>(rawInput) != HANDLE_OF_RECORD)
            return static_cast<UINT>(-1);
        *static_cast<RAWINPUT *>(data) = record;
        return *size - missingBytes;
    }
    BOOL GetCursorPos(LPPOINT point) override
    {
        *point = cursor;
        return TRUE;
    }
    BOOL ScreenToClient(HWND, LPPOINT) override { return TRUE; }
    BOOL RegisterRawInputDevices(const RAWINPUTDEVICE *devices, UINT count, UINT) override
    {
        registered.assign(devices, devices + count);
        return TRUE;
    }
    bool postRawInput(const RAWINPUT &input) override
    {
        posted.push_back(input);
        return true;
    }
    void PostQuitMessage(int exitCode) override { quitValue = exitCode; }

    static constexpr std::uintptr_t HANDLE_OF_RECORD = 7;

    RAWINPUT record;
    UINT missingBytes = 0;
    POINT cursor{0, 0};
    std::vector<RAWINPUTDEVICE> registered;
    std::vector<RAWINPUT> posted;
    int quitValue = -1;
};
