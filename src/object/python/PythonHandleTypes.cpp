#include "object/python/PythonHandleTypes.h"

#include "object/tree/Object.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonMembers.h"
#include "object/python/PythonThing.h"

#include <unordered_map>

namespace
{

using TypeMap = std::unordered_map<const IReflectedThing *, PyTypeObject *>;

TypeMap &typesByClass()
{
    static auto *map = new TypeMap;
    return *map;
}

/// The direct base through which a class is an object; null for Object itself.
const DoxyElement *objectBaseOf(const DoxyElement &objectClass)
{
    for (const DoxyRef &base : objectClass.getBases())
        if (base.obj && base.obj->isSubclassOf(Object::staticType))
            return base.obj;
    return nullptr;
}

bool isIdentifier(const String &name)
{
    PythonRef text(PyUnicode_FromStringAndSize(name.toCString(), Py_ssize_t(name.size())));
    return text && PyUnicode_IsIdentifier(text.get());
}

/// What a member looks like as an attribute of the type; null, with nothing raised, for one that scripts cannot use.
PythonRef attributeFor(const DoxyElement &objectClass, const DoxyElement &member)
{
    switch (member.getKind())
    {
    case IReflectedThing::FUNCTION:
        if (member.getName() == objectClass.getName() || !isIdentifier(member.getName()))
            return nullptr;
        return newPythonMethod(member);
    case IReflectedThing::CLASS:
    case IReflectedThing::ENUM:
        return PythonRef(wrapThing(&member));
    default:
        return nullptr;
    }
}

bool addAttribute(PyObject *attributes, const String &name, PythonRef value)
{
    return value && PyDict_SetItemString(attributes, name.toCString(), value.get()) == 0;
}

bool addMembers(PyObject *attributes, const DoxyElement &objectClass, const DoxyElement *base)
{
    for (const DoxyRef &listed : objectClass.getMemberRefs())
    {
        const String name = listed.obj->getName();
        const DoxyElement *const member = objectClass.findMember(name);
        if (member != listed.obj || listed.prot != IReflectedThing::PUBLIC ||
            (base && base->findMember(name) == member))
            continue;
        PythonRef attribute = attributeFor(objectClass, *member);
        if (attribute && !addAttribute(attributes, name, std::move(attribute)))
            return false;
        if (PyErr_Occurred())
            return false;
    }
    return true;
}

bool isSameProperty(const PropertyDesc &left, const PropertyDesc *right)
{
    return right && left.getGetter() == right->getGetter() && left.getSetter() == right->getSetter();
}

bool addProperties(PyObject *attributes, const DoxyElement &objectClass, const DoxyElement *base)
{
    for (const PropertyDesc &listed : objectClass.getPropertyList())
    {
        const String &name = listed.getName();
        const DoxyElement *const function = objectClass.findMember(name);
        if (function && function->getKind() == IReflectedThing::FUNCTION)
            continue;
        if (base && isSameProperty(listed, base->findProperty(name)))
            continue;
        if (!addAttribute(attributes, name, newPythonProperty(objectClass, *objectClass.findProperty(name))))
            return false;
    }
    return true;
}

PyTypeObject *makeType(const DoxyElement &objectClass)
{
    const DoxyElement *const base = objectBaseOf(objectClass);
    PyTypeObject *const baseType = base ? getPythonTypeOfClass(*base) : getPythonHandleType();
    if (!baseType)
        return nullptr;

    const String typeName = SCS("_kaVel.") + objectClass.getQualifiedName();
    PyType_Slot slots[] = {{Py_tp_doc, const_cast<char *>(objectClass.getBriefDescription())}, {0, nullptr}};
    PyType_Spec spec = {typeName.toCString(), sizeof(PythonHandle), 0, Py_TPFLAGS_DEFAULT | Py_TPFLAGS_BASETYPE, slots};
    PythonRef made(PyType_FromSpecWithBases(&spec, reinterpret_cast<PyObject *>(baseType)));
    if (!made)
        return nullptr;
    auto *const type = reinterpret_cast<PyTypeObject *>(made.get());
    if (!addMembers(type->tp_dict, objectClass, base) || !addProperties(type->tp_dict, objectClass, base))
        return nullptr;
    PyType_Modified(type);
    // The members belong to the table: a script that assigns to one mistakes the class for an object.
    type->tp_flags |= Py_TPFLAGS_IMMUTABLETYPE;
    return reinterpret_cast<PyTypeObject *>(made.release());
}

} // namespace

PyTypeObject *getPythonTypeOfClass(const IReflectedThing &objectClass)
{
    const auto known = typesByClass().find(&objectClass);
    if (known != typesByClass().end())
        return known->second;
    PyTypeObject *const made = makeType(static_cast<const DoxyElement &>(objectClass));
    if (made)
        typesByClass().emplace(&objectClass, made);
    return made;
}

const DoxyElement *getClassOfPythonType(PyTypeObject *type)
{
    for (; type; type = type->tp_base)
        for (const auto &[objectClass, made] : typesByClass())
            if (made == type)
                return static_cast<const DoxyElement *>(objectClass);
    return nullptr;
}
