// MessageBoxServer: a process that shows message boxes for one that may not start any.
#pragma once

#include <csignal>
#include <sys/types.h>

namespace port
{

/// The word by which a process of this image is told to serve, at its standard input.
inline constexpr const char *SERVER_WORD = "--message-boxes";

/// What a box shows; texts that end with a zero, borrowed for the call.
struct BoxTexts
{
    const char *type; ///< the number, in digits
    const char *caption;
    const char *text;
};

/// Starts the process that serves this one, and ends with it.
void startServer();
bool serverIsKept();

/// Has a box shown, and waits for its answer; 0 where there is none.
/// @param closing  the box is closed again at once where this is set
int askServer(const BoxTexts &box, const volatile std::sig_atomic_t &closing);
/// Closes the box that is open; a signal handler may call it.
void tellServerToClose();
/// Has a box shown that stays, and does not wait; a signal handler may call it.
void leaveWithServer(const BoxTexts &box);

/// Serves until the other process is gone; the exit code.
/// @param show  starts the process of one box, leader of a group of its own; 0 where that is impossible
int serveBoxes(pid_t (*show)(const char *type, const char *caption, const char *text));

} // namespace port
