#include "port/win32/RawInput.h"

#include "port/win32/Messages.h"

namespace port
{

RAWINPUT keyInput(USHORT virtualKey, bool down)
{
    RAWINPUT input;
    input.header.dwType = RIM_TYPEKEYBOARD;
    input.header.dwSize = sizeof(RAWINPUT);
    input.data.keyboard = RAWKEYBOARD();
    input.data.keyboard.VKey = virtualKey;
    input.data.keyboard.Flags = down ? RI_KEY_MAKE : RI_KEY_BREAK;
    input.data.keyboard.Message = down ? WM_KEYDOWN : WM_KEYUP;
    return input;
}

RAWINPUT mouseInput(LONG dx, LONG dy, USHORT buttonFlags, SHORT wheel)
{
    RAWINPUT input;
    input.header.dwType = RIM_TYPEMOUSE;
    input.header.dwSize = sizeof(RAWINPUT);
    input.data.mouse = RAWMOUSE();
    input.data.mouse.usButtonFlags = static_cast<USHORT>(wheel ? buttonFlags | RI_MOUSE_WHEEL : buttonFlags);
    input.data.mouse.usButtonData = static_cast<USHORT>(wheel);
    input.data.mouse.lLastX = dx;
    input.data.mouse.lLastY = dy;
    return input;
}

} // namespace port
