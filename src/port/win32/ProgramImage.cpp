// ProgramImage: the executable's bounds, as its linker marks them.
#include "port/win32/ProgramImage.h"

#include <cstdint>

extern "C" const char __executable_start;
extern "C" const char edata;

namespace port
{

bool isInProgramImage(const void *address)
{
    const auto place = reinterpret_cast<std::uintptr_t>(address);
    return place >= reinterpret_cast<std::uintptr_t>(&__executable_start) &&
           place < reinterpret_cast<std::uintptr_t>(&edata);
}

} // namespace port
