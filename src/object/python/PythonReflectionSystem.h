// PythonReflectionSystem: reflected classes, enums and functions by name, for scripts.
#pragma once

#include "object/python/PythonRef.h"

/// Adds `_ReflectionSystem` and `_ReflectionInstance` to the module.
///
/// Reading an attribute of the instance gives the thing of that name; an unknown name raises AttributeError with the
/// nearest one.
void addReflectionSystem(PyObject *module);
