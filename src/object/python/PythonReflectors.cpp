#include "object/python/PythonReflectors.h"

#include "object/reflection/PartialFunctionApplication.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonMembers.h"
#include "object/python/PythonReflectedThing.h"
#include "object/python/PythonThing.h"

namespace
{

PyObject *attributeName()
{
    static PyObject *const name = PyUnicode_InternFromString("__kaVel_reflector");
    return name;
}

/// Reflectors of objects that take no attributes: the object to the address of its PythonReflectedThing.
PyObject *reflectorsByObject()
{
    static PyObject *const table = PyDict_New();
    return table;
}

/// The reflector behind a wrapper, if it stands for this very object and not for one that shares its attributes: an
/// instance shows the attribute of its class, a bound method that of its function, a copy that of the original.
ReflectorPtr reflectorFor(PyObject *o, PyObject *wrapper)
{
    if (!wrapper || !isPythonThing(wrapper))
        return nullptr;
    const auto *script = dynamic_cast<const PythonReflectedThing *>(thingOf(wrapper).get());
    return script && script->getObject().get() == o ? thingOf(wrapper) : nullptr;
}

} // namespace

ReflectorPtr findReflector(PyObject *o)
{
    const PythonRef wrapper(PyObject_GetAttr(o, attributeName()));
    if (ReflectorPtr kept = reflectorFor(o, wrapper.get()))
        return kept;
    PyErr_Clear();
    PyObject *const address = PyCallable_Check(o) ? PyDict_GetItemWithError(reflectorsByObject(), o) : nullptr;
    PyErr_Clear();
    return address ? static_cast<const PythonReflectedThing *>(PyLong_AsVoidPtr(address)) : nullptr;
}

void keepReflector(const ReflectorPtr &reflector)
{
    const auto *script = static_cast<const PythonReflectedThing *>(reflector.get());
    PyObject *const o = script->getObject().get();
    const PythonRef wrapper(wrapThing(reflector));
    if (wrapper && PyObject_SetAttr(o, attributeName(), wrapper.get()) == 0)
        return;
    PyErr_Clear();
    const PythonRef address(PyLong_FromVoidPtr(const_cast<PythonReflectedThing *>(script)));
    if (address && PyCallable_Check(o))
        PyDict_SetItem(reflectorsByObject(), o, address.get());
    PyErr_Clear();
}

void forgetReflector(const PythonReflectedThing &reflector)
{
    PyObject *const o = reflector.getObject().get();
    if (!o || PyDict_GET_SIZE(reflectorsByObject()) == 0 || !PyCallable_Check(o))
        return;
    const PythonExceptionSaver saver;
    PyObject *const address = PyDict_GetItemWithError(reflectorsByObject(), o);
    if (address && PyLong_AsVoidPtr(address) == &reflector)
        PyDict_DelItem(reflectorsByObject(), o);
    PyErr_Clear();
}

ReflectorPtr getReflectorForPythonObject(const PythonObject &m)
{
    if (m.isNone())
        return nullptr;
    if (isPythonThing(m.get()))
        return thingOf(m.get());
    if (ReflectorPtr bound = boundCallOf(m.get()))
        return bound;
    if (ReflectorPtr known = findReflector(m.get()))
        return known;
    ReflectorPtr made = new PythonReflectedThing(m);
    keepReflector(made);
    return made;
}
