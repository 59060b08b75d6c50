// PythonThing: the script object that stands for a reflected thing.
#pragma once

#include "object/python/PythonRef.h"
#include "object/tree/ReflectorPtr.h"

/// Makes the type `IReflectedThing` and adds it to the module; false with an exception raised where that fails.
bool addPythonThingType(PyObject *module);

/// The script type `IReflectedThing`, borrowed.
PyTypeObject *getPythonThingType();

/// Whether a script object stands for a reflected thing.
inline bool isPythonThing(PyObject *o)
{
    return Py_IS_TYPE(o, getPythonThingType());
}

/// The thing that a script object stands for, which must be one that `isPythonThing` accepts; never null.
const ReflectorPtr &thingOf(PyObject *o);

/// A new script object for a thing; `None` for null.
PyObject *wrapThing(const ReflectorPtr &thing);

/// Whether a thing is an enumerator, which scripts use as a number.
bool isEnumerator(const IReflectedThing &thing);
