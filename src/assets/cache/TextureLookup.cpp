#include "assets/cache/TextureLookup.h"

#include "assets/files/ContentOverrides.h"

#include "foundation/Logger.h"
#include "object/reflection/NearestName.h"
#include "port/win32/HostPath.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>

namespace
{

constexpr const char *folder = "..\\assets\\textures\\";
constexpr const char *extensions[] = {"", ".dds", ".png"}; // a .dds file brings its smaller levels, and goes first

void logUnknown(const String &name)
{
    NearestName nearest(name);
    const bool withExtension = std::filesystem::path(name.toCString()).has_extension();
    std::error_code ignored;
    for (std::filesystem::directory_iterator file(port::hostPath(folder), ignored), end; file != end;
         file.increment(ignored))
    {
        const std::filesystem::path known = file->path().filename();
        nearest.consider(String::copyFrom((withExtension ? known : known.stem()).string()));
    }
    KV_LOGF(Logger_::I_ERROR, "no texture '%s'%s", name.toCString(), nearest.hint().toCString());
}

} // namespace

String lookForTextureFile(const String &name)
{
    if (std::filesystem::path(name.toCString()).is_absolute())
        return name;
    for (const char *extension : extensions)
        if (String file = overridingFile(SCS("textures/") + name + String::fromStaticCString(extension)); !file.empty())
            return file;
    const String path = String::fromStaticCString(folder) + name;
    std::error_code ignored;
    for (const char *extension : extensions)
        if (String file = path + String::fromStaticCString(extension);
            std::filesystem::is_regular_file(port::hostPath(file.toCString()), ignored))
            return file;
    return String();
}

String findTextureFile(const String &name)
{
    String found = lookForTextureFile(name);
    if (!found.empty())
        return found;
    logUnknown(name);
    return String::fromStaticCString(folder) + name;
}

bool isTextureFileOf(const String &name, const String &file)
{
    const std::string path = port::hostPath(file.toCString());
    const std::string stem = port::hostPath((String::fromStaticCString(folder) + name).toCString());
    return std::any_of(std::begin(extensions), std::end(extensions),
                       [&](const char *extension) { return path == stem + extension; });
}
