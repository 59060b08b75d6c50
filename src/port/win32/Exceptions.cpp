#include "port/win32/Exceptions.h"

#include "port/win32/Diagnostics.h"

#include <csignal>
#include <cstdint>
#include <pthread.h>
#include <ucontext.h>
#include <utility>

namespace
{

struct FatalSignal
{
    int number;
    DWORD code;
    const char *name;
};

constexpr FatalSignal FATAL_SIGNALS[] = {
    {SIGSEGV, EXCEPTION_ACCESS_VIOLATION, "SIGSEGV"}, {SIGBUS, EXCEPTION_IN_PAGE_ERROR, "SIGBUS"},
    {SIGFPE, EXCEPTION_INT_DIVIDE_BY_ZERO, "SIGFPE"}, {SIGILL, EXCEPTION_ILLEGAL_INSTRUCTION, "SIGILL"},
    {SIGABRT, STATUS_FATAL_APP_EXIT, "SIGABRT"},      {SIGTRAP, EXCEPTION_BREAKPOINT, "SIGTRAP"},
    {SIGSEGV, EXCEPTION_STACK_OVERFLOW, "SIGSEGV"},
};

// A handler that looks symbols up needs some ten kilobytes; the rest is reserve.
constexpr std::size_t HANDLER_STACK_SIZE = 256 * 1024;
// A function with large locals may step this far over the end of the stack: the gap that the host keeps free there.
constexpr std::uintptr_t STACK_GAP = 1024 * 1024;
constexpr std::uintptr_t LAST_OF_STACK = 64 * 1024;

// The sanitizers report these signals themselves, with more.
#ifdef KV_SANITIZE
constexpr bool LEFT_TO_SANITIZERS = true;
#else
constexpr bool LEFT_TO_SANITIZERS = false;
#endif

alignas(64) char handlerStack[HANDLER_STACK_SIZE];
std::uintptr_t stackEnd = 0; ///< lowest address of the main thread's stack; 0 while unknown
LPTOP_LEVEL_EXCEPTION_FILTER unhandledFilter = nullptr;

bool isPastTheStack(std::uintptr_t address)
{
    return stackEnd != 0 && address + STACK_GAP >= stackEnd && address < stackEnd + LAST_OF_STACK;
}

/// Whether the host raised the signal for what the process did, rather than somebody who sent it.
bool isOwnFault(const siginfo_t &info)
{
    return info.si_code > 0;
}

EXCEPTION_RECORD recordOf(int signal, const siginfo_t &info, const ucontext_t &context)
{
    EXCEPTION_RECORD record;
    record.ExceptionAddress = reinterpret_cast<PVOID>(context.uc_mcontext.gregs[REG_RIP]);
    for (const FatalSignal &fatal : FATAL_SIGNALS)
        if (fatal.number == signal && record.ExceptionCode == 0)
            record.ExceptionCode = fatal.code;

    const bool concernsMemory = (signal == SIGSEGV || signal == SIGBUS) && isOwnFault(info);
    if (!concernsMemory)
        return record;
    constexpr greg_t WROTE = 2; // bit of the processor's page fault code
    const auto address = reinterpret_cast<std::uintptr_t>(info.si_addr);
    record.NumberParameters = 2;
    record.ExceptionInformation[0] = (context.uc_mcontext.gregs[REG_ERR] & WROTE) != 0;
    record.ExceptionInformation[1] = address;
    if (isPastTheStack(address))
        record.ExceptionCode = EXCEPTION_STACK_OVERFLOW;
    return record;
}

/// Ends the process by the signal itself, so that whoever started it learns which one it was.
void endBy(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
}

void handleFatalSignal(int signal, siginfo_t *info, void *context)
{
    for (const FatalSignal &fatal : FATAL_SIGNALS)
        std::signal(fatal.number, SIG_DFL);
    port::flushDebugOutput();
    EXCEPTION_RECORD record = recordOf(signal, *info, *static_cast<const ucontext_t *>(context));
    EXCEPTION_POINTERS exception{&record};
    if (unhandledFilter)
        unhandledFilter(&exception);
    port::flushDebugOutput();
    endBy(signal);
}

/// An overflowing stack has no room left for a handler.
void prepareHandlerStack()
{
    stack_t stack{};
    stack.ss_sp = handlerStack;
    stack.ss_size = HANDLER_STACK_SIZE;
    sigaltstack(&stack, nullptr);
}

void findStackEnd()
{
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return;
    void *end = nullptr;
    std::size_t size = 0;
    if (pthread_attr_getstack(&attributes, &end, &size) == 0)
        stackEnd = reinterpret_cast<std::uintptr_t>(end);
    pthread_attr_destroy(&attributes);
}

void install(int signal)
{
    struct sigaction current
    {
    };
    const bool isDefault = sigaction(signal, nullptr, &current) == 0 && current.sa_handler == SIG_DFL;
    if (!isDefault)
        return;
    struct sigaction wanted
    {
    };
    wanted.sa_sigaction = handleFatalSignal;
    wanted.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&wanted.sa_mask);
    sigaction(signal, &wanted, nullptr);
}

} // namespace

LPTOP_LEVEL_EXCEPTION_FILTER SetUnhandledExceptionFilter(LPTOP_LEVEL_EXCEPTION_FILTER filter)
{
    port::watchFatalSignals();
    return std::exchange(unhandledFilter, filter);
}

namespace port
{

void watchFatalSignals()
{
    static bool watching = false;
    if (LEFT_TO_SANITIZERS || std::exchange(watching, true))
        return;
    prepareHandlerStack();
    findStackEnd();
    for (const FatalSignal &fatal : FATAL_SIGNALS)
        install(fatal.number);
}

const char *signalName(const EXCEPTION_RECORD &exception)
{
    for (const FatalSignal &fatal : FATAL_SIGNALS)
        if (fatal.code == exception.ExceptionCode)
            return fatal.name;
    return "an unknown signal";
}

} // namespace port
