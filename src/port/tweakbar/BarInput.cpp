#include "port/tweakbar/BarInput.h"

#include "port/win32/Messages.h"
#include "port/win32/RawInput.h"

#include <algorithm>
#include <cfloat>
#include <imgui/imgui.h>
#include <utility>

namespace port
{

namespace
{
/// What a key of ours is to the library.
constexpr std::pair<ImGuiKey, USHORT> keyMap[] = {
    {ImGuiKey_Tab, VK_TAB},
    {ImGuiKey_LeftArrow, VK_LEFT},
    {ImGuiKey_RightArrow, VK_RIGHT},
    {ImGuiKey_UpArrow, VK_UP},
    {ImGuiKey_DownArrow, VK_DOWN},
    {ImGuiKey_PageUp, VK_PRIOR},
    {ImGuiKey_PageDown, VK_NEXT},
    {ImGuiKey_Home, VK_HOME},
    {ImGuiKey_End, VK_END},
    {ImGuiKey_Insert, VK_INSERT},
    {ImGuiKey_Delete, VK_DELETE},
    {ImGuiKey_Backspace, VK_BACK},
    {ImGuiKey_Space, VK_SPACE},
    {ImGuiKey_Enter, VK_RETURN},
    {ImGuiKey_Escape, VK_ESCAPE},
    {ImGuiKey_KeyPadEnter, VK_RETURN},
    {ImGuiKey_A, 'A'},
    {ImGuiKey_C, 'C'},
    {ImGuiKey_V, 'V'},
    {ImGuiKey_X, 'X'},
    {ImGuiKey_Y, 'Y'},
    {ImGuiKey_Z, 'Z'},
};

/// What the flags of a raw mouse record say of the buttons that bars use: left, right, middle, as the library counts.
constexpr std::pair<unsigned, unsigned> rawButtons[] = {
    {RI_MOUSE_LEFT_BUTTON_DOWN, RI_MOUSE_LEFT_BUTTON_UP},
    {RI_MOUSE_RIGHT_BUTTON_DOWN, RI_MOUSE_RIGHT_BUTTON_UP},
    {RI_MOUSE_MIDDLE_BUTTON_DOWN, RI_MOUSE_MIDDLE_BUTTON_UP},
};

int signedLow(LPARAM value)
{
    return static_cast<SHORT>(LOWORD(static_cast<ULONG_PTR>(value)));
}

int signedHigh(LPARAM value)
{
    return static_cast<SHORT>(HIWORD(static_cast<ULONG_PTR>(value)));
}
} // namespace

bool BarInput::event(UINT msg, WPARAM wParam, LPARAM lParam)
{
    if (msg >= WM_MOUSEMOVE && msg < WM_MOUSEWHEEL) // a press tells its place, too: the motion there may not have come
    {
        mouseX = signedLow(lParam);
        mouseY = signedHigh(lParam);
    }
    switch (msg)
    {
    case WM_MOUSEMOVE:
        return wantsMouse();
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
        return button(0, msg == WM_LBUTTONDOWN);
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
        return button(1, msg == WM_RBUTTONDOWN);
    case WM_MBUTTONDOWN:
    case WM_MBUTTONUP:
        return button(2, msg == WM_MBUTTONDOWN);
    case WM_MOUSEWHEEL:
        if (!wantsMouse())
            return false;
        ImGui::GetIO().MouseWheel += static_cast<float>(signedHigh(static_cast<LPARAM>(wParam))) / WHEEL_DELTA;
        return true;
    case WM_KEYDOWN:
    case WM_KEYUP:
    case WM_SYSKEYUP:
        return key(wParam, msg == WM_KEYDOWN);
    case WM_CHAR:
        if (!wantsKeyboard())
            return false;
        if (wParam >= ' ')
            ImGui::GetIO().AddInputCharacterUTF16(static_cast<ImWchar16>(wParam));
        return true;
    case WM_INPUT:
        return rawInput(lParam);
    case WM_KILLFOCUS:
        clear();
        return false;
    default:
        return false;
    }
}

bool BarInput::button(std::size_t index, bool down)
{
    if (down && index == 0 && picking && !wantsMouse())
    {
        picking = false;
        picked = true;
        pickX = mouseX;
        pickY = mouseY;
        taken[index] = held[index] = true; // its release is nobody else's business either
        return true;
    }
    if (down)
    {
        taken[index] = wantsMouse();
        clicked[index] = clicked[index] || taken[index];
        held[index] = true;
        return taken[index];
    }
    const bool wasTaken = taken[index];
    held[index] = taken[index] = false;
    return wasTaken;
}

bool BarInput::key(std::size_t virtualKey, bool down)
{
    if (virtualKey >= keysTaken.size())
        return false;
    const bool wasTaken = keysTaken[virtualKey];
    keysTaken[virtualKey] = down && wantsKeyboard();
    if (keysTaken[virtualKey])
        keysPressed[virtualKey] = true;
    return down ? keysTaken[virtualKey] : wasTaken;
}

bool BarInput::rawInput(LPARAM lParam)
{
    RAWINPUT input;
    UINT size = sizeof(input);
    if (GetRawInputData(reinterpret_cast<HRAWINPUT>(lParam), RID_INPUT, &input, &size, sizeof(RAWINPUTHEADER)) !=
        sizeof(input))
        return false;
    if (input.header.dwType == RIM_TYPEMOUSE)
        return rawMouse(input.data.mouse.usButtonFlags);
    const std::size_t virtualKey = input.data.keyboard.VKey;
    if (input.header.dwType != RIM_TYPEKEYBOARD || virtualKey >= rawKeysTaken.size())
        return false;
    const bool down = !(input.data.keyboard.Flags & RI_KEY_BREAK);
    const bool wasTaken = rawKeysTaken[virtualKey];
    // What is pressed with Alt is the window's, a text or not.
    rawKeysTaken[virtualKey] = down && wantsKeyboard() && input.data.keyboard.Message != WM_SYSKEYDOWN;
    return down ? rawKeysTaken[virtualKey] : wasTaken;
}

bool BarInput::rawMouse(unsigned flags)
{
    bool take = wantsMouse() || picking;
    for (std::size_t i = 0; i < BUTTONS; ++i)
    {
        const auto [down, up] = rawButtons[i];
        if (flags & down)
            rawTaken[i] = take;
        if (flags & up)
        {
            take = rawTaken[i];
            rawTaken[i] = false;
        }
    }
    return take;
}

bool BarInput::wantsMouse() const
{
    if (taken.any())
        return true; // what was begun on a bar is ended by it
    if (!hearsMouse)
        return false;
    const auto under = [this](const TweakPlace &bar)
    { return mouseX >= bar.left && mouseX < bar.right && mouseY >= bar.top && mouseY < bar.bottom; };
    // Where a list hangs out of its bar, only the library knows.
    return held.none() && (std::any_of(bars.begin(), bars.end(), under) || ImGui::GetIO().WantCaptureMouse);
}

bool BarInput::wantsKeyboard() const
{
    return ImGui::GetIO().WantTextInput;
}

bool BarInput::takePick(int &x, int &y)
{
    x = pickX;
    y = pickY;
    return std::exchange(picked, false);
}

void BarInput::beginFrame()
{
    ImGuiIO &io = ImGui::GetIO();
    for (const auto &[key, virtualKey] : keyMap)
        io.KeyMap[key] = virtualKey;
    const bool isSomewhere = hearsMouse || taken.any();
    io.MousePos =
        isSomewhere ? ImVec2(static_cast<float>(mouseX), static_cast<float>(mouseY)) : ImVec2(-FLT_MAX, -FLT_MAX);
    for (std::size_t i = 0; i < BUTTONS; ++i)
        io.MouseDown[i] = taken[i] || clicked[i];
    for (std::size_t i = 0; i < keysTaken.size(); ++i)
        io.KeysDown[i] = keysTaken[i] || keysPressed[i];
    io.KeyShift = io.KeysDown[VK_SHIFT];
    io.KeyCtrl = io.KeysDown[VK_CONTROL];
    io.KeyAlt = io.KeysDown[VK_MENU];
    clicked.reset();
    keysPressed.reset();
}

void BarInput::clear()
{
    held.reset();
    taken.reset();
    clicked.reset();
    rawTaken.reset();
    keysTaken.reset();
    keysPressed.reset();
    rawKeysTaken.reset();
    bars.clear();
    picking = picked = false;
    mouseX = mouseY = -1;
}

} // namespace port
