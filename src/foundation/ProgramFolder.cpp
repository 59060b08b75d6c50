#include "foundation/ProgramFolder.h"

#include "port/win32/ProgramImage.h"

#include <cstring>

namespace
{
constexpr DWORD LONGEST_PATH = 4096;

String &userFolder()
{
    static String folder;
    return folder;
}
} // namespace

namespace ProgramFolder
{

bool enter()
{
    char path[LONGEST_PATH];
    const DWORD length = GetCurrentDirectoryA(sizeof path, path);
    if (userFolder().empty())
        userFolder() = String::copyFrom(path, length);
    if (GetModuleFileNameA(nullptr, path, sizeof path) == 0)
        return false;
    *std::strrchr(path, '/') = 0;
    return SetCurrentDirectoryA(path);
}

} // namespace ProgramFolder

String getUserFolder()
{
    return userFolder();
}
