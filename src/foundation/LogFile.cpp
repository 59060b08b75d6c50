#include "foundation/LogFile.h"

#include "foundation/Logger.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/ProgramImage.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <system_error>
#include <vector>

namespace
{

namespace fs = std::filesystem;

constexpr std::size_t KEPT_FILES = 5; ///< this run's among them
constexpr const char *EXTENSION = ".log";

std::string *const file = new std::string; // never freed: a crash may ask to the last instruction

/// Folder for the logs; empty where the user has no place for them.
fs::path logFolder()
{
    // By convention a relative path there counts as none.
    const char *const state = std::getenv("XDG_STATE_HOME");
    if (state && fs::path(state).is_absolute())
        return fs::path(state) / "mornal" / "logs";
    const char *const home = std::getenv("HOME");
    if (home && *home)
        return fs::path(home) / ".local" / "state" / "mornal" / "logs";
    return fs::path();
}

/// Names sort by time; the process's number tells runs of one second apart.
std::string fileName()
{
    const std::time_t now = std::time(nullptr);
    char text[64];
    std::strftime(text, sizeof text, "%Y%m%dT%H%M%SZ-", std::gmtime(&now));
    return text + std::to_string(GetCurrentProcessId()) + EXTENSION;
}

bool isOfRun(const fs::path &file)
{
    constexpr const char *kinds[] = {EXTENSION, ".input", ".begin", ".state", ".png", ".report"};
    return std::any_of(std::begin(kinds), std::end(kinds), [&](const char *kind) { return file.extension() == kind; });
}

/// Deletes the oldest runs beyond those that are kept: logs, and what lies beside them under their names.
void deleteOldest(const fs::path &folder)
{
    std::vector<fs::path> files;
    std::set<fs::path> runs;
    std::error_code ignored;
    for (fs::directory_iterator entry(folder, ignored), end; entry != end; entry.increment(ignored))
    {
        files.push_back(entry->path());
        if (entry->path().extension() == EXTENSION)
            runs.insert(entry->path().stem());
    }
    while (runs.size() > KEPT_FILES)
    {
        for (const fs::path &each : files)
            if (each.stem() == *runs.begin() && isOfRun(each))
                fs::remove(each, ignored);
        runs.erase(runs.begin());
    }
}

/// Why there is no log file; empty once there is one.
std::string openIn(const fs::path &folder)
{
    if (folder.empty())
        return "neither XDG_STATE_HOME nor HOME names a folder";
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure)
        return folder.string() + ": " + failure.message();
    const std::string name = (folder / fileName()).string();
    const std::string fault = port::keepDebugOutput(name.c_str());
    if (!fault.empty())
        return name + ": " + fault;
    *file = name;
    return std::string();
}

} // namespace

namespace LogFile
{

void start(const char *heading)
{
    const fs::path folder = logFolder();
    const std::string fault = openIn(folder);
    if (!fault.empty())
    {
        Logger().writeFormatted(Logger_::I_WARNING, String(), 0, "No log file: %s. The game goes on without.",
                                fault.c_str());
        return;
    }
    deleteOldest(folder);
    port::keepDebugText((heading + std::string("\n")).c_str());
}

const char *path()
{
    return file->c_str();
}

String placeForBox()
{
    return file->empty() ? String() : String::format("\n\nThe log of this run tells more:\n%s", file->c_str());
}

void tell()
{
    if (file->empty())
        return;
    OutputDebugStringA("Information: The log of this run: ");
    OutputDebugStringA(file->c_str());
    OutputDebugStringA("\n");
}

} // namespace LogFile

String getLogFile()
{
    return String::copyFrom(LogFile::path());
}
