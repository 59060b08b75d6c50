// WideText: narrow text made wide.
#pragma once

#include "port/win32/WinTypes.h"

typedef char16_t WCHAR;
typedef const WCHAR *LPCWSTR;
typedef WCHAR *LPWSTR;

constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;

/// Widens a text; both code pages are read as UTF-8, which is what the engine's narrow texts are.
///
/// Bytes that are no UTF-8 become U+FFFD each.
/// @param byteCount  bytes to read; -1 reads up to the terminating zero and includes it
/// @param wideCount  room in `wide`; 0 asks for the count that is needed
/// @return count of wide characters written or needed; 0 on failure: ERROR_INSUFFICIENT_BUFFER,
///         ERROR_INVALID_PARAMETER
int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR bytes, int byteCount, LPWSTR wide, int wideCount);
