// VirtualKeys: the codes of keys, independent of their place on the keyboard.
//
// Letters and digits have the code of their capital letter and digit character.
#pragma once

#include "port/win32/WinTypes.h"

constexpr USHORT VK_BACK = 0x08;
constexpr USHORT VK_TAB = 0x09;
constexpr USHORT VK_CLEAR = 0x0C;
constexpr USHORT VK_RETURN = 0x0D;
constexpr USHORT VK_SHIFT = 0x10;
constexpr USHORT VK_CONTROL = 0x11;
constexpr USHORT VK_MENU = 0x12; ///< Alt
constexpr USHORT VK_PAUSE = 0x13;
constexpr USHORT VK_CAPITAL = 0x14;
constexpr USHORT VK_KANA = 0x15;  ///< also the one that switches a Korean keyboard
constexpr USHORT VK_HANJA = 0x19; ///< also the one that chooses Japanese characters
constexpr USHORT VK_ESCAPE = 0x1B;
constexpr USHORT VK_CONVERT = 0x1C;    ///< right of the space bar, on Japanese keyboards
constexpr USHORT VK_NONCONVERT = 0x1D; ///< left of it
constexpr USHORT VK_SPACE = 0x20;
constexpr USHORT VK_PRIOR = 0x21; ///< page up
constexpr USHORT VK_NEXT = 0x22;  ///< page down
constexpr USHORT VK_END = 0x23;
constexpr USHORT VK_HOME = 0x24;
constexpr USHORT VK_LEFT = 0x25;
constexpr USHORT VK_UP = 0x26;
constexpr USHORT VK_RIGHT = 0x27;
constexpr USHORT VK_DOWN = 0x28;
constexpr USHORT VK_SNAPSHOT = 0x2C;
constexpr USHORT VK_INSERT = 0x2D;
constexpr USHORT VK_DELETE = 0x2E;
constexpr USHORT VK_LWIN = 0x5B;
constexpr USHORT VK_RWIN = 0x5C;
constexpr USHORT VK_APPS = 0x5D;
constexpr USHORT VK_NUMPAD0 = 0x60; ///< to VK_NUMPAD0 + 9, whether or not the number lock is on
constexpr USHORT VK_MULTIPLY = 0x6A;
constexpr USHORT VK_ADD = 0x6B;
constexpr USHORT VK_SUBTRACT = 0x6D;
constexpr USHORT VK_DECIMAL = 0x6E;
constexpr USHORT VK_DIVIDE = 0x6F;
constexpr USHORT VK_F1 = 0x70; ///< to VK_F1 + 23
constexpr USHORT VK_F4 = 0x73;
constexpr USHORT VK_NUMLOCK = 0x90;
constexpr USHORT VK_SCROLL = 0x91;
constexpr USHORT VK_OEM_NEC_EQUAL = 0x92; ///< of the number pad
constexpr USHORT VK_BROWSER_BACK = 0xA6;
constexpr USHORT VK_BROWSER_FORWARD = 0xA7;
constexpr USHORT VK_BROWSER_REFRESH = 0xA8;
constexpr USHORT VK_BROWSER_STOP = 0xA9;
constexpr USHORT VK_BROWSER_SEARCH = 0xAA;
constexpr USHORT VK_BROWSER_FAVORITES = 0xAB;
constexpr USHORT VK_BROWSER_HOME = 0xAC;
constexpr USHORT VK_VOLUME_MUTE = 0xAD;
constexpr USHORT VK_VOLUME_DOWN = 0xAE;
constexpr USHORT VK_VOLUME_UP = 0xAF;
constexpr USHORT VK_MEDIA_NEXT_TRACK = 0xB0;
constexpr USHORT VK_MEDIA_PREV_TRACK = 0xB1;
constexpr USHORT VK_MEDIA_STOP = 0xB2;
constexpr USHORT VK_MEDIA_PLAY_PAUSE = 0xB3;
constexpr USHORT VK_OEM_1 = 0xBA;      ///< ; :
constexpr USHORT VK_OEM_PLUS = 0xBB;   ///< = +
constexpr USHORT VK_OEM_COMMA = 0xBC;  ///< , <
constexpr USHORT VK_OEM_MINUS = 0xBD;  ///< - _
constexpr USHORT VK_OEM_PERIOD = 0xBE; ///< . >
constexpr USHORT VK_OEM_2 = 0xBF;      ///< / ?
constexpr USHORT VK_OEM_3 = 0xC0;      ///< ` ~
constexpr USHORT VK_ABNT_C1 = 0xC1;    ///< left of the right shift, on Brazilian and Japanese keyboards
constexpr USHORT VK_ABNT_C2 = 0xC2;    ///< the number pad's second separator
constexpr USHORT VK_OEM_4 = 0xDB;      ///< [ {
constexpr USHORT VK_OEM_5 = 0xDC;      ///< backslash |
constexpr USHORT VK_OEM_6 = 0xDD;      ///< ] }
constexpr USHORT VK_OEM_7 = 0xDE;      ///< ' "
constexpr USHORT VK_OEM_8 = 0xDF;      ///< left of backspace, on Japanese keyboards
constexpr USHORT VK_OEM_102 = 0xE2;    ///< the key between left shift and Z, where there is one
