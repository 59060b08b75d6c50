#include "port/win32/HostPath.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

namespace port
{

namespace
{
namespace fs = std::filesystem;

bool differsByCaseOnly(const std::string &a, const std::string &b)
{
    const auto same = [](unsigned char x, unsigned char y) { return std::tolower(x) == std::tolower(y); };
    return a != b && a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), same);
}

/// The folder's entry whose name is this one but for letter case; empty if there is none.
std::string entryOfOtherCase(const fs::path &folder, const std::string &name)
{
    std::error_code ignored;
    for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored))
    {
        std::string candidate = entry->path().filename().string();
        if (differsByCaseOnly(candidate, name))
            return candidate;
    }
    return std::string();
}

std::string explainMissingEntry(const fs::path &folder, const fs::path &missing)
{
    const std::string name = missing.filename().string();
    const std::string other = entryOfOtherCase(folder, name);
    const std::string text = "There is no \"" + name + "\" in " + folder.string();
    if (other.empty())
        return text + ".";
    return text + ", but there is \"" + other + "\": letter case counts.";
}
} // namespace

std::string hostPath(const char *designed)
{
    std::string path = designed ? designed : "";
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string explainMissingFile(const char *designed)
{
    const fs::path path = hostPath(designed);
    if (path.empty())
        return "The file name is empty.";

    fs::path walked;
    for (const fs::path &part : path)
    {
        const fs::path folder = walked.empty() ? fs::path(".") : walked;
        walked /= part;
        std::error_code error;
        if (part.empty() || fs::exists(walked, error))
            continue;
        if (error && error != std::errc::not_a_directory && error != std::errc::no_such_file_or_directory)
            return walked.string() + ": " + error.message() + ".";
        return explainMissingEntry(folder, walked);
    }
    return std::string();
}

} // namespace port
