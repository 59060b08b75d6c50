// Diagnostics: the platform's debug output, last error, message box, critical sections and performance counter.
#pragma once

#include "port/win32/WinTypes.h"

#include <cstdarg>
#include <string>

/// Writes a text to the debug output, which is the process's error stream, and to the file that keeps it if there is one.
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
constexpr UINT MB_ABORTRETRYIGNORE = 0x00000002;
constexpr UINT MB_TYPEMASK = 0x0000000F;
constexpr UINT MB_ICONHAND = 0x00000010;
constexpr UINT MB_ICONERROR = MB_ICONHAND;
constexpr UINT MB_ICONEXCLAMATION = 0x00000030;
constexpr UINT MB_ICONWARNING = MB_ICONEXCLAMATION;
constexpr UINT MB_ICONINFORMATION = 0x00000040;
constexpr UINT MB_ICONMASK = 0x000000F0;
constexpr UINT MB_TASKMODAL = 0x00002000;
constexpr int IDOK = 1;
constexpr int IDABORT = 3;
constexpr int IDRETRY = 4;
constexpr int IDIGNORE = 5;

/// Shows a message and waits for the user's answer.
///
/// Where nobody can see a box, its caption and text go to the debug output and it returns at once.
/// @param type  with MB_ABORTRETRYIGNORE the answers read "Quit", "Continue" and "Do not show again"
/// @return the answer; where none was given IDOK, or IDRETRY with MB_ABORTRETRYIGNORE
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
DWORD GetCurrentProcessId();

namespace port
{

/// Shows a box on the screen and waits.
/// @return the answer; 0 where no box can be shown, so that the text is printed instead
using MessageBoxPresenter = int (*)(HWND owner, const char *text, const char *caption, UINT type);

/// Installs what shows message boxes; null, the initial state, prints them.
void setMessageBoxPresenter(MessageBoxPresenter presenter);

/// Whether something shows message boxes, so that they need not be printed.
bool hasMessageBoxPresenter();

/// Has all debug output kept in a file from now on, besides going to the error stream. An earlier file ends.
///
/// A file that takes no more is told of once on the error stream, and left.
/// @param path  a host path; what the file held is lost
/// @return empty, or why the file cannot be written
std::string keepDebugOutput(const char *path);

/// Writes a text to that file only; nothing without a file.
void keepDebugText(LPCSTR text);

/// Writes all gathered debug output now; a signal handler may call it.
void flushDebugOutput();

/// Has a function write to each of the host's descriptors that debug output goes to, behind what was gathered.
///
/// For a signal handler, which can trust no other way.
void forEachDebugDescriptor(void (*use)(int descriptor));

} // namespace port
