// PythonMembers: the members of a reflected class as descriptors of a script type.
#pragma once

#include "object/reflection/DoxyElement.h"
#include "object/python/PythonRef.h"

/// Makes the descriptor types and adds them to the module; false with an exception raised where that fails.
bool addPythonMemberTypes(PyObject *module);

/// A descriptor that binds a reflected function to the handle it is read from.
///
/// A static member function is not bound. Calls go straight to the function's record, by position only. Null with an
/// exception raised where memory is out.
PythonRef newPythonMethod(const DoxyElement &function);

/// A descriptor that calls a getter when read and a setter when assigned.
///
/// Borrows the property, which must be one that `DoxyElement::findProperty` gave.
PythonRef newPythonProperty(const DoxyElement &owner, const PropertyDesc &property);

/// Whether an attribute of a type is one of these descriptors.
bool isPythonMember(PyObject *attribute);

/// What a handle's attribute gives through its descriptor; the shortest way for the handle's own look-up.
PyObject *readPythonMember(PyObject *member, PyObject *handle);

/// The bound call that a script object is, as a reflector that binds the same object; null for any other object.
ReflectorPtr boundCallOf(PyObject *o);
