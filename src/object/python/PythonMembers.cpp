#include "object/python/PythonMembers.h"

#include "object/reflection/PartialFunctionApplication.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonInvocation.h"

#include <structmember.h>

#include <cstddef>

namespace
{

/// A member function read from a handle.
struct PythonBoundMethod
{
    PyObject_HEAD;
    vectorcallfunc vectorcall;
    const DoxyElement *function;
    Handle<Object> handle;
};

/// A member function in the dictionary of a script type.
struct PythonMethod
{
    PyObject_HEAD;
    vectorcallfunc vectorcall;
    const DoxyElement *function;
    /// Bound anew for each read while nobody else holds it: nearly every call of a script binds for an instant only.
    PythonBoundMethod *spare;
};

/// A getter and a setter in the dictionary of a script type.
struct PythonProperty
{
    PyObject_HEAD;
    const DoxyElement *owner;
    const PropertyDesc *property;
};

PyTypeObject *methodType = nullptr;
PyTypeObject *boundMethodType = nullptr;
PyTypeObject *propertyType = nullptr;

PyObject *callPacked(const DoxyElement &function, const Handle<Object> *bound, PyObject *const *args, std::size_t given)
{
    const std::size_t first = bound ? 1 : 0;
    if (given + first > maxCallArgs)
        return raiseCallFailure(function.toString(),
                                ErrorCode(ErrorCode::CALL_FAILURE, IReflectedThing::WRONG_ARGUMENT_COUNT));
    SavedArguments packed(given + first);
    if (bound)
        packed[0].emplace(Variant::VT_HANDLE, *bound);
    for (std::size_t index = 0; index < given; ++index)
        VariantFromPython::convert(args[index], packed[index + first]);
    return callForPython(function, packed);
}

PyObject *callMethod(PyObject *self, PyObject *const *args, std::size_t countAndFlag, PyObject *keywordNames)
{
    const DoxyElement &function = *reinterpret_cast<PythonMethod *>(self)->function;
    if (hasKeywords(keywordNames))
        return raiseKeywordsRefused(function);
    return callPacked(function, nullptr, args, PyVectorcall_NARGS(countAndFlag));
}

PyObject *callBoundMethod(PyObject *self, PyObject *const *args, std::size_t countAndFlag, PyObject *keywordNames)
{
    const auto &method = *reinterpret_cast<PythonBoundMethod *>(self);
    if (hasKeywords(keywordNames))
        return raiseKeywordsRefused(*method.function);
    return callPacked(*method.function, &method.handle, args, PyVectorcall_NARGS(countAndFlag));
}

PythonBoundMethod *newBoundMethod(const DoxyElement &function)
{
    PythonBoundMethod *const bound = PyObject_New(PythonBoundMethod, boundMethodType);
    if (!bound)
        return nullptr;
    bound->vectorcall = callBoundMethod;
    bound->function = &function;
    return bound;
}

PyObject *bindToHandle(PyObject *self, const Handle<Object> &handle)
{
    auto &method = *reinterpret_cast<PythonMethod *>(self);
    PythonBoundMethod *bound = method.spare;
    if (bound && Py_REFCNT(bound) == 1)
        Py_INCREF(bound);
    else
        bound = newBoundMethod(*method.function);
    if (bound)
        bound->handle = handle;
    return reinterpret_cast<PyObject *>(bound);
}

PyObject *bindMethod(PyObject *self, PyObject *instance, PyObject *)
{
    const DoxyElement &function = *reinterpret_cast<PythonMethod *>(self)->function;
    if (!instance || !function.takesThis() || !isPythonHandle(instance))
        return Py_NewRef(self);
    return bindToHandle(self, handleOf(instance));
}

bool isSameBinding(PyObject *left, PyObject *right)
{
    const auto *a = reinterpret_cast<PythonBoundMethod *>(left);
    const auto *b = reinterpret_cast<PythonBoundMethod *>(right);
    return a->function == b->function && a->handle == b->handle;
}

PyObject *compareBoundMethods(PyObject *self, PyObject *other, int operation)
{
    if ((operation != Py_EQ && operation != Py_NE) || !Py_IS_TYPE(other, boundMethodType))
        Py_RETURN_NOTIMPLEMENTED;
    return PyBool_FromLong(isSameBinding(self, other) == (operation == Py_EQ));
}

Py_hash_t hashBoundMethod(PyObject *self)
{
    const auto *bound = reinterpret_cast<PythonBoundMethod *>(self);
    const auto hash = Py_hash_t(reinterpret_cast<std::uintptr_t>(bound->function) >> 4) ^ bound->handle.getNumber();
    return hash == -1 ? -2 : hash;
}

PyObject *showMethod(PyObject *self)
{
    const DoxyElement &function = *reinterpret_cast<PythonMethod *>(self)->function;
    return PyUnicode_FromFormat("<reflected function %s%s>", function.getQualifiedName().toCString(),
                                function.getArgsString());
}

PyObject *showBoundMethod(PyObject *self)
{
    const auto *bound = reinterpret_cast<PythonBoundMethod *>(self);
    return PyUnicode_FromFormat("<bound function %s%s of %s>", bound->function->getQualifiedName().toCString(),
                                bound->function->getArgsString(), bound->handle.toString().toCString());
}

PyObject *getMethodName(PyObject *self, void *)
{
    return String_to_python_str::convert(reinterpret_cast<PythonMethod *>(self)->function->getName());
}

PyObject *getMethodQualifiedName(PyObject *self, void *)
{
    return String_to_python_str::convert(reinterpret_cast<PythonMethod *>(self)->function->getQualifiedName());
}

PyObject *getMethodDoc(PyObject *self, void *)
{
    return PyUnicode_FromString(reinterpret_cast<PythonMethod *>(self)->function->getBriefDescription());
}

PyObject *getBoundObject(PyObject *self, void *)
{
    return wrapHandle(reinterpret_cast<PythonBoundMethod *>(self)->handle);
}

PyObject *readOfHandle(PyObject *self, const Handle<Object> &handle)
{
    const PropertyDesc &property = *reinterpret_cast<PythonProperty *>(self)->property;
    if (!property.getGetter())
        return raisePython(PyExc_AttributeError, property.toString() + SCS(" cannot be read: it has no getter"));
    SavedArguments packed(1);
    packed[0].emplace(Variant::VT_HANDLE, handle);
    return callForPython(static_cast<const DoxyElement &>(*property.getGetter()), packed);
}

PyObject *readProperty(PyObject *self, PyObject *instance, PyObject *)
{
    return instance && isPythonHandle(instance) ? readOfHandle(self, handleOf(instance)) : Py_NewRef(self);
}

int writeProperty(PyObject *self, PyObject *instance, PyObject *value)
{
    const PropertyDesc &property = *reinterpret_cast<PythonProperty *>(self)->property;
    if (!value || !property.getSetter() || !isPythonHandle(instance))
    {
        raisePython(PyExc_AttributeError, property.toString() + (value ? SCS(" cannot be set: it has no setter")
                                                                       : SCS(" cannot be deleted")));
        return -1;
    }
    SavedArguments packed(2);
    packed[0].emplace(Variant::VT_HANDLE, handleOf(instance));
    VariantFromPython::convert(value, packed[1]);
    return PythonRef(callForPython(static_cast<const DoxyElement &>(*property.getSetter()), packed)) ? 0 : -1;
}

PyObject *showProperty(PyObject *self)
{
    const auto *property = reinterpret_cast<PythonProperty *>(self);
    return PyUnicode_FromFormat("<reflected property %s of %s>", property->property->getName().toCString(),
                                property->owner->getQualifiedName().toCString());
}

PyObject *getPropertyDoc(PyObject *self, void *)
{
    const PropertyDesc &property = *reinterpret_cast<PythonProperty *>(self)->property;
    const ReflectorPtr &described = property.getGetter() ? property.getGetter() : property.getSetter();
    return PyUnicode_FromString(static_cast<const DoxyElement &>(*described).getBriefDescription());
}

PyTypeObject *makeType(PyType_Spec &spec)
{
    return reinterpret_cast<PyTypeObject *>(PyType_FromSpec(&spec));
}

PyTypeObject *makeMethodType()
{
    static PyMemberDef members[] = {
        {"__vectorcalloffset__", T_PYSSIZET, offsetof(PythonMethod, vectorcall), READONLY, nullptr}, {}};
    static PyGetSetDef texts[] = {{"__name__", getMethodName, nullptr, nullptr, nullptr},
                                  {"__qualname__", getMethodQualifiedName, nullptr, nullptr, nullptr},
                                  {"__doc__", getMethodDoc, nullptr, nullptr, nullptr},
                                  {}};
    PyType_Slot slots[] = {{Py_tp_call, pythonSlot(PyVectorcall_Call)},
                           {Py_tp_descr_get, pythonSlot(bindMethod)},
                           {Py_tp_repr, pythonSlot(showMethod)},
                           {Py_tp_members, members},
                           {Py_tp_getset, texts},
                           {0, nullptr}};
    PyType_Spec spec = {"_kaVel.reflected_function", sizeof(PythonMethod), 0,
                        Py_TPFLAGS_DEFAULT | Py_TPFLAGS_METHOD_DESCRIPTOR | Py_TPFLAGS_HAVE_VECTORCALL |
                            Py_TPFLAGS_DISALLOW_INSTANTIATION,
                        slots};
    return makeType(spec);
}

PyTypeObject *makeBoundMethodType()
{
    // The record stands at the same place as in a method, so that the texts are read by the same functions.
    static_assert(offsetof(PythonMethod, function) == offsetof(PythonBoundMethod, function));
    static PyMemberDef members[] = {
        {"__vectorcalloffset__", T_PYSSIZET, offsetof(PythonBoundMethod, vectorcall), READONLY, nullptr}, {}};
    static PyGetSetDef texts[] = {{"__name__", getMethodName, nullptr, nullptr, nullptr},
                                  {"__qualname__", getMethodQualifiedName, nullptr, nullptr, nullptr},
                                  {"__doc__", getMethodDoc, nullptr, nullptr, nullptr},
                                  {"__self__", getBoundObject, nullptr, nullptr, nullptr},
                                  {}};
    PyType_Slot slots[] = {{Py_tp_call, pythonSlot(PyVectorcall_Call)},
                           {Py_tp_richcompare, pythonSlot(compareBoundMethods)},
                           {Py_tp_hash, pythonSlot(hashBoundMethod)},
                           {Py_tp_repr, pythonSlot(showBoundMethod)},
                           {Py_tp_members, members},
                           {Py_tp_getset, texts},
                           {0, nullptr}};
    PyType_Spec spec = {"_kaVel.bound_function", sizeof(PythonBoundMethod), 0,
                        Py_TPFLAGS_DEFAULT | Py_TPFLAGS_HAVE_VECTORCALL | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    return makeType(spec);
}

PyTypeObject *makePropertyType()
{
    static PyGetSetDef texts[] = {{"__doc__", getPropertyDoc, nullptr, nullptr, nullptr}, {}};
    PyType_Slot slots[] = {{Py_tp_descr_get, pythonSlot(readProperty)},
                           {Py_tp_descr_set, pythonSlot(writeProperty)},
                           {Py_tp_repr, pythonSlot(showProperty)},
                           {Py_tp_getset, texts},
                           {0, nullptr}};
    PyType_Spec spec = {"_kaVel.reflected_property", sizeof(PythonProperty), 0,
                        Py_TPFLAGS_DEFAULT | Py_TPFLAGS_DISALLOW_INSTANTIATION, slots};
    return makeType(spec);
}

} // namespace

bool addPythonMemberTypes(PyObject *module)
{
    methodType = makeMethodType();
    boundMethodType = makeBoundMethodType();
    propertyType = makePropertyType();
    for (PyTypeObject *type : {methodType, boundMethodType, propertyType})
        if (!type || PyModule_AddType(module, type) < 0)
            return false;
    return true;
}

PythonRef newPythonMethod(const DoxyElement &function)
{
    PythonMethod *const method = PyObject_New(PythonMethod, methodType);
    if (!method)
        return nullptr;
    method->vectorcall = callMethod;
    method->function = &function;
    method->spare = function.takesThis() ? newBoundMethod(function) : nullptr;
    return PythonRef(reinterpret_cast<PyObject *>(method));
}

PythonRef newPythonProperty(const DoxyElement &owner, const PropertyDesc &property)
{
    PythonProperty *const made = PyObject_New(PythonProperty, propertyType);
    if (!made)
        return nullptr;
    made->owner = &owner;
    made->property = &property;
    return PythonRef(reinterpret_cast<PyObject *>(made));
}

bool isPythonMember(PyObject *attribute)
{
    return Py_IS_TYPE(attribute, methodType) || Py_IS_TYPE(attribute, propertyType);
}

PyObject *readPythonMember(PyObject *member, PyObject *handle)
{
    if (Py_IS_TYPE(member, propertyType))
        return readOfHandle(member, handleOf(handle));
    const bool bind = reinterpret_cast<PythonMethod *>(member)->function->takesThis();
    return bind ? bindToHandle(member, handleOf(handle)) : Py_NewRef(member);
}

ReflectorPtr boundCallOf(PyObject *o)
{
    if (!Py_IS_TYPE(o, boundMethodType))
        return nullptr;
    const auto *bound = reinterpret_cast<PythonBoundMethod *>(o);
    return PartialFunctionApplication::construct(bound->function, bound->handle);
}
