// PythonHandleTypes: one script type for each reflected class of objects.
#pragma once

#include "object/reflection/DoxyElement.h"
#include "object/python/PythonRef.h"

/// The script type of an object class, borrowed; made with those of its bases at first use.
///
/// Derives from the type of the base class, `Handle_` at the root, and holds the members that the class adds or
/// overrides: functions, properties, nested classes and enums. Where a function and a property share a name, the
/// function has it. Types live for the whole run. Null with an exception raised where memory is out.
PyTypeObject *getPythonTypeOfClass(const IReflectedThing &objectClass);

/// The class that a script type was made for, or the nearest of its bases; null for `Handle_` itself.
const DoxyElement *getClassOfPythonType(PyTypeObject *type);
