// CrashReport: what is told of a fatal signal before it ends the process.
#pragma once

namespace CrashReport
{

/// Writes what the scripts were doing to a descriptor of the host; called in a signal handler.
using ScriptTraceWriter = void (*)(int descriptor);

/// Has a fatal signal told in the log before it ends the process: the signal, where it came from, and the stack.
///
/// With a display a message box says so too. Loads the symbols now, since a signal handler may not.
void install();

/// Has a crash tell of the scripts as well; null for no longer.
void setScriptTraceWriter(ScriptTraceWriter writer);

} // namespace CrashReport
