#include "object/python/PythonHandle.h"

#include "object/reflection/NearestName.h"
#include "object/tree/Object.h"
#include "object/python/ObjectChildrenView.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonHandleTypes.h"
#include "object/python/PythonInvocation.h"
#include "object/python/PythonMembers.h"
#include "object/python/PythonThing.h"

namespace
{

PyTypeObject *handleType = nullptr;

PyObject *raiseDeadHandle(PyObject *self, const String &used)
{
    const String what = handleOf(self).toString() + SCS(".") + used;
    return raiseCallFailure(what, ErrorCode(ErrorCode::CALL_FAILURE, IReflectedThing::BAD_THIS_POINTER),
                            handleOf(self));
}

bool isSpecialName(const String &name)
{
    return name.startsWith(SCS("__"));
}

/// Raises what reading or setting an unknown attribute of a handle deserves.
PyObject *raiseNoMember(PyObject *self, PyObject *attribute)
{
    String name;
    String_from_python_str::convert(attribute, name);
    const DoxyElement *const objectClass = getClassOfPythonType(Py_TYPE(self));
    if (!objectClass && !isSpecialName(name))
        return raiseDeadHandle(self, name);
    NearestName nearest(name);
    if (objectClass)
    {
        for (const PropertyDesc &property : objectClass->getPropertyList())
            nearest.consider(property.getName());
        for (const ReflectorPtr &member : objectClass->getMemberList())
            if (member->getKind() == IReflectedThing::FUNCTION)
                nearest.consider(member->getName());
    }
    const String className = objectClass ? objectClass->getQualifiedName() : SCS("Handle_");
    return raisePython(PyExc_AttributeError, String::format("no member '%s' in %s%s", name.toCString(),
                                                            className.toCString(), nearest.hint().toCString()));
}

PyObject *getAttribute(PyObject *self, PyObject *name)
{
    // A handle has no attributes of its own: everything stands in its type.
    PyObject *const attribute = _PyType_Lookup(Py_TYPE(self), name);
    if (!attribute)
        return raiseNoMember(self, name);
    if (isPythonMember(attribute))
        return readPythonMember(attribute, self);
    PythonRef kept = newPythonRef(attribute);
    const descrgetfunc read = Py_TYPE(attribute)->tp_descr_get;
    return read ? read(attribute, self, reinterpret_cast<PyObject *>(Py_TYPE(self))) : kept.release();
}

int setAttribute(PyObject *self, PyObject *name, PyObject *value)
{
    PyObject *const member = _PyType_Lookup(Py_TYPE(self), name);
    if (member && Py_TYPE(member)->tp_descr_set)
    {
        const PythonRef kept = newPythonRef(member);
        return Py_TYPE(member)->tp_descr_set(member, self, value);
    }
    if (!member)
        raiseNoMember(self, name);
    else
        PyErr_Format(PyExc_AttributeError, "'%U' of %s is no property and cannot be set", name, Py_TYPE(self)->tp_name);
    return -1;
}

void destroyHandle(PyObject *self)
{
    PyTypeObject *const type = Py_TYPE(self);
    type->tp_free(self);
    Py_DECREF(type);
}

PyObject *getTypeOfHandle(PyObject *self, PyObject *)
{
    const auto object = handleOf(self).lookup();
    return object ? wrapThing(object->getType()) : raiseDeadHandle(self, SCS("_getType"));
}

PyObject *getChildren(PyObject *self, void *)
{
    return newChildrenView(handleOf(self));
}

int isHandleValid(PyObject *self)
{
    return handleOf(self).isValid();
}

Py_hash_t hashHandle(PyObject *self)
{
    return Py_hash_t(handleOf(self).getNumber());
}

PyObject *compareHandles(PyObject *self, PyObject *other, int operation)
{
    if ((operation != Py_EQ && operation != Py_NE) || !isPythonHandle(other))
        Py_RETURN_NOTIMPLEMENTED;
    return PyBool_FromLong((handleOf(self) == handleOf(other)) == (operation == Py_EQ));
}

PyObject *showHandle(PyObject *self)
{
    const auto object = handleOf(self).lookup();
    const String className = object ? object->getType()->getName() : SCS("Object");
    return String_to_python_str::convert(handleToString(className, handleOf(self)));
}

/// A copy of a handle is the handle: the object behind it is not copied with a script's data.
PyObject *copyHandle(PyObject *self, PyObject *)
{
    return Py_NewRef(self);
}

PyObject *refuseToPickle(PyObject *, PyObject *)
{
    return raisePython(PyExc_TypeError, SCS("a handle cannot be pickled: its number means nothing in another run"));
}

} // namespace

bool addPythonHandleType(PyObject *module)
{
    static PyMethodDef methods[] = {{"_getType", getTypeOfHandle, METH_NOARGS, "The reflected class of the object."},
                                    {"__copy__", copyHandle, METH_NOARGS, nullptr},
                                    {"__deepcopy__", copyHandle, METH_O, nullptr},
                                    {"__reduce_ex__", refuseToPickle, METH_O, nullptr},
                                    {}};
    static PyGetSetDef properties[] = {
        {"children", getChildren, nullptr, "The object's children, in order or by name.", nullptr}, {}};
    PyType_Slot slots[] = {
        {Py_tp_new, pythonSlot(PyType_GenericNew)},
        {Py_tp_dealloc, pythonSlot(destroyHandle)},
        {Py_tp_getattro, pythonSlot(getAttribute)},
        {Py_tp_setattro, pythonSlot(setAttribute)},
        {Py_nb_bool, pythonSlot(isHandleValid)},
        {Py_tp_hash, pythonSlot(hashHandle)},
        {Py_tp_richcompare, pythonSlot(compareHandles)},
        {Py_tp_repr, pythonSlot(showHandle)},
        {Py_tp_methods, methods},
        {Py_tp_getset, properties},
        {Py_tp_doc, const_cast<char *>("A reference to an object of the engine; false once it died.")},
        {0, nullptr}};
    PyType_Spec spec = {"_kaVel.Handle_", sizeof(PythonHandle), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, slots};
    handleType = reinterpret_cast<PyTypeObject *>(PyType_FromSpec(&spec));
    return handleType && PyModule_AddType(module, handleType) == 0;
}

PyTypeObject *getPythonHandleType()
{
    return handleType;
}

PyObject *wrapHandle(const Handle<Object> &h)
{
    const auto object = h.lookup();
    PyTypeObject *const type = object ? getPythonTypeOfClass(*object->getType()) : handleType;
    if (!type)
        return nullptr;
    PyObject *const made = type->tp_alloc(type, 0);
    if (made)
        reinterpret_cast<PythonHandle *>(made)->handle = h;
    return made;
}
