#include "port/win32/SdlVideo.h"

#include "port/win32/Diagnostics.h"

#include <SDL.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace port
{

namespace
{
SdlVideo *startedVideo = nullptr;
/// By which a desktop knows the game's windows, as its .desktop file names them.
constexpr const char *WINDOW_CLASS = "mornal";

bool isSet(const char *variable)
{
    const char *value = std::getenv(variable);
    return value && *value && std::strcmp(value, "0") != 0;
}

bool startDriver(const char *name)
{
    if (name)
        SDL_SetHintWithPriority(SDL_HINT_VIDEODRIVER, name, SDL_HINT_OVERRIDE);
    return SDL_InitSubSystem(SDL_INIT_VIDEO) == 0;
}

bool currentDriverIsOffscreen()
{
    const char *name = SDL_GetCurrentVideoDriver();
    return name && (std::strcmp(name, "offscreen") == 0 || std::strcmp(name, "dummy") == 0);
}

int rateOrUsual(int refreshRate)
{
    return refreshRate > 0 ? refreshRate : 60;
}

bool sameMode(const DisplayMode &a, const DisplayMode &b)
{
    return a.width == b.width && a.height == b.height && a.refreshRate == b.refreshRate;
}
} // namespace

bool displayIsExpected()
{
    return !isSet("KAVEL_HEADLESS") && (isSet("SDL_VIDEODRIVER") || isSet("DISPLAY") || isSet("WAYLAND_DISPLAY"));
}

SdlVideo &SdlVideo::get()
{
    static SdlVideo video;
    return video;
}

SdlVideo *SdlVideo::started()
{
    return startedVideo;
}

SdlVideo::SdlVideo()
{
    // The loop ends by WM_CLOSE of its window, and what asks the process to end is heard by EndRequests.
    SDL_SetHint(SDL_HINT_QUIT_ON_LAST_WINDOW_CLOSE, "0");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_APP_NAME, "Mornal");
    setenv("SDL_VIDEO_X11_WMCLASS", WINDOW_CLASS, 0);
    setenv("SDL_VIDEO_WAYLAND_WMCLASS", WINDOW_CLASS, 0);

    running = displayIsExpected() && startDriver(nullptr);
    if (!running)
        running = startDriver("offscreen");
    startedVideo = this;
    if (!running)
    {
        OutputDebugStringA((std::string("Error: No video driver: ") + SDL_GetError() + "\n").c_str());
        listOffscreenModes();
        return;
    }

    offscreen = currentDriverIsOffscreen();
    if (offscreen)
    {
        OutputDebugStringA("Information: No display: running off-screen.\n");
        listOffscreenModes();
        return;
    }
    listHostModes();
}

SdlVideo::~SdlVideo()
{
    startedVideo = nullptr;
    if (running)
        SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

void SdlVideo::listHostModes()
{
    SDL_DisplayMode mode;
    if (SDL_GetDesktopDisplayMode(0, &mode) == 0)
        desktopMode = {mode.w, mode.h, rateOrUsual(mode.refresh_rate)};

    modeList.push_back(desktopMode);
    for (int i = 0; i < SDL_GetNumDisplayModes(0); ++i)
    {
        if (SDL_GetDisplayMode(0, i, &mode) != 0)
            continue;
        const DisplayMode found{mode.w, mode.h, rateOrUsual(mode.refresh_rate)};
        const auto same = [&found](const DisplayMode &known) { return sameMode(known, found); };
        if (std::none_of(modeList.begin(), modeList.end(), same))
            modeList.push_back(found);
    }
}

void SdlVideo::listOffscreenModes()
{
    // Sizes of common screens, so that a run without a display can show what a player with one would see.
    for (const auto &[width, height] : {std::pair{640, 360},
                                        {640, 480},
                                        {800, 600},
                                        {960, 540},
                                        {1024, 768},
                                        {1280, 720},
                                        {1280, 1024},
                                        {1600, 900},
                                        {1920, 1080},
                                        {2560, 1440}})
        modeList.push_back({width, height, 60});
}

} // namespace port
