// FakeRawInput: raw input and a cursor that a test makes up.
#pragma once

#include "port/win32/SdlPlatform.h"

#include <cstdlib>
#include <vector>

/// Hands out the records that a test made, by the number that stands for the message's lParam; windows are off-screen.
struct FakeRawInput : port::SdlPlatform
{
    FakeRawInput() { setenv("KAVEL_HEADLESS", "1", 1); }

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
