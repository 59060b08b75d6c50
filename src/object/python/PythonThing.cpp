#include "object/python/PythonThing.h"

#include "object/reflection/NearestName.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonInvocation.h"
#include "object/python/PythonReflectedThing.h"

#include "foundation/Allocators.h"

#include <boost/python/extract.hpp>

#include <structmember.h>

#include <cstddef>
#include <new>

namespace
{

PyTypeObject *thingType = nullptr;

struct PythonThing
{
    PyObject_HEAD;
    vectorcallfunc vectorcall;
    ReflectorPtr thing;
};

PythonThing &self_(PyObject *self)
{
    return *reinterpret_cast<PythonThing *>(self);
}

const IReflectedThing &thing_(PyObject *self)
{
    return *self_(self).thing;
}

PyObject *callThing(PyObject *self, PyObject *const *args, std::size_t countAndFlag, PyObject *keywordNames)
{
    const ReflectorPtr thing = self_(self).thing;
    if (hasKeywords(keywordNames))
        return raiseKeywordsRefused(*thing);
    const std::size_t given = PyVectorcall_NARGS(countAndFlag);
    if (given > maxCallArgs)
        return raiseCallFailure(thing->toString(),
                                ErrorCode(ErrorCode::CALL_FAILURE, IReflectedThing::WRONG_ARGUMENT_COUNT));
    SavedArguments packed(given);
    for (std::size_t index = 0; index < given; ++index)
        VariantFromPython::convert(args[index], packed[index]);
    return callForPython(*thing, packed);
}

PyObject *getName(PyObject *self, void *)
{
    return String_to_python_str::convert(thing_(self).getName());
}

PyObject *getQualifiedName(PyObject *self, void *)
{
    return String_to_python_str::convert(thing_(self).getQualifiedName());
}

PyObject *getMember(PyObject *self, PyObject *name)
{
    String text;
    if (!String_from_python_str::convert(name, text))
        return raisePython(PyExc_TypeError, SCS("getMember takes the member's name"));
    return wrapThing(thing_(self).getMember(text));
}

PyObject *raiseNoMember(const IReflectedThing &thing, const String &name)
{
    NearestName nearest(name);
    for (const ReflectorPtr &member : thing.getMemberList())
        nearest.consider(member->getName());
    return raisePython(PyExc_AttributeError,
                       String::format("no member '%s' in %s%s", name.toCString(), thing.getQualifiedName().toCString(),
                                      nearest.hint().toCString()));
}

/// Attributes of the wrapper itself, then the members of the thing.
PyObject *getAttribute(PyObject *self, PyObject *name)
{
    PyObject *const found = PyObject_GenericGetAttr(self, name);
    if (found || !PyErr_ExceptionMatches(PyExc_AttributeError))
        return found;
    PyErr_Clear();
    String text;
    String_from_python_str::convert(name, text);
    const ReflectorPtr member = text.startsWith(SCS("__")) ? ReflectorPtr() : thing_(self).getMember(text);
    return member ? wrapThing(member) : raiseNoMember(thing_(self), text);
}

PyObject *isSubclassOf(PyObject *self, PyObject *other)
{
    if (!isPythonThing(other))
        return raisePython(PyExc_TypeError, SCS("isSubclassOf takes a reflected class"));
    return PyBool_FromLong(thing_(self).isSubclassOf(self_(other).thing));
}

PyObject *constructThing(PyObject *self, PyObject *const *args, Py_ssize_t count)
{
    AllocationCategory *category = &defaultAllocationCategory;
    if (count > 1)
        return raisePython(PyExc_TypeError, SCS("construct_ takes one AllocationCategory at most"));
    if (count == 1)
    {
        const boost::python::extract<AllocationCategory &> given(args[0]);
        if (!given.check())
            return raisePython(PyExc_TypeError, SCS("construct_ takes an AllocationCategory"));
        category = &given();
    }
    try
    {
        return wrapHandle(thing_(self).construct(*category));
    }
    catch (...)
    {
        return raiseCaughtException();
    }
}

PyObject *listAttributes(PyObject *self, PyObject *)
{
    PythonRef names(PyObject_CallMethod(reinterpret_cast<PyObject *>(&PyType_Type), "__dir__", "O", thingType));
    PythonRef list(names ? PySequence_List(names.get()) : nullptr);
    if (!list)
        return nullptr;
    for (const ReflectorPtr &member : thing_(self).getMemberList())
    {
        const PythonRef name(String_to_python_str::convert(member->getName()));
        if (!name || PyList_Append(list.get(), name.get()) < 0)
            return nullptr;
    }
    return list.release();
}

PyObject *copyThing(PyObject *self, PyObject *)
{
    return Py_NewRef(self);
}

PyObject *getNumber(PyObject *self)
{
    if (!isEnumerator(thing_(self)))
        return raisePython(PyExc_TypeError, thing_(self).getQualifiedName() + SCS(" is no enumerator"));
    return PyLong_FromLongLong(thing_(self).getEnumValue());
}

PyObject *compareThings(PyObject *self, PyObject *other, int operation)
{
    if (operation != Py_EQ && operation != Py_NE)
        Py_RETURN_NOTIMPLEMENTED;
    if (isPythonThing(other))
        return PyBool_FromLong((self_(self).thing == self_(other).thing) == (operation == Py_EQ));
    if (!PyLong_Check(other) || !isEnumerator(thing_(self)))
        Py_RETURN_NOTIMPLEMENTED;
    const PythonRef number(getNumber(self));
    return number ? PyObject_RichCompare(number.get(), other, operation) : nullptr;
}

/// An enumerator is equal to its number and so has the number's hash.
Py_hash_t hashThing(PyObject *self)
{
    if (!isEnumerator(thing_(self)))
        return Py_hash_t(hash_value(self_(self).thing));
    const PythonRef number(getNumber(self));
    return number ? PyObject_Hash(number.get()) : -1;
}

PyObject *showThing(PyObject *self)
{
    return String_to_python_str::convert(SCS("<") + thing_(self).toString() + SCS(">"));
}

/// The script object behind the thing, if this wrapper alone keeps the thing alive.
///
/// A script object holds the wrapper of its reflector, which holds the object: the collector may break that circle
/// when nobody else refers to the reflector.
PyObject *soleScriptObject(PyObject *self)
{
    const auto *script = dynamic_cast<const PythonReflectedThing *>(self_(self).thing.get());
    return script && script->hasOneReference() ? script->getObject().get() : nullptr;
}

int traverseThing(PyObject *self, visitproc visit, void *arg)
{
    Py_VISIT(Py_TYPE(self));
    Py_VISIT(soleScriptObject(self));
    return 0;
}

int clearThing(PyObject *self)
{
    if (soleScriptObject(self))
        static_cast<const PythonReflectedThing &>(thing_(self)).letGo();
    return 0;
}

void destroyThing(PyObject *self)
{
    PyObject_GC_UnTrack(self);
    self_(self).thing.~ReflectorPtr();
    PyTypeObject *const type = Py_TYPE(self);
    type->tp_free(self);
    Py_DECREF(type);
}

} // namespace

bool addPythonThingType(PyObject *module)
{
    static PyMethodDef methods[] = {
        {"getMember", getMember, METH_O, "The member of this name, or None."},
        {"isSubclassOf", isSubclassOf, METH_O, "Whether this class is the other or derives from it."},
        {"construct_", reinterpret_cast<PyCFunction>(pythonSlot(constructThing)), METH_FASTCALL,
         "Makes an object of this class; the handle is false where the class has none of its own."},
        {"__dir__", listAttributes, METH_NOARGS, nullptr},
        {"__copy__", copyThing, METH_NOARGS, nullptr},
        {"__deepcopy__", copyThing, METH_O, nullptr},
        {}};
    static PyGetSetDef properties[] = {
        {"name", getName, nullptr, "Short name.", nullptr},
        {"qualifiedName", getQualifiedName, nullptr, "Name with its scopes, as Object::getName.", nullptr},
        {}};
    static PyMemberDef members[] = {
        {"__vectorcalloffset__", T_PYSSIZET, offsetof(PythonThing, vectorcall), READONLY, nullptr}, {}};
    PyType_Slot slots[] = {
        {Py_tp_call, pythonSlot(PyVectorcall_Call)},
        {Py_tp_dealloc, pythonSlot(destroyThing)},
        {Py_tp_traverse, pythonSlot(traverseThing)},
        {Py_tp_clear, pythonSlot(clearThing)},
        {Py_tp_getattro, pythonSlot(getAttribute)},
        {Py_nb_int, pythonSlot(getNumber)},
        {Py_nb_index, pythonSlot(getNumber)},
        {Py_tp_hash, pythonSlot(hashThing)},
        {Py_tp_richcompare, pythonSlot(compareThings)},
        {Py_tp_repr, pythonSlot(showThing)},
        {Py_tp_methods, methods},
        {Py_tp_getset, properties},
        {Py_tp_members, members},
        {Py_tp_doc,
         const_cast<char *>("A class, function, enum, message or bound call: callable and looked at by name.")},
        {0, nullptr}};
    PyType_Spec spec = {"_kaVel.IReflectedThing", sizeof(PythonThing), 0,
                        Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_GC | Py_TPFLAGS_HAVE_VECTORCALL |
                            Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_IMMUTABLETYPE,
                        slots};
    thingType = reinterpret_cast<PyTypeObject *>(PyType_FromSpec(&spec));
    return thingType && PyModule_AddType(module, thingType) == 0;
}

PyTypeObject *getPythonThingType()
{
    return thingType;
}

const ReflectorPtr &thingOf(PyObject *o)
{
    return self_(o).thing;
}

PyObject *wrapThing(const ReflectorPtr &thing)
{
    if (!thing)
        Py_RETURN_NONE;
    PythonThing *const made = PyObject_GC_New(PythonThing, thingType);
    if (!made)
        return nullptr;
    made->vectorcall = callThing;
    new (&made->thing) ReflectorPtr(thing);
    PyObject_GC_Track(made);
    return reinterpret_cast<PyObject *>(made);
}

bool isEnumerator(const IReflectedThing &thing)
{
    return thing.getKind() == IReflectedThing::ENUMVALUE;
}
