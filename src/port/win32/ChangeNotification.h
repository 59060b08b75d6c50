// ChangeNotification: whether something has changed in a folder.
#pragma once

#include "port/win32/WinTypes.h"

inline const HANDLE INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<INT_PTR>(-1));

constexpr DWORD FILE_NOTIFY_CHANGE_FILE_NAME = 0x00000001;
constexpr DWORD FILE_NOTIFY_CHANGE_DIR_NAME = 0x00000002;
constexpr DWORD FILE_NOTIFY_CHANGE_ATTRIBUTES = 0x00000004;
constexpr DWORD FILE_NOTIFY_CHANGE_SIZE = 0x00000008;
constexpr DWORD FILE_NOTIFY_CHANGE_LAST_WRITE = 0x00000010;

/// Begins to watch a folder, with all below it if `watchSubtree` is set; links to folders are followed.
///
/// What is written counts as changed when its writer has closed it. Folders that appear are watched from then on.
/// @param path    a designed path
/// @param filter  what counts; sizes and last writes are one thing here
/// @return to be closed by FindCloseChangeNotification; INVALID_HANDLE_VALUE for what is no folder that can be watched,
///         with the reason in GetLastError
HANDLE FindFirstChangeNotificationA(LPCSTR path, BOOL watchSubtree, DWORD filter);

/// Waits for the next change: what has changed up to now is known.
BOOL FindNextChangeNotification(HANDLE notification);

BOOL FindCloseChangeNotification(HANDLE notification);

/// Waits until something has changed since the notification was made or went on; only those can be waited for.
/// @return WAIT_OBJECT_0, WAIT_TIMEOUT, or WAIT_FAILED where the folder itself has gone or moved, or for another handle
DWORD WaitForSingleObject(HANDLE notification, DWORD milliseconds);

namespace port
{

/// Whether a file below has been written to within the last second and its writer has not closed it yet.
///
/// As of the last wait. One who keeps his file open for longer than that is not waited for.
bool isBeingWritten(HANDLE notification);

} // namespace port
