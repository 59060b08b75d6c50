// FailedStart: the end of a process that lacks what it cannot start without.
#pragma once

namespace Assertions
{

/// Ends the process with one line in the log, a message box where it can be seen, and status 1.
///
/// For what is amiss outside of the program, where a stack trace would tell nothing.
/// @param message  names what is lacking and the remedy
[[noreturn]] void failStart(const char *message);

} // namespace Assertions
