#include "port/win32/SdlKeys.h"

#include <SDL_scancode.h>

#include <array>

namespace port
{

namespace
{
using KeyTable = std::array<KeyCode, SDL_NUM_SCANCODES>;

constexpr void putRun(KeyTable &table, int firstScancode, int count, USHORT firstKey)
{
    for (int i = 0; i < count; ++i)
        table[firstScancode + i] = {static_cast<USHORT>(firstKey + i), false};
}

constexpr void putMainBlock(KeyTable &table)
{
    putRun(table, SDL_SCANCODE_A, 26, 'A');
    putRun(table, SDL_SCANCODE_1, 9, '1');
    table[SDL_SCANCODE_0] = {'0'};
    table[SDL_SCANCODE_RETURN] = {VK_RETURN};
    table[SDL_SCANCODE_ESCAPE] = {VK_ESCAPE};
    table[SDL_SCANCODE_BACKSPACE] = {VK_BACK};
    table[SDL_SCANCODE_TAB] = {VK_TAB};
    table[SDL_SCANCODE_SPACE] = {VK_SPACE};
    table[SDL_SCANCODE_MINUS] = {VK_OEM_MINUS};
    table[SDL_SCANCODE_EQUALS] = {VK_OEM_PLUS};
    table[SDL_SCANCODE_LEFTBRACKET] = {VK_OEM_4};
    table[SDL_SCANCODE_RIGHTBRACKET] = {VK_OEM_6};
    table[SDL_SCANCODE_BACKSLASH] = {VK_OEM_5};
    table[SDL_SCANCODE_NONUSHASH] = {VK_OEM_5};
    table[SDL_SCANCODE_SEMICOLON] = {VK_OEM_1};
    table[SDL_SCANCODE_APOSTROPHE] = {VK_OEM_7};
    table[SDL_SCANCODE_GRAVE] = {VK_OEM_3};
    table[SDL_SCANCODE_COMMA] = {VK_OEM_COMMA};
    table[SDL_SCANCODE_PERIOD] = {VK_OEM_PERIOD};
    table[SDL_SCANCODE_SLASH] = {VK_OEM_2};
    table[SDL_SCANCODE_NONUSBACKSLASH] = {VK_OEM_102};
    table[SDL_SCANCODE_CAPSLOCK] = {VK_CAPITAL};
    putRun(table, SDL_SCANCODE_F1, 12, VK_F1);
    putRun(table, SDL_SCANCODE_F13, 12, VK_F1 + 12);
}

constexpr void putModifiers(KeyTable &table)
{
    // Raw input names both sides alike; the extended flag tells the right control and Alt keys.
    table[SDL_SCANCODE_LSHIFT] = {VK_SHIFT};
    table[SDL_SCANCODE_RSHIFT] = {VK_SHIFT};
    table[SDL_SCANCODE_LCTRL] = {VK_CONTROL};
    table[SDL_SCANCODE_RCTRL] = {VK_CONTROL, true};
    table[SDL_SCANCODE_LALT] = {VK_MENU};
    table[SDL_SCANCODE_RALT] = {VK_MENU, true};
    table[SDL_SCANCODE_LGUI] = {VK_LWIN, true};
    table[SDL_SCANCODE_RGUI] = {VK_RWIN, true};
    table[SDL_SCANCODE_APPLICATION] = {VK_APPS, true};
}

constexpr void putNavigation(KeyTable &table)
{
    table[SDL_SCANCODE_INSERT] = {VK_INSERT, true};
    table[SDL_SCANCODE_DELETE] = {VK_DELETE, true};
    table[SDL_SCANCODE_HOME] = {VK_HOME, true};
    table[SDL_SCANCODE_END] = {VK_END, true};
    table[SDL_SCANCODE_PAGEUP] = {VK_PRIOR, true};
    table[SDL_SCANCODE_PAGEDOWN] = {VK_NEXT, true};
    table[SDL_SCANCODE_LEFT] = {VK_LEFT, true};
    table[SDL_SCANCODE_RIGHT] = {VK_RIGHT, true};
    table[SDL_SCANCODE_UP] = {VK_UP, true};
    table[SDL_SCANCODE_DOWN] = {VK_DOWN, true};
    table[SDL_SCANCODE_PRINTSCREEN] = {VK_SNAPSHOT, true};
    table[SDL_SCANCODE_SCROLLLOCK] = {VK_SCROLL};
    table[SDL_SCANCODE_PAUSE] = {VK_PAUSE};
}

constexpr void putNumberPad(KeyTable &table)
{
    putRun(table, SDL_SCANCODE_KP_1, 9, VK_NUMPAD0 + 1);
    table[SDL_SCANCODE_KP_0] = {VK_NUMPAD0};
    table[SDL_SCANCODE_KP_PERIOD] = {VK_DECIMAL};
    table[SDL_SCANCODE_KP_MULTIPLY] = {VK_MULTIPLY};
    table[SDL_SCANCODE_KP_PLUS] = {VK_ADD};
    table[SDL_SCANCODE_KP_MINUS] = {VK_SUBTRACT};
    table[SDL_SCANCODE_KP_DIVIDE] = {VK_DIVIDE, true};
    table[SDL_SCANCODE_KP_ENTER] = {VK_RETURN, true};
    table[SDL_SCANCODE_NUMLOCKCLEAR] = {VK_NUMLOCK, true};
    table[SDL_SCANCODE_CLEAR] = {VK_CLEAR};
}

constexpr void putMediaKeys(KeyTable &table)
{
    table[SDL_SCANCODE_MUTE] = {VK_VOLUME_MUTE, true};
    table[SDL_SCANCODE_AUDIOMUTE] = {VK_VOLUME_MUTE, true};
    table[SDL_SCANCODE_VOLUMEUP] = {VK_VOLUME_UP, true};
    table[SDL_SCANCODE_VOLUMEDOWN] = {VK_VOLUME_DOWN, true};
    table[SDL_SCANCODE_AUDIONEXT] = {VK_MEDIA_NEXT_TRACK, true};
    table[SDL_SCANCODE_AUDIOPREV] = {VK_MEDIA_PREV_TRACK, true};
    table[SDL_SCANCODE_AUDIOSTOP] = {VK_MEDIA_STOP, true};
    table[SDL_SCANCODE_AUDIOPLAY] = {VK_MEDIA_PLAY_PAUSE, true};
    table[SDL_SCANCODE_AC_BACK] = {VK_BROWSER_BACK, true};
    table[SDL_SCANCODE_AC_FORWARD] = {VK_BROWSER_FORWARD, true};
    table[SDL_SCANCODE_AC_REFRESH] = {VK_BROWSER_REFRESH, true};
    table[SDL_SCANCODE_AC_STOP] = {VK_BROWSER_STOP, true};
    table[SDL_SCANCODE_AC_SEARCH] = {VK_BROWSER_SEARCH, true};
    table[SDL_SCANCODE_AC_BOOKMARKS] = {VK_BROWSER_FAVORITES, true};
    table[SDL_SCANCODE_AC_HOME] = {VK_BROWSER_HOME, true};
}

/// Keys that only keyboards of some countries have.
constexpr void putCountries(KeyTable &table)
{
    table[SDL_SCANCODE_INTERNATIONAL1] = {VK_ABNT_C1};
    table[SDL_SCANCODE_INTERNATIONAL2] = {VK_KANA};
    table[SDL_SCANCODE_INTERNATIONAL3] = {VK_OEM_8};
    table[SDL_SCANCODE_INTERNATIONAL4] = {VK_CONVERT};
    table[SDL_SCANCODE_INTERNATIONAL5] = {VK_NONCONVERT};
    table[SDL_SCANCODE_LANG1] = {VK_KANA};
    table[SDL_SCANCODE_LANG2] = {VK_HANJA};
    table[SDL_SCANCODE_KP_COMMA] = {VK_ABNT_C2};
    table[SDL_SCANCODE_KP_EQUALS] = {VK_OEM_NEC_EQUAL};
}

constexpr KeyTable makeTable()
{
    KeyTable table{};
    putMainBlock(table);
    putModifiers(table);
    putNavigation(table);
    putNumberPad(table);
    putMediaKeys(table);
    putCountries(table);
    return table;
}

constexpr KeyTable keyTable = makeTable();
} // namespace

KeyCode keyCodeOf(int scancode)
{
    return scancode >= 0 && scancode < SDL_NUM_SCANCODES ? keyTable[scancode] : KeyCode();
}

} // namespace port
