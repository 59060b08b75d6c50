// EndRequests: the host's signals by which somebody asks the process to end.
#pragma once

namespace port
{

/// Has SIGTERM, SIGHUP and SIGINT ask for the end instead of ending the process at once.
///
/// The message loop hears of the request and ends in order; the same signal a second time ends a process that no
/// longer listens. A message box that is open is closed. Signals that the process was started to ignore stay ignored.
/// From now on a reader of the output who left (SIGPIPE) and a file that may not grow (SIGXFSZ) show as failed writes.
void listenForEndRequests();

/// The signal that asked for the end since the last call; 0 for none.
int takeEndRequest();

} // namespace port
