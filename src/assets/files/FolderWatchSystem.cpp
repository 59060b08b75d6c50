#include "assets/files/FolderWatchSystem.h"

#include "foundation/Logger.h"
#include "object/reflection/Variant.h"
#include "object/reflection/SavedArguments.h"
#include "port/win32/ChangeNotification.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/Waiting.h"

#include <algorithm>

namespace
{
constexpr int BEFORE_ALL_OTHERS = -1000;
constexpr double REST = 0.04;         ///< s without a change, after which no more are expected
constexpr double MOST_DELAY = 1.0;    ///< s after which a storm is told of while it goes on
constexpr double MOST_PATIENCE = 5.0; ///< s with one who writes and writes
constexpr double TRY_AGAIN = 1.0;     ///< s between two looks for a folder that has gone
constexpr DWORD WHAT_COUNTS = FILE_NOTIFY_CHANGE_FILE_NAME | FILE_NOTIFY_CHANGE_DIR_NAME |
                              FILE_NOTIFY_CHANGE_LAST_WRITE | FILE_NOTIFY_CHANGE_ATTRIBUTES;

std::int64_t ticksNow()
{
    LARGE_INTEGER count{};
    QueryPerformanceCounter(&count);
    return count.QuadPart;
}

std::int64_t ticksOf(double seconds)
{
    LARGE_INTEGER frequency{};
    QueryPerformanceFrequency(&frequency);
    return static_cast<std::int64_t>(seconds * static_cast<double>(frequency.QuadPart));
}
} // namespace

void FolderWatchSystem::systemShutdown()
{
    for (const Watched &each : folders)
        if (each.notification)
            FindCloseChangeNotification(each.notification);
    folders.clear();
}

UpdaterList FolderWatchSystem::getUpdaters()
{
    return {Updater(SCS("FolderWatchSystem::look"), bind(SCS("look")), BEFORE_ALL_OTHERS, true)};
}

void FolderWatchSystem::watch(const String &folder)
{
    const bool isKnown =
        std::any_of(folders.begin(), folders.end(), [&](const Watched &each) { return each.folder == folder; });
    if (isKnown)
        return;
    folders.push_back({folder, nullptr, 0});
    open(folders.back(), ticksNow());
    if (!folders.back().notification)
        KV_LOGF(Logger_::I_WARNING, "The folder %s is not watched as long as it cannot be: %s", folder.toCString(),
                GetLastError() == ERROR_PATH_NOT_FOUND  ? "there is none"
                : GetLastError() == ERROR_ACCESS_DENIED ? "it may not be read"
                                                        : "too many are watched already (fs.inotify.max_user_watches)");
}

void FolderWatchSystem::open(Watched &watched, std::int64_t now)
{
    const HANDLE made = FindFirstChangeNotificationA(watched.folder.toCString(), TRUE, WHAT_COUNTS);
    watched.notification = made == INVALID_HANDLE_VALUE ? nullptr : made;
    watched.triedAt = now;
}

/// Whether a folder has changed since the last look; one that goes or comes back has.
bool FolderWatchSystem::hasChanged(Watched &watched, std::int64_t now)
{
    if (!watched.notification)
    {
        if (now - watched.triedAt > ticksOf(TRY_AGAIN))
            open(watched, now);
        return watched.notification != nullptr;
    }
    const DWORD outcome = WaitForSingleObject(watched.notification, 0);
    if (outcome == WAIT_FAILED)
    {
        FindCloseChangeNotification(watched.notification);
        open(watched, now);
        return true;
    }
    if (outcome == WAIT_OBJECT_0)
        FindNextChangeNotification(watched.notification);
    return outcome == WAIT_OBJECT_0;
}

bool FolderWatchSystem::isAtRest(std::int64_t now) const
{
    const bool isWritten =
        std::any_of(folders.begin(), folders.end(),
                    [](const Watched &each) { return each.notification && port::isBeingWritten(each.notification); });
    const std::int64_t delay = now - firstChange;
    const bool isQuiet = now - lastChange >= ticksOf(REST) || delay >= ticksOf(MOST_DELAY);
    return isWritten ? delay >= ticksOf(MOST_PATIENCE) : isQuiet;
}

void FolderWatchSystem::look()
{
    const std::int64_t now = folders.empty() ? 0 : ticksNow();
    for (Watched &each : folders)
    {
        if (!hasChanged(each, now))
            continue;
        lastChange = now;
        if (!changed)
            firstChange = now;
        changed = true;
    }
    if (!changed || !isAtRest(now))
        return;
    changed = false;
    const ReflectorPtr called = callback; // may set another one in its own place
    if (called)
        called->call().code.ignoreError(); // a script's exception has been told
}
