// SdlVideo: the host's video driver, on a display or off-screen, and its modes.
#pragma once

#include "port/win32/Display.h"

#include <vector>

namespace port
{

/// Whether the environment promises a display: one is named, and nobody asked for a run without.
bool displayIsExpected();

/// The video driver: started on first demand, once for the process.
///
/// Without a display (no DISPLAY and no WAYLAND_DISPLAY, or KAVEL_HEADLESS set, or a display that cannot be opened) it
/// runs off-screen and says so once in the debug output. SDL_VIDEODRIVER names a driver outright.
class SdlVideo
{
public:
    /// The one driver, started now if it was not.
    static SdlVideo &get();
    /// The one driver if it has been started; null otherwise.
    static SdlVideo *started();

    ~SdlVideo();

    /// Whether there is a driver at all.
    bool works() const { return running; }
    bool isOffscreen() const { return offscreen; }
    /// The desktop's mode.
    const DisplayMode &desktop() const { return desktopMode; }
    /// All modes, the desktop's among them, without doubles.
    const std::vector<DisplayMode> &modes() const { return modeList; }

private:
    SdlVideo();
    void listHostModes();
    void listOffscreenModes();

    bool running = false;
    bool offscreen = false;
    DisplayMode desktopMode{1280, 720, 60};
    std::vector<DisplayMode> modeList;
};

} // namespace port
