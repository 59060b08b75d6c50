// TweakBar: the calls that the engine makes into the library of the debug bars, and the seam that it hangs on.
#pragma once

#include "port/win32/WinTypes.h"

enum TwGraphAPI
{
    TW_OPENGL = 1,
    TW_DIRECT3D9 = 2
};

/// Brings the bars up for a device; 1, or 0 where they cannot be.
int TwInit(TwGraphAPI graphAPI, void *device);
/// Tells the size to lay the bars out in, pixels; 0 and 0 mean that the device is lost.
int TwWindowSize(int width, int height);
/// Draws all bars; 1, or 0 on failure.
int TwDraw();
/// Shows the bars a window message.
/// @return 1 where a bar consumed it and nobody else should see it
int TwEventWin(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam);
/// Takes the bars down.
int TwTerminate();

namespace port
{

/// What draws the bars. Without one there are none: they cannot be brought up, and consume nothing.
class TweakBarBackend
{
public:
    virtual ~TweakBarBackend() = default;

    virtual bool init(TwGraphAPI graphAPI, void *device) = 0;
    virtual void windowSize(int width, int height) = 0;
    virtual bool draw() = 0;
    /// Whether a bar consumed the message.
    virtual bool event(HWND wnd, UINT msg, WPARAM wParam, LPARAM lParam) = 0;
    virtual void terminate() = 0;
};

/// Installs what draws the bars, or takes it out with null; borrowed.
void installTweakBarBackend(TweakBarBackend *backend);

} // namespace port
