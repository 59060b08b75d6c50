#include "port/process/Confinement.h"

#include "port/process/CallConfinement.h"
#include "port/process/FileConfinement.h"
#include "port/process/MessageBoxProcess.h"

#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/prctl.h>
#include <unistd.h>

namespace port
{

namespace
{

bool isTooLate = false;

std::ptrdiff_t threadCount()
{
    std::error_code none;
    const std::filesystem::directory_iterator tasks("/proc/self/task", none);
    return std::distance(begin(tasks), end(tasks));
}

/// Closes what whoever started the game left open, files and sockets of theirs; the game's own are closed by exec.
void closeInherited()
{
    std::error_code none;
    std::vector<int> inherited;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd", none))
        if (const int file = std::atoi(entry.path().filename().c_str()); file > STDERR_FILENO)
            if (const int flags = fcntl(file, F_GETFD); flags >= 0 && (flags & FD_CLOEXEC) == 0)
                inherited.push_back(file);
    for (const int file : inherited)
        close(file);
}

/// Has libraries find no message bus, behind which others start programs for whoever asks.
void leaveTheBuses()
{
    for (const char *bus : {"DBUS_SESSION_BUS_ADDRESS", "DBUS_SYSTEM_BUS_ADDRESS"})
        setenv(bus, "unix:path=/nonexistent", 1);
}

} // namespace

std::vector<std::string> confineProcess(const WritablePlaces &places)
{
    if (isTooLate)
        return {"nothing is held back: the game has begun already."};
    std::vector<std::string> lacking;
    const auto note = [&](std::string sentence)
    {
        if (!sentence.empty())
            lacking.push_back(std::move(sentence));
    };
    keepMessageBoxProcess();
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return {"nothing is held back: this system's kernel lets no process give up rights."};
    if (threadCount() > 1)
        note("files outside the user's folders are protected only in part: other threads began before.");
    closeInherited();
    leaveTheBuses();
    const std::string calls = confineCalls();
    note(confineFiles(places, calls.empty()));
    note(calls);
    return lacking;
}

bool confineSockets()
{
    return prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1 && refuseSockets();
}

void endConfinementTime()
{
    isTooLate = true;
}

} // namespace port
