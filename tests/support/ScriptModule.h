// ScriptModule: scripts that a test brings itself.
#pragma once

#include <string>

/// Makes a Python module of this source, in place of the scripts' own of that name. Starts the interpreter.
///
/// Source that raises fails the test with its traceback.
void installScriptModule(const char *name, const char *source);

/// The text of a Python expression's value.
std::string scriptText(const char *expression);
