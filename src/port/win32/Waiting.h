// Waiting: giving the processor away.
//
// Operations carry their published names and meaning; each is forwarded to the platform in place, see Win32Platform.h.
#pragma once

#include "port/win32/WinTypes.h"

constexpr DWORD WAIT_OBJECT_0 = 0;
constexpr DWORD WAIT_TIMEOUT = 258;
constexpr DWORD WAIT_FAILED = 0xFFFFFFFF;
constexpr DWORD QS_ALLINPUT = 0x04FF;

/// Lets at least so many milliseconds pass.
void Sleep(DWORD milliseconds);

/// Waits until a message has come or the time is over; the message stays where it is.
///
/// Only messages are waited for: with a count of handles above 0 it fails.
/// @param wakeMask  QS_ALLINPUT; no finer choice is made
/// @return WAIT_OBJECT_0 plus the count for a message, WAIT_TIMEOUT, or WAIT_FAILED
DWORD MsgWaitForMultipleObjects(DWORD count, const HANDLE *handles, BOOL waitAll, DWORD milliseconds, DWORD wakeMask);
