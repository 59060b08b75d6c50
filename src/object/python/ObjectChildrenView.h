// ObjectChildrenView: the children of an object as scripts see them.
#pragma once

#include "object/tree/Handle.h"
#include "object/python/ObjectChildrenIterator.h"
#include "object/python/PythonRef.h"

/// An object's children, in order and by name; what a script reads as `handle.children`.
///
/// Looks at the tree anew each time. Everything raises ValueError, "Attempt to locate children of a dead object", once
/// the object is gone. Of two children of one name the earlier is found.
class ObjectChildrenView
{
public:
    explicit ObjectChildrenView(const Handle<Object> &object) : obj(object) {}

    /// A walk over the children themselves.
    ObjectChildrenIterator itervalues() const { return ObjectChildrenIterator(obj); }
    /// The child of a name; raises KeyError, "Child %s not found in %s", if there is none.
    Handle<Object> getItem(const String &name) const;
    bool contains(const String &name) const;
    std::size_t getLength() const;

private:
    Handle<Object> findChild(const String &name) const;

    Handle<Object> obj;
};

/// The object whose children are asked for; raises ValueError, as a C++ exception, if it is gone.
const Object &lookUpParent(const Handle<Object> &h);

/// A new view as a script object.
PyObject *newChildrenView(const Handle<Object> &h);

/// Adds both classes to the module.
void addObjectChildren(PyObject *module);
