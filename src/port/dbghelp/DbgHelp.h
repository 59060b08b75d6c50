// DbgHelp: the published operations that capture return addresses and look up their names and lines.
#pragma once

#include "port/win32/WinTypes.h"

constexpr DWORD SYMOPT_DEFERRED_LOADS = 0x00000004;
constexpr DWORD SYMOPT_LOAD_LINES = 0x00000010;

/// A symbol; the caller provides MaxNameLen characters behind Name and sets SizeOfStruct and MaxNameLen.
struct SYMBOL_INFO
{
    ULONG SizeOfStruct;
    ULONG NameLen;    ///< characters of the name, without the terminating zero
    ULONG MaxNameLen; ///< characters that fit in Name, with the terminating zero
    ULONG64 Address;  ///< start of the symbol; 0 where it is unknown
    CHAR Name[1];
};

/// A source line; the caller sets SizeOfStruct. FileName stays valid to the end of the process.
struct IMAGEHLP_LINE64
{
    DWORD SizeOfStruct;
    DWORD LineNumber;
    LPSTR FileName;
    DWORD64 Address;
};

/// Captures return addresses of the calling thread, without any symbol work.
/// @param framesToSkip     callers to leave out, counted from the caller of this function
/// @param framesToCapture  at most this many addresses are stored
/// @param addresses        receives the addresses, innermost first
/// @param hash             receives the sum of the addresses; may be null
/// @return number of addresses stored
USHORT RtlCaptureStackBackTrace(DWORD framesToSkip, DWORD framesToCapture, PVOID *addresses, DWORD *hash);

/// Sets the symbol options.
/// @return the options now in force
DWORD SymSetOptions(DWORD options);

/// Opens the symbol tables of this process.
/// @return FALSE where they cannot be read
BOOL SymInitialize(HANDLE process, LPCSTR searchPath, BOOL invadeProcess);

/// Name of the function that holds an address.
/// @return FALSE where it has none, with the reason in GetLastError
BOOL SymFromAddr(HANDLE process, DWORD64 address, DWORD64 *displacement, SYMBOL_INFO *symbol);

/// Source file and line of an address; allocates nothing from the heap.
/// @return FALSE where none is recorded, with the reason in GetLastError
BOOL SymGetLineFromAddr64(HANDLE process, DWORD64 address, DWORD *displacement, IMAGEHLP_LINE64 *line);

namespace port
{

/// Name of the function that holds an address, as the linker knows it; null where it has none.
///
/// Allocates nothing from the heap, so that a signal handler may call it once a look-up was made outside of one.
const char *linkerName(DWORD64 address);

} // namespace port
