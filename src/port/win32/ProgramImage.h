// ProgramImage: which memory and which file the loaded program is, and the folder it works in.
#pragma once

#include "port/win32/WinTypes.h"

/// Path of the running executable's file, links resolved.
/// @param module  null, for the executable
/// @param size    characters that fit, with the terminating zero
/// @return characters written without the zero; 0 where the path is unknown or does not fit
DWORD GetModuleFileNameA(PVOID module, LPSTR path, DWORD size);

/// The working folder; see GetModuleFileNameA for its parameters.
DWORD GetCurrentDirectoryA(DWORD size, LPSTR path);

/// Makes a folder the working folder.
/// @return FALSE where it cannot be entered
BOOL SetCurrentDirectoryA(LPCSTR path);

namespace port
{

/// Whether an address lies in the executable's code, constants or initialised data, so that a literal may be there.
bool isInProgramImage(const void *address);

} // namespace port
