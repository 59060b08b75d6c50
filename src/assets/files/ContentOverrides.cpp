#include "assets/files/ContentOverrides.h"

#include "port/win32/HostPath.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace
{

constexpr const char *ASSETS = "..\\assets\\";

std::unordered_map<std::string, String> &overrides()
{
    static std::unordered_map<std::string, String> files;
    return files;
}

} // namespace

void overrideContent(const String &name, const String &file)
{
    if (file.empty())
        overrides().erase(port::hostPath(name.toCString()));
    else
        overrides()[port::hostPath(name.toCString())] = file;
}

String overridingFile(const String &name)
{
    const auto found = overrides().find(port::hostPath(name.toCString()));
    return found == overrides().end() ? String() : found->second;
}

String contentFile(const String &name)
{
    if (String other = overridingFile(name); !other.empty())
        return other;
    std::string designed = ASSETS + std::string(name.toCString());
    std::replace(designed.begin(), designed.end(), '/', '\\');
    return String::copyFrom(designed);
}
