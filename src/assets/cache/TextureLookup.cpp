#include "assets/cache/TextureLookup.h"

#include "assets/files/ContentOverrides.h"

#include "foundation/Logger.h"
#include "object/reflection/NearestName.h"
#include "port/win32/HostPath.h"

#include <filesystem>

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

String findTextureFile(const String &name)
{
    if (std::filesystem::path(name.toCString()).is_absolute())
        return name;
    for (const char *extension : extensions)
        if (String file = overridingFile(SCS("textures/") + name + String::fromStaticCString(extension)); !file.empty())
            return file;
    String path = String::fromStaticCString(folder) + name;
    std::error_code ignored;
    for (const char *extension : extensions)
        if (String file = path + String::fromStaticCString(extension);
            std::filesystem::is_regular_file(port::hostPath(file.toCString()), ignored))
            return file;
    logUnknown(name);
    return path;
}
