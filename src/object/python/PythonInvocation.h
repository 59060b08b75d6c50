// PythonInvocation: reflected calls made by scripts, how their failures are raised, and who hears of them.
#pragma once

#include "object/reflection/DoxyElement.h"
#include "object/python/PythonRef.h"
#include "object/reflection/SavedArguments.h"

/// Makes a reflected call for a script.
///
/// @return the value as a new reference, `None` for a function without result; null with "Call to %s failed: %s"
///         raised as RuntimeError, or with the exception that came through the call
PyObject *callForPython(const IReflectedThing &thing, SavedArguments &args);
/// The same for a function of the table, without a virtual call.
PyObject *callForPython(const DoxyElement &function, SavedArguments &args);

/// Raises RuntimeError with "Call to %s failed: %s" of what was called and the code's text; returns null.
/// @param subject  whom the call was for; of one that is gone a note tells what it was and how it ended
PyObject *raiseCallFailure(const String &what, const ErrorCode &code, const Handle<Object> &subject = Handle<Object>());

/// Raises what came through the engine as a C++ exception; to be called in a catch block. Returns null.
PyObject *raiseCaughtException();

/// Raises TypeError for keyword arguments, which a reflected call does not take; returns null.
PyObject *raiseKeywordsRefused(const IReflectedThing &thing);

/// Whether a call of the interpreter came with keyword arguments.
inline bool hasKeywords(PyObject *keywordNames)
{
    return keywordNames && PyTuple_GET_SIZE(keywordNames) > 0;
}

/// Hears setters and murders that scripts call, however they call them; what the engine calls by itself it does not.
///
/// There is at most one; while there is none, a call costs a comparison more. It is called before the change with the
/// handle and the name of the property, or "murder", and hears nothing of what it does itself. One that raises is told
/// in the log and hears no more.
class PythonListener
{
public:
    static bool isThere() { return listener && !isTelling; }
    /// Tells the listener of a call, if that is one of those that it hears.
    static void tell(const DoxyElement &function, const SavedArguments &args);

private:
    friend void addPythonListener(PyObject *module);
    static void set(PyObject *function);

    static inline PyObject *listener = nullptr;
    static inline bool isTelling = false;
};

/// Adds `hearChanges` to the module, by which a script becomes the listener.
void addPythonListener(PyObject *module);
