#include "SourceFiles.h"

#include "GuardedRun.h"

#include "port/win32/HostPath.h"

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace
{

fs::path folderOf(const std::string &model)
{
    const fs::path folder = fs::path(model).parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

bool isWithin(const fs::path &folder, const fs::path &path)
{
    return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

} // namespace

SourceFiles::SourceFiles(const std::string &model) : model(model)
{
    std::error_code ignored;
    folder = fs::canonical(folderOf(model), ignored).string();
}

bool SourceFiles::Exists(const char *path) const
{
    return judge(port::hostPath(path)) == Standing::plain;
}

Assimp::IOStream *SourceFiles::Open(const char *path, const char *mode)
{
    const std::string wanted = port::hostPath(path);
    const Standing standing = judge(wanted);
    const std::string name = fs::path(wanted).lexically_proximate(folderOf(model)).string();
    if (standing == Standing::plain)
    {
        noteStep("reading '" + name + "'");
        return DefaultIOSystem::Open(wanted.c_str(), mode);
    }
    if (standing == Standing::missing && missing.empty())
        missing = name;
    else if (standing == Standing::special && refusal.empty())
        refusal = "it names '" + name + "', which is no plain file. Put the file itself there.";
    else if (standing == Standing::outside && refusal.empty())
        refusal = "it names '" + name +
                  "', which lies outside its folder. Copy that file beside the model, and name "
                  "it there.";
    return nullptr;
}

std::string SourceFiles::pathOf(const std::string &name) const
{
    return (folderOf(model) / port::hostPath(name.c_str())).string();
}

SourceFiles::Standing SourceFiles::judge(const std::string &path) const
{
    std::error_code error;
    const fs::path real = fs::weakly_canonical(path, error);
    if (path != model && !isWithin(folder, real))
        return Standing::outside;
    if (!fs::exists(path, error))
        return Standing::missing;
    return fs::is_regular_file(path, error) ? Standing::plain : Standing::special;
}
