// Display: the screen's size and its modes.
//
// Operations carry their published names and meaning; each is forwarded to the platform in place, see Win32Platform.h.
#pragma once

#include "port/win32/WinTypes.h"

#include <vector>

constexpr int SM_CXSCREEN = 0;
constexpr int SM_CYSCREEN = 1;
constexpr int SM_CYCAPTION = 4;
constexpr int SM_CXSIZEFRAME = 32;
constexpr int SM_CYSIZEFRAME = 33;
constexpr int SM_CMONITORS = 80;

constexpr UINT SPI_GETWORKAREA = 0x0030;

constexpr DWORD ENUM_CURRENT_SETTINGS = 0xFFFFFFFF;
constexpr DWORD ENUM_REGISTRY_SETTINGS = 0xFFFFFFFE;

/// Settings of a display; only what the engine reads of the published record.
struct DEVMODEA
{
    WORD dmSize = sizeof(DEVMODEA);
    DWORD dmBitsPerPel = 0;
    DWORD dmPelsWidth = 0;        ///< pixels
    DWORD dmPelsHeight = 0;       ///< pixels
    DWORD dmDisplayFrequency = 0; ///< hertz
};

/// A mode of the first display by number, or its present or stored settings.
///
/// The host knows no stored settings apart from the present ones, so both are the desktop's mode.
/// @param deviceName  null for the first display; no other is known
/// @return false where there is no such mode
BOOL EnumDisplaySettingsA(LPCSTR deviceName, DWORD modeNum, DEVMODEA *mode);

/// A monitor as the desktop has it, screen pixels; only what the engine reads of the published record.
struct MONITORINFO
{
    DWORD cbSize = sizeof(MONITORINFO);
    RECT rcMonitor{}; ///< all of it
    RECT rcWork{};    ///< without panels
    DWORD dwFlags = 0;
};

constexpr DWORD MONITORINFOF_PRIMARY = 1;

typedef BOOL(CALLBACK *MONITORENUMPROC)(HMONITOR monitor, HDC context, LPRECT rect, LPARAM data);

/// Tells of every monitor, the first one first, until `told` returns FALSE; off-screen there is none.
/// @param context  null, as the rectangle: all monitors, on the screen
BOOL EnumDisplayMonitors(HDC context, LPCRECT clip, MONITORENUMPROC told, LPARAM data);
/// @return false for a handle that is no monitor's, or not any more
BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO *info);

/// A measure of the system, of those named SM_ above; 0 for any other.
///
/// The frame is measured at a window that the host shows; before there is one it is guessed, and off-screen it is 0.
int GetSystemMetrics(int index);

/// SPI_GETWORKAREA gives the desktop without its panels, a RECT in screen pixels.
/// @return false for any other action, and off-screen, where there is no desktop
BOOL SystemParametersInfoA(UINT action, UINT parameter, PVOID data, UINT change);

namespace port
{

struct DisplayMode
{
    int width;       ///< pixels
    int height;      ///< pixels
    int refreshRate; ///< hertz
};

/// The modes of the first display, without doubles; never empty. Off-screen a fixed list around 1280x720.
const std::vector<DisplayMode> &displayModes();

} // namespace port
