// PythonReflectors: keeps the one reflector of each script object.
#pragma once

#include "object/python/PythonRef.h"
#include "object/tree/ReflectorPtr.h"

class PythonReflectedThing;

/// The reflector kept for a script object; null if it has none yet. Raises nothing.
ReflectorPtr findReflector(PyObject *o);

/// Keeps a fresh reflector for its script object.
///
/// On the object itself as `__kaVel_reflector`. An object that takes no attributes, but can be called and hashed, goes
/// into a table by equality for as long as its reflector lives: two reads of one bound method are equal and share it.
/// What is neither gets a fresh reflector each time.
void keepReflector(const ReflectorPtr &reflector);

/// Takes a dying reflector out of the table.
void forgetReflector(const PythonReflectedThing &reflector);
