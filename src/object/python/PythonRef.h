// PythonRef: owned references and raised exceptions, for the files of the script layer.
#pragma once

#include <Python.h>

#include "foundation/KVString.h"

#include <memory>

struct PythonDecref
{
    void operator()(PyObject *o) const { Py_DECREF(o); }
};

/// Owner of the reference that a call of the interpreter returned; null where the call raised.
using PythonRef = std::unique_ptr<PyObject, PythonDecref>;

/// An owner with a reference of its own.
inline PythonRef newPythonRef(PyObject *borrowed)
{
    return PythonRef(Py_XNewRef(borrowed));
}

/// A function in the form in which the interpreter takes the functions of a type.
template <class Function>
void *pythonSlot(Function *function)
{
    return reinterpret_cast<void *>(function);
}

/// Raises an exception with a text; one that is pending already becomes its cause.
///
/// @return null, so that a function of the interpreter's kind can return it
PyObject *raisePython(PyObject *exceptionType, const String &text);

/// Puts the pending exception aside for its scope, for clean-up that may itself run scripts.
class PythonExceptionSaver
{
public:
    PythonExceptionSaver() { PyErr_Fetch(&type, &value, &traceback); }
    ~PythonExceptionSaver() { PyErr_Restore(type, value, traceback); }
    PythonExceptionSaver(const PythonExceptionSaver &) = delete;
    PythonExceptionSaver &operator=(const PythonExceptionSaver &) = delete;

private:
    PyObject *type = nullptr;
    PyObject *value = nullptr;
    PyObject *traceback = nullptr;
};
