#include "port/win32/ChangeNotification.h"

#include "port/win32/Diagnostics.h"
#include "port/win32/HostPath.h"
#include "port/win32/Waiting.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <poll.h>
#include <string>
#include <sys/inotify.h>
#include <system_error>
#include <unistd.h>
#include <unordered_map>
#include <utility>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds UNFINISHED{1}; ///< since the last write: nobody means to write on
constexpr std::size_t MOST_FOLDERS = 4096;    ///< of one notification; the host has a limit for all of a user's
constexpr int MOST_READS = 64;                ///< at a time: a storm without end must not hold up whoever asks
constexpr std::size_t EVENT_BYTES = 65536;

/// What the host is asked to tell of a folder, for a published filter.
std::uint32_t maskOf(DWORD filter)
{
    std::uint32_t mask = IN_ONLYDIR | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO;
    if (filter & (FILE_NOTIFY_CHANGE_SIZE | FILE_NOTIFY_CHANGE_LAST_WRITE))
        mask |= IN_CLOSE_WRITE | IN_MODIFY;
    if (filter & FILE_NOTIFY_CHANGE_ATTRIBUTES)
        mask |= IN_ATTRIB;
    return mask;
}

/// One folder that is watched, with all below it or alone.
class Notification
{
public:
    Notification(int descriptor, bool watchSubtree, DWORD filter)
        : descriptor(descriptor), watchSubtree(watchSubtree), filter(filter)
    {
    }
    ~Notification() { ::close(descriptor); }
    Notification(const Notification &) = delete;
    Notification &operator=(const Notification &) = delete;

    bool watchRoot(const fs::path &path)
    {
        root = ::inotify_add_watch(descriptor, path.c_str(), maskOf(filter) | IN_DELETE_SELF | IN_MOVE_SELF);
        if (root < 0)
            return false;
        folders[root] = path;
        if (watchSubtree)
            watchBelow(path);
        return true;
    }

    /// Takes in what the host has to tell.
    void look()
    {
        alignas(inotify_event) char events[EVENT_BYTES];
        for (int reads = 0; reads < MOST_READS; ++reads)
        {
            const ssize_t length = ::read(descriptor, events, sizeof events);
            if (length <= 0)
                return;
            for (ssize_t at = 0; at < length;)
            {
                const auto &event = *reinterpret_cast<const inotify_event *>(events + at);
                take(event);
                at += static_cast<ssize_t>(sizeof(inotify_event) + event.len);
            }
        }
    }

    bool waitForMore(std::chrono::milliseconds time) const
    {
        pollfd waited{descriptor, POLLIN, 0};
        return ::poll(&waited, 1, static_cast<int>(time.count())) > 0;
    }

    void goOn() { changed = false; }
    bool hasChanged() const { return changed; }
    bool isGone() const { return gone; }

    bool isBeingWritten()
    {
        const Clock::time_point now = Clock::now();
        std::erase_if(unfinished, [now](const auto &each) { return now - each.second > UNFINISHED; });
        return !unfinished.empty();
    }

private:
    void take(const inotify_event &event)
    {
        if (event.mask & IN_Q_OVERFLOW)
        {
            unfinished.clear(); // who has closed what is not known any more
            changed = true;
            return;
        }
        if (event.mask & IN_IGNORED)
        {
            folders.erase(event.wd);
            return;
        }
        if (event.wd == root && event.mask & (IN_DELETE_SELF | IN_MOVE_SELF))
        {
            gone = true;
            return;
        }
        const std::string name = event.len ? event.name : "";
        if (event.mask & IN_MODIFY)
        {
            unfinished[{event.wd, name}] = Clock::now();
            return;
        }
        unfinished.erase({event.wd, name});
        takeChange(event, name);
    }

    void takeChange(const inotify_event &event, const std::string &name)
    {
        const bool isName = event.mask & (IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO);
        const auto parent = folders.find(event.wd);
        const bool appears = event.mask & (IN_CREATE | IN_MOVED_TO) && parent != folders.end();
        std::error_code unknown; // the host tells of a link to a folder as of a file
        const bool isFolder = event.mask & IN_ISDIR || (appears && fs::is_directory(parent->second / name, unknown));
        if (isFolder && watchSubtree && appears)
            watch(parent->second / name);
        if (isName && !(filter & (isFolder ? FILE_NOTIFY_CHANGE_DIR_NAME : FILE_NOTIFY_CHANGE_FILE_NAME)))
            return;
        changed = true;
    }

    /// Watches a folder and all below it. One that is watched already is known by its number, so that no ring of links
    /// is followed round and round.
    void watch(const fs::path &path)
    {
        if (folders.size() >= MOST_FOLDERS)
            return;
        const int number = ::inotify_add_watch(descriptor, path.c_str(), maskOf(filter));
        if (number < 0 || number == root)
            return;
        const auto [known, isNew] = folders.try_emplace(number, path);
        if (!isNew && fs::exists(known->second))
            return;
        known->second = path;
        watchBelow(path);
    }

    void watchBelow(const fs::path &path)
    {
        std::error_code ignored;
        for (fs::directory_iterator entry(path, ignored), end; !ignored && entry != end; entry.increment(ignored))
        {
            std::error_code unreadable;
            if (entry->is_directory(unreadable))
                watch(entry->path());
        }
    }

    const int descriptor;
    const bool watchSubtree;
    const DWORD filter;
    int root = -1;                                                       ///< the host's number of the folder itself
    std::unordered_map<int, fs::path> folders;                           ///< by the host's numbers
    std::map<std::pair<int, std::string>, Clock::time_point> unfinished; ///< files by folder and name: their last write
    bool changed = false;
    bool gone = false;
};

std::vector<std::unique_ptr<Notification>> &notifications()
{
    static std::vector<std::unique_ptr<Notification>> all;
    return all;
}

/// The notification of a handle; null, with the reason in GetLastError, for another one.
Notification *find(HANDLE handle)
{
    for (const auto &each : notifications())
        if (each.get() == handle)
            return each.get();
    SetLastError(ERROR_INVALID_HANDLE);
    return nullptr;
}
} // namespace

HANDLE FindFirstChangeNotificationA(LPCSTR path, BOOL watchSubtree, DWORD filter)
{
    const int descriptor = filter ? ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC) : -1;
    if (descriptor < 0)
    {
        SetLastError(filter ? ERROR_NOT_ENOUGH_MEMORY : ERROR_INVALID_PARAMETER);
        return INVALID_HANDLE_VALUE;
    }
    auto made = std::make_unique<Notification>(descriptor, watchSubtree, filter);
    if (!made->watchRoot(port::hostPath(path)))
    {
        SetLastError(errno == ENOENT || errno == ENOTDIR ? ERROR_PATH_NOT_FOUND
                     : errno == EACCES                   ? ERROR_ACCESS_DENIED
                                                         : ERROR_NOT_ENOUGH_MEMORY);
        return INVALID_HANDLE_VALUE;
    }
    return notifications().emplace_back(std::move(made)).get();
}

BOOL FindNextChangeNotification(HANDLE handle)
{
    Notification *const notification = find(handle);
    if (notification)
        notification->goOn();
    return notification != nullptr;
}

BOOL FindCloseChangeNotification(HANDLE handle)
{
    if (!find(handle))
        return FALSE;
    std::erase_if(notifications(), [handle](const auto &each) { return each.get() == handle; });
    return TRUE;
}

DWORD WaitForSingleObject(HANDLE handle, DWORD milliseconds)
{
    Notification *const notification = find(handle);
    if (!notification)
        return WAIT_FAILED;
    const Clock::time_point end = Clock::now() + std::chrono::milliseconds(milliseconds);
    for (;;)
    {
        notification->look();
        if (notification->isGone())
            return WAIT_FAILED;
        if (notification->hasChanged())
            return WAIT_OBJECT_0;
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
        if (left.count() <= 0 || !notification->waitForMore(left))
            return WAIT_TIMEOUT;
    }
}

namespace port
{

bool isBeingWritten(HANDLE handle)
{
    Notification *const notification = find(handle);
    return notification && notification->isBeingWritten();
}

} // namespace port
