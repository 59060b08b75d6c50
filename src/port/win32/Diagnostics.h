// Diagnostics: the platform's debug output, last error, message box, critical sections and performance counter.
#pragma once

#include "port/win32/WinTypes.h"

#include <cstdarg>

/// Writes a text to the debug output, which is the process's error stream.
///
/// Whole lines are gathered and written together; an empty message queue, flushDebugOutput and a normal exit write
/// what is left.
/// @param text  zero-terminated; null counts as empty
void OutputDebugStringA(LPCSTR text);

DWORD GetLastError();
void SetLastError(DWORD code);

constexpr DWORD FORMAT_MESSAGE_ALLOCATE_BUFFER = 0x00000100;
constexpr DWORD FORMAT_MESSAGE_IGNORE_INSERTS = 0x00000200;
constexpr DWORD FORMAT_MESSAGE_FROM_SYSTEM = 0x00001000;

/// System text of an error code.
///
/// Only system messages without inserts are known here. With FORMAT_MESSAGE_ALLOCATE_BUFFER, `buffer` is the
/// address of a pointer that receives the text, to be freed by LocalFree.
/// @return characters written without the terminating zero; 0 on failure, with the reason in GetLastError
DWORD FormatMessageA(DWORD flags, LPCVOID source, DWORD messageId, DWORD languageId, LPSTR buffer, DWORD size,
                     va_list *arguments);

/// Frees what FormatMessageA allocated.
/// @return null
HLOCAL LocalFree(HLOCAL block);

BOOL IsDebuggerPresent();

/// Stops in the debugger; without one the process dies of an unhandled trap.
void DebugBreak();

constexpr UINT MB_OK = 0x00000000;
constexpr UINT MB_ICONHAND = 0x00000010;
constexpr UINT MB_ICONERROR = MB_ICONHAND;
constexpr UINT MB_ICONEXCLAMATION = 0x00000030;
constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
constexpr UINT MB_ICONINFORMATION = 0x00000040;
constexpr UINT MB_TASKMODAL = 0x00002000;
constexpr int IDOK = 1;

/// Shows a message and waits for the user's answer.
///
/// Where nobody can see a box, its caption and text go to the debug output and it returns at once.
/// @return IDOK
int MessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT type);

/// Mutual exclusion that its owning thread may enter again.
struct CRITICAL_SECTION
{
    void *lock = nullptr; ///< made by InitializeCriticalSection, null outside its life
};
typedef CRITICAL_SECTION *LPCRITICAL_SECTION;

void InitializeCriticalSection(LPCRITICAL_SECTION section);
void EnterCriticalSection(LPCRITICAL_SECTION section);
void LeaveCriticalSection(LPCRITICAL_SECTION section);
void DeleteCriticalSection(LPCRITICAL_SECTION section);

/// Ticks of the monotonic clock since an unspecified start.
BOOL QueryPerformanceCounter(LARGE_INTEGER *count);

/// Ticks a second of QueryPerformanceCounter.
BOOL QueryPerformanceFrequency(LARGE_INTEGER *frequency);

HANDLE GetCurrentProcess();

namespace port
{

/// Shows a box on the screen.
/// @return false where no box can be shown, so that the text is printed instead
using MessageBoxPresenter = bool (*)(HWND owner, const char *text, const char *caption, UINT type);

/// Installs what shows message boxes; null, the initial state, prints them.
void setMessageBoxPresenter(MessageBoxPresenter presenter);

/// Writes all gathered debug output to the error stream now.
void flushDebugOutput();

} // namespace port
