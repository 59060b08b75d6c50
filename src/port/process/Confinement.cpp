#include "port/process/Confinement.h"

#include "port/process/CallConfinement.h"
#include "port/process/FileConfinement.h"
#include "port/process/MessageBoxProcess.h"

#include <filesystem>
#include <sys/prctl.h>

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
    note(confineFiles(places));
    note(confineCalls());
    return lacking;
}

void endConfinementTime()
{
    isTooLate = true;
}

} // namespace port
