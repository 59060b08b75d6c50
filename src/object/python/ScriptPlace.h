// ScriptPlace: the line of a script that led to a call of the engine.
#pragma once

#include "foundation/KVString.h"

/// A line of a script; an empty file where no script is meant.
struct ScriptPlace
{
    String file;
    long line = 0;
};

/// The line that the running script is at: the innermost one outside of the module `kaVel`, through which others call.
///
/// No place where no script runs.
ScriptPlace currentScriptPlace();

/// The line that the pending Python exception came from: the innermost one outside of the module `kaVel`, or the one
/// that cannot be read. The exception stays pending.
ScriptPlace pendingScriptPlace();
