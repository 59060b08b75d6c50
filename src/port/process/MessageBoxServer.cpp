#include "port/process/MessageBoxServer.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace port
{

namespace
{

constexpr const char *OWN_IMAGE = "/proc/self/exe";
constexpr int LOOK_MS = 50; ///< how often the server looks whether the box has been answered

/// Kinds of what the server is told: the first byte of a message.
constexpr char SHOW = 'S', LEAVE = 'L', CLOSE = 'C';

// Longer than any text that a screen holds. Static, since a signal handler has no memory of its own.
constexpr std::size_t LONGEST = 60000;
char outgoing[LONGEST];

int server = -1; ///< the socket that leads to it

/// Adds a text with its zero, cut where there is no room for it.
std::size_t append(std::size_t used, const char *text, std::size_t keptFree)
{
    const std::size_t length = std::min(std::strlen(text), LONGEST - used - keptFree - 1);
    std::memcpy(outgoing + used, text, length);
    outgoing[used + length] = 0;
    return used + length + 1;
}

bool tell(char kind, const BoxTexts &box)
{
    outgoing[0] = kind;
    std::size_t used = append(1, box.type, 2);
    used = append(used, box.caption, 1);
    used = append(used, box.text, 0);
    return send(server, outgoing, used, MSG_NOSIGNAL) >= 0;
}

/// What a server does for the process at its standard input.
class Serving
{
public:
    explicit Serving(pid_t (*show)(const char *, const char *, const char *)) : show(show) {}

    int run()
    {
        while (hear())
            look();
        return 0;
    }

private:
    /// Takes the next message, if there is one within a moment; false once the other process is gone.
    bool hear()
    {
        pollfd waiting{STDIN_FILENO, POLLIN, 0};
        if (poll(&waiting, 1, box == 0 ? -1 : LOOK_MS) <= 0)
            return true;
        const ssize_t length = recv(STDIN_FILENO, message, sizeof message - 1, 0);
        if (length <= 0)
            return length < 0 && errno == EINTR;
        message[length] = 0;
        take(static_cast<std::size_t>(length));
        return true;
    }

    void take(std::size_t length)
    {
        if (message[0] == CLOSE && box != 0)
            kill(-box, SIGTERM);
        if (message[0] != SHOW && message[0] != LEAVE)
            return;
        const char *const type = message + 1;
        const char *const caption = next(type, length);
        const char *const text = next(caption, length);
        const pid_t started = show(type, caption, text);
        if (message[0] == SHOW && started == 0)
            answer(0);
        if (message[0] == SHOW)
            box = started;
    }

    /// The text behind another one; an empty one where the message ends.
    const char *next(const char *text, std::size_t length) const
    {
        const char *const end = text + std::strlen(text);
        return end < message + length ? end + 1 : end;
    }

    /// Passes on what the open box has been answered.
    void look()
    {
        int status = 0;
        if (box == 0 || waitpid(box, &status, WNOHANG) != box)
            return;
        box = 0;
        answer(WIFEXITED(status) ? WEXITSTATUS(status) : 0);
    }

    static void answer(int given) { send(STDIN_FILENO, &given, sizeof given, MSG_NOSIGNAL); }

    pid_t (*show)(const char *, const char *, const char *);
    pid_t box = 0;             ///< process of the box that is open; 0 for none
    char message[LONGEST + 1]; ///< ended by a zero
};

} // namespace

void startServer()
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDIN_FILENO);
    const char *const words[] = {"kaVel", SERVER_WORD, nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, OWN_IMAGE, &actions, &attributes, const_cast<char *const *>(words), environ) == 0)
        server = ends[0];
    else
        close(ends[0]);
    close(ends[1]);
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
}

bool serverIsKept()
{
    return server >= 0;
}

int askServer(const BoxTexts &box, const volatile std::sig_atomic_t &closing)
{
    if (!tell(SHOW, box))
        return 0;
    if (closing) // before there was a box to close
        tellServerToClose();
    int answer = 0;
    while (recv(server, &answer, sizeof answer, 0) < 0)
        if (errno != EINTR)
            return 0;
    return answer;
}

void tellServerToClose()
{
    const int formerError = errno;
    send(server, &CLOSE, 1, MSG_NOSIGNAL | MSG_DONTWAIT);
    errno = formerError;
}

void leaveWithServer(const BoxTexts &box)
{
    tell(LEAVE, box);
}

int serveBoxes(pid_t (*show)(const char *, const char *, const char *))
{
    static Serving serving(show);
    return serving.run();
}

} // namespace port
