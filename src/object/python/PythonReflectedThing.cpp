#include "object/python/PythonReflectedThing.h"

#include "object/tree/Object.h"
#include "object/reflection/PropertyDesc.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonReflectionProvider.h"
#include "object/python/PythonReflectors.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"

namespace
{

/// An attribute, or null where there is none or reading it raises.
PythonRef attributeOf(PyObject *o, const char *name)
{
    PythonRef value(PyObject_GetAttrString(o, name));
    if (!value)
        PyErr_Clear();
    return value;
}

String textAttributeOf(PyObject *o, const char *name)
{
    const PythonRef value = attributeOf(o, name);
    String text;
    if (value)
        String_from_python_str::convert(value.get(), text);
    return text;
}

long numberAttributeOf(PyObject *o, const char *name)
{
    const PythonRef value = attributeOf(o, name);
    return value && PyLong_Check(value.get()) ? PyLong_AsLong(value.get()) : 0;
}

/// The code object of a function or bound method; null for anything else.
PythonRef codeOf(PyObject *o)
{
    return attributeOf(PyMethod_Check(o) ? PyMethod_GET_FUNCTION(o) : o, "__code__");
}

bool packArguments(const SavedArguments &args, PythonRef *packed)
{
    for (std::size_t index = 0; index < args.getArgCount(); ++index)
    {
        packed[index].reset(VariantToPython::convert(args[index]));
        if (!packed[index])
            return false;
    }
    return true;
}

} // namespace

PythonReflectedThing::PythonReflectedThing(PythonObject object) : IReflectedThing(COUNTED), pyObj(std::move(object)) {}

PythonReflectedThing::~PythonReflectedThing()
{
    forgetReflector(*this);
}

void PythonReflectedThing::releaseRef() const
{
    if (--refCount == 0)
        delete this;
}

void PythonReflectedThing::letGo() const
{
    const PythonObject dropped = std::move(pyObj);
}

String PythonReflectedThing::toString() const
{
    const PythonRef shown(pyObj.isNone() ? nullptr : PyObject_Repr(pyObj.get()));
    String text;
    if (shown)
        String_from_python_str::convert(shown.get(), text);
    PyErr_Clear();
    return text.empty() ? getQualifiedName() : text;
}

String PythonReflectedThing::getName() const
{
    if (pyObj.isNone())
        return SCS("None");
    const String own = textAttributeOf(pyObj.get(), "__name__");
    return own.empty() ? String::copyFrom(Py_TYPE(pyObj.get())->tp_name) : own;
}

String PythonReflectedThing::getQualifiedName() const
{
    if (pyObj.isNone())
        return SCS("None");
    return textAttributeOf(pyObj.get(), "__module__") + SCS("::") + getName();
}

IReflectedThing::Kind PythonReflectedThing::getKind() const
{
    PyObject *const o = pyObj.get();
    if (o && PyType_Check(o))
        return CLASS;
    if (o && PyModule_Check(o))
        return NAMESPACE;
    return o && PyCallable_Check(o) ? FUNCTION : VARIABLE;
}

IReflectionProvider *PythonReflectedThing::getReflectionProvider() const
{
    return &getPythonReflectionProvider();
}

String PythonReflectedThing::getDefinitionLocation() const
{
    const PythonRef code = pyObj.isNone() ? nullptr : codeOf(pyObj.get());
    if (!code)
        return SCS("<unknown>(0)");
    return String::format("%s(%li)", textAttributeOf(code.get(), "co_filename").toCString(),
                          numberAttributeOf(code.get(), "co_firstlineno"));
}

ReflectorPtr PythonReflectedThing::getMember(String name) const
{
    const PythonRef member = pyObj.isNone() ? nullptr : attributeOf(pyObj.get(), name.toCString());
    return member ? getReflectorForPythonObject(PythonObject::borrow(member.get())) : nullptr;
}

IReflectedThing::MemberList PythonReflectedThing::getMemberList() const
{
    MemberList members;
    const PythonRef attributes = pyObj.isNone() ? nullptr : attributeOf(pyObj.get(), "__dict__");
    const PythonRef names(attributes ? PyMapping_Keys(attributes.get()) : nullptr);
    for (Py_ssize_t index = 0; names && index < PyList_GET_SIZE(names.get()); ++index)
    {
        String name;
        if (!String_from_python_str::convert(PyList_GET_ITEM(names.get(), index), name) || name.startsWith(SCS("__")))
            continue;
        if (ReflectorPtr member = getMember(name))
            members.push_back(std::move(member));
    }
    PyErr_Clear();
    return members;
}

IReflectedThing::PropertyList PythonReflectedThing::getPropertyList() const
{
    return PropertyList();
}

ErrorReturn<PropertyDesc> PythonReflectedThing::getProperty(const String &) const
{
    return ErrorReturn<PropertyDesc>(ErrorCode::NO_SUCH_PROPERTY);
}

std::int64_t PythonReflectedThing::getEnumValue() const
{
    return !pyObj.isNone() && PyLong_Check(pyObj.get()) ? numberAttributeOf(pyObj.get(), "real") : 0;
}

std::size_t PythonReflectedThing::getArgCount() const
{
    const PythonRef code = pyObj.isNone() ? nullptr : codeOf(pyObj.get());
    if (!code)
        return 0;
    const long declared = numberAttributeOf(code.get(), "co_argcount");
    return std::size_t(PyMethod_Check(pyObj.get()) && declared > 0 ? declared - 1 : declared);
}

ErrorReturn<Variant> PythonReflectedThing::do_call(SavedArguments &args) const
{
    const ScriptCall *const announced = ScriptCall::take();
    // The call may drop the last reference to this thing.
    const PythonObject callee = pyObj;
    if (callee.isNone() || !PyCallable_Check(callee.get()))
        return ErrorReturn<Variant>(ErrorCode::NOT_CALLABLE);

    const CremationHold hold;
    PythonRef packed[maxCallArgs];
    PyObject *given[maxCallArgs];
    PythonRef value;
    if (packArguments(args, packed))
    {
        for (std::size_t index = 0; index < args.getArgCount(); ++index)
            given[index] = packed[index].get();
        value.reset(PyObject_Vectorcall(callee.get(), given, args.getArgCount(), nullptr));
    }
    if (!value)
    {
        reportScriptException(*this, announced);
        return ErrorReturn<Variant>(ErrorCode::PYTHON_EXCEPTION);
    }
    ErrorReturn<Variant> result;
    VariantFromPython::convert(value.get(), result.value);
    return result;
}

Handle<Object> PythonReflectedThing::construct_a(IAllocator &, AllocationCategory &) const
{
    if (getKind() != CLASS)
        return Handle<Object>();
    SavedArguments none(0);
    const ErrorReturn<Variant> made = do_call(none);
    return made.value.get<Handle<Object>>().value;
}

bool PythonReflectedThing::isSubclassOf(const ReflectorPtr &possibleSuperclass) const
{
    if (possibleSuperclass.get() == this)
        return true;
    const auto *other = dynamic_cast<const PythonReflectedThing *>(possibleSuperclass.get());
    if (!other || getKind() != CLASS || other->getKind() != CLASS)
        return false;
    const int derived = PyObject_IsSubclass(pyObj.get(), other->pyObj.get());
    if (derived < 0)
        PyErr_Clear();
    return derived > 0;
}
