// PythonInvocation: reflected calls made by scripts, and how their failures are raised.
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
