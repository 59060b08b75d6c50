// ProgramImage: the executable's bounds, as its linker marks them, and its file.
#include "port/win32/ProgramImage.h"

#include <cstdint>
#include <cstring>
#include <unistd.h>

extern "C" const char __executable_start;
extern "C" const char edata;

DWORD GetModuleFileNameA(PVOID, LPSTR path, DWORD size)
{
    const ssize_t length = ::readlink("/proc/self/exe", path, size);
    if (length <= 0 || static_cast<DWORD>(length) >= size)
        return 0;
    path[length] = 0;
    return static_cast<DWORD>(length);
}

DWORD GetCurrentDirectoryA(DWORD size, LPSTR path)
{
    return ::getcwd(path, size) ? static_cast<DWORD>(std::strlen(path)) : 0;
}

BOOL SetCurrentDirectoryA(LPCSTR path)
{
    return ::chdir(path) == 0;
}

namespace port
{

bool isInProgramImage(const void *address)
{
    const auto place = reinterpret_cast<std::uintptr_t>(address);
    return place >= reinterpret_cast<std::uintptr_t>(&__executable_start) &&
           place < reinterpret_cast<std::uintptr_t>(&edata);
}

} // namespace port
