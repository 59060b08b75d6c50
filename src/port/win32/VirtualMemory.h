// VirtualMemory: whole pages from the system, for blocks too big for the heap.
#pragma once

#include "port/win32/WinTypes.h"

constexpr DWORD MEM_COMMIT = 0x00001000;
constexpr DWORD MEM_RESERVE = 0x00002000;
constexpr DWORD MEM_RELEASE = 0x00008000;
constexpr DWORD MEM_LARGE_PAGES = 0x20000000;
constexpr DWORD PAGE_READWRITE = 0x04;

/// Takes zeroed pages from the system.
///
/// Only reserving and committing at once is known here, for reading and writing, at an address of the system's choice.
/// With MEM_LARGE_PAGES the block begins at a large page's boundary and large pages are asked for; where the system
/// gives none, it is made of small ones.
/// @return the block, or null
LPVOID VirtualAlloc(LPVOID address, SIZE_T size, DWORD allocationType, DWORD protect);

/// Gives a block of VirtualAlloc back; `size` must be 0 and `freeType` MEM_RELEASE.
BOOL VirtualFree(LPVOID address, SIZE_T size, DWORD freeType);
