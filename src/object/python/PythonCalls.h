// PythonCalls: the engine's way into scripts, without the interpreter's headers.
#pragma once

#include "foundation/KVString.h"
#include "object/tree/Handle.h"
#include "object/tree/PythonObject.h"
#include "object/tree/ReflectorPtr.h"

class Object;
class SavedArguments;
class Variant;

/// Starts the interpreter, its module `_kaVel` and the search path of the scripts.
///
/// Runs once, after the reflection table is usable; later calls do nothing. A failure is a critical assertion that
/// shows the traceback.
void initPython();

/// Whether `initPython` has run.
bool isPythonRunning();

/// Imports a module and calls one of its attributes.
///
/// @return true with the call's value in `result`; false leaves `result` alone and a Python exception pending, which
///         the caller ends with `getCurrentPythonTraceback` or `pythonRaisePending`
bool pythonCall(const char *module, const char *attribute, const SavedArguments &args, Variant &result);

/// Imports a module and reads one of its attributes; fails like `pythonCall`.
bool pythonAttribute(const char *module, const char *attribute, Variant &result);

/// The text of the pending Python exception, with its traceback; clears it.
///
/// Never raises. With no exception pending, or where Python raises again meanwhile, the text says so.
String getCurrentPythonTraceback();

/// Throws the pending Python exception as `boost::python::error_already_set`.
[[noreturn]] void pythonRaisePending();

/// Runs `body(data)` and catches a Python exception thrown through it; false leaves that exception pending.
bool pythonGuarded(void (*body)(void *data), void *data);

/// Runs `body()` and catches a Python exception thrown through it; false leaves that exception pending.
template <class Body>
bool pythonGuarded(const Body &body)
{
    const Body *callee = &body;
    return pythonGuarded([](void *data) { (**static_cast<const Body **>(data))(); }, &callee);
}

/// Builds an object tree: calls `pattern` of the script `module` with `parent` and `name`, and returns what it returns.
///
/// @return the pattern's result, usually the root's handle; a Python exception travels to the caller as
///         `boost::python::error_already_set` (see `pythonGuarded`)
PythonObject loadFromPattern(const String &module, const String &pattern, const Handle<Object> &parent,
                             String name = String());

/// Builds an object tree and gives the handle of its root, invalid where the pattern returned none.
///
/// A Python exception travels to the caller like that of `loadFromPattern`.
Handle<Object> loadFromPatternToHandle(const String &module, const String &pattern, const Handle<Object> &parent,
                                       String name = String());

/// The handle that a script object wraps; invalid for any other object.
Handle<Object> handleFromPython(const PythonObject &o);

/// The one reflector of a script object; null for `None`.
///
/// The reflector is kept on the object as `__kaVel_reflector`. An object that takes no attributes has a reflector for
/// as long as somebody holds it, shared by equal callables such as two reads of one bound method. A wrapped reflected
/// thing gives that thing; a bound member of an object gives a partial application with the object bound.
ReflectorPtr getReflectorForPythonObject(const PythonObject &m);
