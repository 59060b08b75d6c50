// Exceptions: what the host's fatal signals are to the process, and who hears of them before it ends.
#pragma once

#include "port/win32/WinTypes.h"

constexpr DWORD EXCEPTION_ACCESS_VIOLATION = 0xC0000005;
constexpr DWORD EXCEPTION_IN_PAGE_ERROR = 0xC0000006;
constexpr DWORD EXCEPTION_ILLEGAL_INSTRUCTION = 0xC000001D;
constexpr DWORD EXCEPTION_INT_DIVIDE_BY_ZERO = 0xC0000094;
constexpr DWORD EXCEPTION_STACK_OVERFLOW = 0xC00000FD;
constexpr DWORD EXCEPTION_BREAKPOINT = 0x80000003;
constexpr DWORD STATUS_FATAL_APP_EXIT = 0x40000015;

constexpr LONG EXCEPTION_EXECUTE_HANDLER = 1;

/// What happened, and at which instruction.
struct EXCEPTION_RECORD
{
    DWORD ExceptionCode = 0;
    PVOID ExceptionAddress = nullptr; ///< the instruction that the signal interrupted
    DWORD NumberParameters = 0;       ///< 2 with a code that concerns memory, else 0
    /// 0 for a read, 1 for a write; then the address that was meant.
    ULONG_PTR ExceptionInformation[2] = {};
};

struct EXCEPTION_POINTERS
{
    EXCEPTION_RECORD *ExceptionRecord = nullptr;
};

typedef LONG (*LPTOP_LEVEL_EXCEPTION_FILTER)(EXCEPTION_POINTERS *exception);

/// Has a function called when a fatal signal is about to end the process.
///
/// It runs in the signal handler, on a stack of its own: it may allocate nothing and wait for no lock. A second fault
/// in it ends the process at once. Whatever it returns, the process then ends by the signal. Under the sanitizers,
/// which report faults themselves, it is never called.
/// @return the function that was called before; null for none
LPTOP_LEVEL_EXCEPTION_FILTER SetUnhandledExceptionFilter(LPTOP_LEVEL_EXCEPTION_FILTER filter);

namespace port
{

/// Has fatal signals write the gathered debug output before they end the process; SetUnhandledExceptionFilter adds to
/// that. Signals that somebody handles already are left alone.
void watchFatalSignals();

/// The host's name of the signal that an exception came from, as in "SIGSEGV".
const char *signalName(const EXCEPTION_RECORD &exception);

} // namespace port
