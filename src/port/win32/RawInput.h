// RawInput: keyboard and mouse as their hardware reports them, and how to stand in for it.
//
// Operations carry their published names and meaning; each is forwarded to the platform in place, see Win32Platform.h.
#pragma once

#include "port/win32/VirtualKeys.h"
#include "port/win32/WinTypes.h"

constexpr USHORT HID_USAGE_PAGE_GENERIC = 0x01;
constexpr USHORT HID_USAGE_GENERIC_MOUSE = 0x02;
constexpr USHORT HID_USAGE_GENERIC_JOYSTICK = 0x04;
constexpr USHORT HID_USAGE_GENERIC_KEYBOARD = 0x06;

constexpr DWORD RIDEV_REMOVE = 0x00000001;
constexpr DWORD RIDEV_NOLEGACY = 0x00000030;

constexpr DWORD RIM_TYPEMOUSE = 0;
constexpr DWORD RIM_TYPEKEYBOARD = 1;
constexpr WPARAM RIM_INPUT = 0;

constexpr UINT RID_INPUT = 0x10000003;
constexpr UINT RID_HEADER = 0x10000005;

constexpr USHORT RI_KEY_MAKE = 0;
constexpr USHORT RI_KEY_BREAK = 1;
constexpr USHORT RI_KEY_E0 = 2;

constexpr USHORT MOUSE_MOVE_RELATIVE = 0;
constexpr USHORT MOUSE_MOVE_ABSOLUTE = 1;

constexpr USHORT RI_MOUSE_LEFT_BUTTON_DOWN = 0x0001;
constexpr USHORT RI_MOUSE_LEFT_BUTTON_UP = 0x0002;
constexpr USHORT RI_MOUSE_RIGHT_BUTTON_DOWN = 0x0004;
constexpr USHORT RI_MOUSE_RIGHT_BUTTON_UP = 0x0008;
constexpr USHORT RI_MOUSE_MIDDLE_BUTTON_DOWN = 0x0010;
constexpr USHORT RI_MOUSE_MIDDLE_BUTTON_UP = 0x0020;
constexpr USHORT RI_MOUSE_BUTTON_4_DOWN = 0x0040;
constexpr USHORT RI_MOUSE_BUTTON_4_UP = 0x0080;
constexpr USHORT RI_MOUSE_BUTTON_5_DOWN = 0x0100;
constexpr USHORT RI_MOUSE_BUTTON_5_UP = 0x0200;
constexpr USHORT RI_MOUSE_WHEEL = 0x0400;

/// One class of device whose input is asked for.
struct RAWINPUTDEVICE
{
    USHORT usUsagePage = 0;
    USHORT usUsage = 0;
    DWORD dwFlags = 0;         ///< RIDEV_ bits
    HWND hwndTarget = nullptr; ///< null: whichever window has the keyboard
};

struct RAWINPUTHEADER
{
    DWORD dwType = RIM_TYPEMOUSE;
    DWORD dwSize = 0;         ///< bytes of the whole record
    HANDLE hDevice = nullptr; ///< null for input that no device made
    WPARAM wParam = RIM_INPUT;
};

struct RAWMOUSE
{
    USHORT usFlags;       ///< MOUSE_MOVE_RELATIVE or MOUSE_MOVE_ABSOLUTE
    USHORT usButtonFlags; ///< RI_MOUSE_ bits, transitions of this record
    USHORT usButtonData;  ///< wheel motion as a signed number, WHEEL_DELTA a notch
    ULONG ulRawButtons;
    LONG lLastX; ///< motion to the right
    LONG lLastY; ///< motion downwards
    ULONG ulExtraInformation;
};

struct RAWKEYBOARD
{
    USHORT MakeCode; ///< the host's scan code
    USHORT Flags;    ///< RI_KEY_ bits
    USHORT Reserved;
    USHORT VKey;  ///< virtual-key code; left and right modifiers under one code
    UINT Message; ///< the window message of the same event
    ULONG ExtraInformation;
};

/// One event of a device.
struct RAWINPUT
{
    RAWINPUTHEADER header;
    union
    {
        RAWMOUSE mouse;
        RAWKEYBOARD keyboard;
    } data{};
};

/// Asks for WM_INPUT messages of some classes of device, or with RIDEV_REMOVE no longer.
///
/// A held key repeats, as real keyboards do: the receiver tells repeats by the key being down already. Without
/// RIDEV_NOLEGACY key and mouse messages arrive beside WM_INPUT.
/// @param size  bytes of one record
BOOL RegisterRawInputDevices(const RAWINPUTDEVICE *devices, UINT count, UINT size);

/// Copies the record behind the lParam of a WM_INPUT message, or tells its size where `data` is null.
///
/// The record is there until the message has been dealt with.
/// @return bytes copied; UINT(-1) on failure: ERROR_INVALID_HANDLE, ERROR_INSUFFICIENT_BUFFER
UINT GetRawInputData(HRAWINPUT rawInput, UINT command, LPVOID data, PUINT size, UINT headerSize);

namespace port
{

/// Puts an event in the queue as if a device had made it, for the window that has the keyboard.
///
/// Its `hDevice` stays as given: null marks it as made by no device. Replays and tests feed the game this way.
/// @return false while there is no window
bool postRawInput(const RAWINPUT &input);

/// The record of a key transition that no device made.
RAWINPUT keyInput(USHORT virtualKey, bool down);
/// The record of mouse motion, button transitions and wheel motion that no device made.
RAWINPUT mouseInput(LONG dx, LONG dy, USHORT buttonFlags = 0, SHORT wheel = 0);

} // namespace port
