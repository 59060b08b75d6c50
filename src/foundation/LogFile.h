// LogFile: the file that keeps the log of a run.
#pragma once

#include "foundation/KVString.h"

namespace LogFile
{

/// Keeps all debug output of this run in a new file of the user's folder for such, and deletes the oldest beyond five.
///
/// The folder is "mornal/logs" of XDG_STATE_HOME, or of ~/.local/state. Where it cannot be written a warning says so,
/// and the run goes on without.
/// @param heading  first line of the file, without a line break
void start(const char *heading);

/// Path of this run's file; empty without one. Stays where it is to the end of the process.
const char *path();

/// Where this run's file is, as a message box says it behind its message; empty without one.
String placeForBox();

/// Tells on the debug output where this run's file is, for a run that failed; nothing without one.
///
/// A signal handler may call it.
void tell();

} // namespace LogFile

/// Path of the file that keeps this run's log; empty without one. What else is kept of a run lies beside it, under the
/// same name but for the extension, and goes when the log goes.
String getLogFile();
