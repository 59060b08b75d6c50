// ModeComparator: which of two display modes a player would rather have.
#pragma once

#include "port/win32/Display.h"

/// One mode of a display.
struct DisplayMode
{
    int height = 0;      ///< pixels
    int width = 0;       ///< pixels
    int refreshRate = 0; ///< hertz
};

/// Orders display modes, best first: those that fit the desktop before larger ones, then the nearer to the desktop's
/// aspect, then the bigger, then the faster.
class ModeComparator
{
public:
    /// For the desktop as the display's settings are stored.
    ModeComparator();
    /// For a desktop of these settings.
    explicit ModeComparator(const DEVMODEA &desktop);

    /// Whether a is to be preferred.
    bool operator()(const DisplayMode &a, const DisplayMode &b) const;

private:
    float aspectScore(const DisplayMode &mode) const;

    DEVMODEA desktop;
    float desktopAspect; ///< width / height
    int desktopArea;     ///< pixels
};
