#include "platform/window/ModeComparator.h"

#include <algorithm>
#include <cmath>

namespace
{
DEVMODEA storedSettings()
{
    DEVMODEA settings;
    EnumDisplaySettingsA(nullptr, ENUM_REGISTRY_SETTINGS, &settings);
    return settings;
}

int area(const DisplayMode &mode)
{
    return mode.width * mode.height;
}
} // namespace

ModeComparator::ModeComparator() : ModeComparator(storedSettings()) {}

ModeComparator::ModeComparator(const DEVMODEA &desktop_)
    : desktop(desktop_), desktopAspect(static_cast<float>(desktop.dmPelsWidth) /
                                       static_cast<float>(std::max<DWORD>(desktop.dmPelsHeight, 1))),
      desktopArea(static_cast<int>(desktop.dmPelsWidth * desktop.dmPelsHeight))
{
}

bool ModeComparator::operator()(const DisplayMode &a, const DisplayMode &b) const
{
    const bool aFits = area(a) <= desktopArea;
    const bool bFits = area(b) <= desktopArea;
    if (aFits != bFits)
        return aFits;
    const float aScore = aspectScore(a);
    const float bScore = aspectScore(b);
    if (aScore != bScore)
        return aScore < bScore;
    if (area(a) != area(b))
        return area(a) > area(b);
    return a.refreshRate > b.refreshRate;
}

float ModeComparator::aspectScore(const DisplayMode &mode) const
{
    return std::fabs(static_cast<float>(mode.width) / static_cast<float>(mode.height) - desktopAspect);
}
