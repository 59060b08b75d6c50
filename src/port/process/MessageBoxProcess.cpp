#include "port/process/MessageBoxProcess.h"

#include "port/process/MessageBoxServer.h"
#include "port/win32/Diagnostics.h"
#include "port/win32/SdlVideo.h"

#include <SDL.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

namespace port
{

namespace
{
constexpr const char *OWN_IMAGE = "/proc/self/exe";
constexpr const char *BOX_WORD = "--message-box"; // then the type, the caption and the text
constexpr int WORD_COUNT = 5;
constexpr const char *CRASH_BOX_TYPE = "8208"; // MB_TASKMODAL | MB_ICONERROR
static_assert((MB_TASKMODAL | MB_ICONERROR) == 8208);
// A box grows with its text; a longer one would not fit on the screen.
constexpr std::size_t MOST_LINES = 40;

volatile pid_t openBox = 0; ///< process that shows a box, leader of a group of its own; 0 for none
volatile std::sig_atomic_t closeRequested = 0;
bool boxesAreShown = false;

constexpr SDL_MessageBoxButtonData OK_BUTTON[] = {
    {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT | SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, IDOK, "OK"}};
constexpr SDL_MessageBoxButtonData CHOICES[] = {
    {SDL_MESSAGEBOX_BUTTON_RETURNKEY_DEFAULT | SDL_MESSAGEBOX_BUTTON_ESCAPEKEY_DEFAULT, IDRETRY, "Continue"},
    {0, IDIGNORE, "Do not show again"},
    {0, IDABORT, "Quit"}};

bool asks(UINT type)
{
    return (type & MB_TYPEMASK) == MB_ABORTRETRYIGNORE;
}

int answerOfNone(UINT type)
{
    return asks(type) ? IDRETRY : IDOK;
}

std::string cutToScreen(const char *text)
{
    std::string shown = text;
    std::size_t end = 0;
    for (std::size_t line = 0; line < MOST_LINES && end != std::string::npos; ++line)
        end = shown.find('\n', end + (line > 0));
    if (end == std::string::npos)
        return shown;
    return shown.substr(0, end) + "\n... The log has the rest.";
}

/// Leaves the display to the desktop while the box is open, so that it can be seen and clicked.
void releaseDisplay()
{
    if (!SdlVideo::started())
        return;
    SDL_SetRelativeMouseMode(SDL_FALSE);
    if (SDL_Window *focused = SDL_GetKeyboardFocus())
        SDL_SetWindowFullscreen(focused, 0);
}

/// Starts the process that shows a box; 0 where the host has none to give.
pid_t startBox(const char *type, const char *caption, const char *text)
{
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    const char *const words[] = {"kaVel", BOX_WORD, type, caption, text, nullptr};
    pid_t process = 0;
    if (posix_spawn(&process, OWN_IMAGE, nullptr, &attributes, const_cast<char *const *>(words), environ) != 0)
        process = 0;
    posix_spawnattr_destroy(&attributes);
    return process;
}

int waitForAnswer(pid_t process, UINT type)
{
    int status = 0;
    while (waitpid(process, &status, 0) < 0)
        if (errno != EINTR)
            return answerOfNone(type);
    return WIFEXITED(status) ? WEXITSTATUS(status) : answerOfNone(type);
}

int presentMessageBox(HWND, const char *text, const char *caption, UINT type)
{
    releaseDisplay();
    const std::string shown = cutToScreen(text), kind = std::to_string(type);
    if (serverIsKept())
    {
        const int answer = askServer({kind.c_str(), caption, shown.c_str()}, closeRequested);
        return answer > 0 ? answer : answerOfNone(type);
    }
    const pid_t process = startBox(kind.c_str(), caption, shown.c_str());
    if (process == 0)
        return 0;
    openBox = process;
    if (closeRequested) // before there was a process to tell
        closeMessageBox();
    const int answer = waitForAnswer(process, type);
    openBox = 0;
    return answer;
}

/// Shows the box on the display; the answer, or 0 where that is impossible.
int showBox(UINT type, const char *caption, const char *text)
{
    const bool isError = (type & MB_ICONMASK) == MB_ICONHAND;
    SDL_MessageBoxData box{};
    box.flags = isError ? SDL_MESSAGEBOX_ERROR : SDL_MESSAGEBOX_WARNING;
    box.title = caption;
    box.message = text;
    box.buttons = asks(type) ? CHOICES : OK_BUTTON;
    box.numbuttons = asks(type) ? static_cast<int>(std::size(CHOICES)) : static_cast<int>(std::size(OK_BUTTON));
    int answer = 0;
    if (SDL_ShowMessageBox(&box, &answer) != 0)
        return 0;
    return answer > 0 ? answer : answerOfNone(type);
}
} // namespace

std::optional<int> runAsMessageBox(int argc, char **argv)
{
    if (argc == 2 && std::strcmp(argv[1], SERVER_WORD) == 0)
        return serveBoxes(startBox);
    if (argc != WORD_COUNT || std::strcmp(argv[1], BOX_WORD) != 0)
        return std::nullopt;
    return showBox(static_cast<UINT>(std::strtoul(argv[2], nullptr, 10)), argv[3], argv[4]);
}

void showMessageBoxes()
{
    boxesAreShown = displayIsExpected();
    if (boxesAreShown)
        setMessageBoxPresenter(presentMessageBox);
}

void keepMessageBoxProcess()
{
    if (boxesAreShown && !serverIsKept())
        startServer();
}

void closeMessageBox()
{
    closeRequested = 1;
    if (serverIsKept())
        tellServerToClose();
    if (openBox != 0)
        kill(-openBox, SIGTERM);
}

void leaveMessageBox(const char *text, const char *caption)
{
    if (boxesAreShown && serverIsKept())
        return leaveWithServer({CRASH_BOX_TYPE, caption, text});
    if (!boxesAreShown || _Fork() != 0)
        return;
    // Nobody who waits for the end of this process's output is to wait for the box.
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        dup2(nowhere, stream);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const char *const words[] = {"kaVel", BOX_WORD, CRASH_BOX_TYPE, caption, text, nullptr};
    execve(OWN_IMAGE, const_cast<char *const *>(words), environ);
    _exit(1);
}

} // namespace port
