#include "GuardedRun.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

constexpr rlim_t mostSeconds = 300;         ///< of work; a model of ten million triangles takes a minute
constexpr rlim_t mostStack = 128u << 20;    ///< bytes; what the host keeps free below a stack
constexpr rlim_t mostMemory = 8ull << 30;   ///< bytes
constexpr int finished = 64, outOfRoom = 1; ///< a code of 64 and more is the work's own
#ifdef KV_SANITIZE
constexpr bool limitsMemory = false; // the sanitizer takes terabytes of addresses for itself
#else
constexpr bool limitsMemory = true;
#endif

constexpr std::size_t longestStep = 256; ///< bytes, with the zero at the end
char *sharedStep = nullptr;              ///< written by the work, read by the one who waits for it

void shareStep()
{
    void *page = mmap(nullptr, longestStep, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    sharedStep = page == MAP_FAILED ? nullptr : static_cast<char *>(page);
}

void limit(__rlimit_resource resource, rlim_t most)
{
    rlimit now = {};
    getrlimit(resource, &now);
    now.rlim_cur = now.rlim_max == RLIM_INFINITY || most < now.rlim_max ? most : now.rlim_max;
    setrlimit(resource, &now);
}

[[noreturn]] void runHere(const std::function<int()> &work)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody waits for it then
    limit(RLIMIT_CPU, mostSeconds);
    limit(RLIMIT_STACK, mostStack);
    limit(RLIMIT_CORE, 0);
    if (limitsMemory)
        limit(RLIMIT_DATA, mostMemory);
    int code = outOfRoom;
    try
    {
        code = finished + work();
    }
    catch (const std::bad_alloc &)
    {
    }
    catch (const std::exception &unforeseen)
    {
        std::fprintf(stderr, "%s\n", unforeseen.what());
        std::abort();
    }
    std::fflush(nullptr);
    std::_Exit(code); // leaves what the library holds, which may be nested as deep as the file was
}

std::string explainEnd(int status)
{
    const std::string step = sharedStep && *sharedStep ? std::string(" while ") + sharedStep : "";
    if (WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)
        return "it takes more than " + std::to_string(mostSeconds) + " s of work" + step + ". Divide the model.";
    if (WIFEXITED(status) && WEXITSTATUS(status) == outOfRoom)
        return "it takes more than " + std::to_string(mostMemory >> 30) + " GiB of memory" + step +
               ". Divide the model.";
    const std::string cause =
        WIFSIGNALED(status) ? strsignal(WTERMSIG(status)) : "exit code " + std::to_string(WEXITSTATUS(status));
    return "its reader broke down" + step + " (" + cause + "): that is damaged, or nested too deep. Export it again.";
}

} // namespace

GuardedEnd runGuarded(const std::function<int()> &work)
{
    std::fflush(nullptr);
    shareStep();
    const pid_t worker = fork();
    if (worker == 0)
        runHere(work);
    int status = 0;
    if (worker < 0 || waitpid(worker, &status, 0) != worker)
        return {1, std::string("no process could be started to read it: ") + std::strerror(errno) + "."};
    if (WIFEXITED(status) && WEXITSTATUS(status) >= finished)
        return {WEXITSTATUS(status) - finished, ""};
    return {1, explainEnd(status)};
}

void noteStep(const std::string &step)
{
    if (sharedStep)
        sharedStep[step.copy(sharedStep, longestStep - 1)] = 0;
}
