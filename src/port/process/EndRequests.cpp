#include "port/process/EndRequests.h"

#include "port/process/MessageBoxProcess.h"

#include <csignal>
#include <utility>

namespace port
{

namespace
{
volatile std::sig_atomic_t requested = 0; ///< number of the signal; 0 for none

void request(int signal)
{
    requested = signal;
    closeMessageBox();
}

void listenTo(int signal)
{
    struct sigaction current
    {
    };
    if (sigaction(signal, nullptr, &current) != 0 || current.sa_handler == SIG_IGN)
        return;
    struct sigaction wanted
    {
    };
    wanted.sa_handler = request;
    wanted.sa_flags = SA_RESTART | SA_RESETHAND;
    sigemptyset(&wanted.sa_mask);
    sigaction(signal, &wanted, nullptr);
}
} // namespace

void listenForEndRequests()
{
    for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        listenTo(signal);
    for (const int signal : {SIGPIPE, SIGXFSZ})
        std::signal(signal, SIG_IGN);
}

int takeEndRequest()
{
    return requested == 0 ? 0 : std::exchange(requested, 0);
}

} // namespace port
