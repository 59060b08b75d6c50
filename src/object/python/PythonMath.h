// PythonMath: the math types as scripts see them.
#pragma once

#include "object/python/PythonRef.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

/// Adds Vec4 and Quaternion to the module.
void addPythonMath(PyObject *module);

/// A new script object that holds a copy; null with an exception raised where memory is out.
PyObject *newPythonVec4(const Vec4 &value);
PyObject *newPythonQuaternion(const Quaternion &value);

/// The value inside a script object, borrowed; null for any other object.
const Vec4 *vec4Of(PyObject *o);
const Quaternion *quaternionOf(PyObject *o);
