// PythonText: values and objects as a script would write them.
#pragma once

#include "object/reflection/Variant.h"

/// The value as an expression; the shortest number that is read back as the same.
/// @param type  the reflected enum that a number belongs to; null for none
String pythonText(const Variant &value, const ReflectorPtr &type = nullptr);

/// An expression for an object, by its path below `level`, or its system.
String pythonPath(const Handle<Object> &object);
