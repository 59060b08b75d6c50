// PythonHandle: the script object that stands for an object of the tree.
#pragma once

#include "object/tree/Handle.h"
#include "object/python/PythonRef.h"

/// `Handle_` and the script types derived from it, one a reflected class, as scripts hold them.
///
/// Holds the number alone: the wrapper never keeps an object alive, and is as cheap to make as a small number.
struct PythonHandle
{
    PyObject_HEAD;
    Handle<Object> handle;
};

/// Makes the type `Handle_` and adds it to the module; false with an exception raised where that fails.
bool addPythonHandleType(PyObject *module);

/// The script type `Handle_`, borrowed; the base of the types of all classes.
PyTypeObject *getPythonHandleType();

/// Whether a script object is a handle of any class.
inline bool isPythonHandle(PyObject *o)
{
    return PyObject_TypeCheck(o, getPythonHandleType());
}

/// The handle that a script object holds, which must be one.
inline const Handle<Object> &handleOf(PyObject *o)
{
    return reinterpret_cast<PythonHandle *>(o)->handle;
}

/// A new script object for a handle, of the type that belongs to the object's class.
///
/// A handle that does not resolve gets the plain `Handle_`. Null with an exception raised where memory is out.
PyObject *wrapHandle(const Handle<Object> &h);
