#include "object/python/PythonConverters.h"

#include "object/reflection/ARInvokers.h"
#include "object/reflection/EnumText.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonMath.h"
#include "object/python/PythonMembers.h"
#include "object/python/PythonThing.h"

#include <boost/python.hpp>

#include <array>
#include <cstdint>
#include <utility>

namespace python = boost::python;

namespace
{

/// Converts a value that is not empty.
ErrorReturn<PyObject *> buildPythonValue(const Variant &value)
{
    switch (value.getType())
    {
    case Variant::VT_INT64:
        return PyLong_FromLongLong(value.as<std::int64_t>());
    case Variant::VT_BOOL:
        return PyBool_FromLong(value.as<bool>());
    case Variant::VT_REFLECTOR:
        return wrapThing(value.as<ReflectorPtr>());
    case Variant::VT_HANDLE:
        return wrapHandle(value.as<Handle<Object>>());
    case Variant::VT_STRING:
        return String_to_python_str::convert(value.as<String>());
    case Variant::VT_VECTOR:
        return newPythonVec4(value.as<Vec4>());
    case Variant::VT_QUATERNION:
        return newPythonQuaternion(value.as<Quaternion>());
    case Variant::VT_PYTHON:
    {
        PyObject *const held = value.as<PythonObject>().get();
        return Py_NewRef(held ? held : Py_None);
    }
    default:
        return ErrorReturn<PyObject *>(ErrorCode::NOT_CONVERTIBLE);
    }
}

void setInteger(PyObject *o, Variant &out)
{
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(o, &overflow);
    if (overflow)
        out.emplace(Variant::VT_PYTHON, PythonObject::borrow(o));
    else
        out.emplace(Variant::VT_INT64, std::int64_t(number));
}

void setThing(const ReflectorPtr &thing, Variant &out)
{
    if (isEnumerator(*thing))
        out.emplace(Variant::VT_INT64, thing->getEnumValue());
    else
        out.emplace(Variant::VT_REFLECTOR, thing);
}

/// Values of the types that are not looked at first.
void setOther(PyObject *o, Variant &out)
{
    String text;
    if (PyLong_Check(o))
        return setInteger(o, out);
    if (PyFloat_Check(o))
        return out.emplace(Variant::VT_FLOAT, PyFloat_AS_DOUBLE(o));
    if (String_from_python_str::convert(o, text))
        return out.emplace(Variant::VT_STRING, text);
    if (isPythonThing(o))
        return setThing(thingOf(o), out);
    if (const Vec4 *vector = vec4Of(o))
        return out.emplace(Variant::VT_VECTOR, *vector);
    if (const Quaternion *rotation = quaternionOf(o))
        return out.emplace(Variant::VT_QUATERNION, *rotation);
    if (const ReflectorPtr bound = boundCallOf(o))
        return out.emplace(Variant::VT_REFLECTOR, bound);
    out.emplace(Variant::VT_PYTHON, PythonObject::borrow(o));
}

/// Extracts a T as Boost.Python does; false, with nothing raised, where that fails.
template <class T>
bool extractPython(const PythonObject &o, T &out)
{
    try
    {
        const python::object held = o;
        const python::extract<T> value(held);
        if (!value.check())
            return false;
        out = value();
        return true;
    }
    catch (const python::error_already_set &)
    {
        PyErr_Clear();
        return false;
    }
}

bool extractText(const PythonObject &o, String &out)
{
    return !o.isNone() && String_from_python_str::convert(o.get(), out);
}

bool extractReflector(const PythonObject &o, ReflectorPtr &out)
{
    out = getReflectorForPythonObject(o);
    return true;
}

bool buildPythonObject(const Variant &value, PythonObject &out)
{
    PyObject *const built = VariantToPython::convert(value);
    if (built)
        out = PythonObject::steal(built);
    else
        PyErr_Clear();
    return built != nullptr;
}

bool markPropertyEdited(const PythonObject &pattern, const String &propertyName)
{
    const PythonRef edited(PyObject_GetAttrString(pattern.get(), "_editedProps"));
    const PythonRef added(edited ? PyObject_CallMethod(edited.get(), "add", "s", propertyName.toCString()) : nullptr);
    PyErr_Clear();
    return added != nullptr;
}

/// How Boost.Python builds a T out of a script object that `Source::accepts`.
template <class T, class Source>
struct FromPython
{
    static void *convertible(PyObject *o) { return Source::accepts(o) ? o : nullptr; }

    static void construct(PyObject *o, python::converter::rvalue_from_python_stage1_data *data)
    {
        void *const place = reinterpret_cast<python::converter::rvalue_from_python_storage<T> *>(data)->storage.bytes;
        T *const made = new (place) T();
        Source::fill(o, *made);
        data->convertible = place;
    }

    static void add() { python::converter::registry::push_back(&convertible, &construct, python::type_id<T>()); }
};

struct TextSource
{
    static bool accepts(PyObject *o) { return PyUnicode_Check(o); }
    static void fill(PyObject *o, String &out)
    {
        if (!String_from_python_str::convert(o, out))
        {
            PyErr_SetString(PyExc_ValueError, "the text holds half of a surrogate pair");
            python::throw_error_already_set();
        }
    }
};

struct AnySource
{
    static bool accepts(PyObject *) { return true; }
    static void fill(PyObject *o, Variant &out) { VariantFromPython::convert(o, out); }
};

struct HandleSource
{
    static bool accepts(PyObject *o) { return isPythonHandle(o); }
    static void fill(PyObject *o, Handle<Object> &out) { out = handleOf(o); }
};

struct ReflectorSource
{
    static bool accepts(PyObject *o) { return o == Py_None || PyCallable_Check(o); }
    static void fill(PyObject *o, ReflectorPtr &out) { out = getReflectorForPythonObject(PythonObject::borrow(o)); }
};

struct HandleToPython
{
    static PyObject *convert(const Handle<Object> &h) { return wrapHandle(h); }
};

struct PythonObjectToPython
{
    static PyObject *convert(const PythonObject &held) { return Py_NewRef(held.isNone() ? Py_None : held.get()); }
};

struct ReflectorToPython
{
    static PyObject *convert(const ReflectorPtr &thing) { return wrapThing(thing); }
};

/// A copy of a text; false for one that UTF-8 cannot hold.
bool convertText(PyObject *o, String &out)
{
    Py_ssize_t length = 0;
    const char *const bytes = PyUnicode_AsUTF8AndSize(o, &length);
    if (!bytes)
    {
        PyErr_Clear();
        return false;
    }
    out = String::copyFrom(bytes, std::size_t(length));
    return true;
}

/// A text of the scripts that was converted before; held, so that no other gets its address.
struct KnownText
{
    PyObject *text = nullptr;
    String value;
};

/// The one place where a text of this address may be known. Never destroyed: the interpreter ends first.
KnownText &knownTextAt(const PyObject *text)
{
    constexpr std::size_t places = 1024;
    static auto *const known = new std::array<KnownText, places>;
    return (*known)[(reinterpret_cast<std::uintptr_t>(text) >> 4) % places];
}

} // namespace

PyObject *String_to_python_str::convert(const String &text)
{
    return PyUnicode_FromStringAndSize(text.toCString(), Py_ssize_t(text.size()));
}

bool String_from_python_str::convert(PyObject *o, String &out)
{
    if (!PyUnicode_Check(o))
        return false;
    // What scripts write down themselves, names above all, comes again and again as the same object.
    if (!PyUnicode_CHECK_INTERNED(o))
        return convertText(o, out);
    KnownText &known = knownTextAt(o);
    if (known.text != o)
    {
        if (!convertText(o, out))
            return false;
        known.value = out.intern();
        Py_INCREF(o);
        Py_XDECREF(std::exchange(known.text, o));
    }
    out = known.value;
    return true;
}

PyObject *VariantToPython::convertAny(const Variant &value)
{
    ErrorReturn<PyObject *> built = buildPythonValue(value);
    if (built.succeeded() && !built.value)
        built.code = ErrorCode::PYTHON_EXCEPTION;
    if (built.succeeded())
        return built.value;
    if (built.code.getCode() == ErrorCode::NOT_CONVERTIBLE)
        return raisePython(PyExc_TypeError, String::format("Variant type %s not convertible to Python",
                                                           enumToString(value.getType()).toCString()));
    return raisePython(PyExc_ValueError, String::format("An error occurred while converting the Variant to Python: %s",
                                                        built.code.toString().toCString()));
}

void VariantFromPython::convertAny(PyObject *o, Variant &out)
{
    if (PyLong_CheckExact(o))
        setInteger(o, out);
    else if (PyBool_Check(o))
        out.emplace(Variant::VT_BOOL, o == Py_True);
    else if (isPythonHandle(o))
        out.emplace(Variant::VT_HANDLE, handleOf(o));
    else
        setOther(o, out);
}

void registerPythonConverters(PythonConversions &table)
{
    python::to_python_converter<String, String_to_python_str>();
    python::to_python_converter<Variant, VariantToPython>();
    python::to_python_converter<Handle<Object>, HandleToPython>();
    python::to_python_converter<ReflectorPtr, ReflectorToPython>();
    python::to_python_converter<PythonObject, PythonObjectToPython>();
    FromPython<String, TextSource>::add();
    FromPython<Variant, AnySource>::add();
    FromPython<Handle<Object>, HandleSource>::add();
    FromPython<ReflectorPtr, ReflectorSource>::add();

    table.toInt64 = extractPython<std::int64_t>;
    table.toDouble = extractPython<double>;
    table.toString = extractText;
    table.toReflector = extractReflector;
    table.toVector = extractPython<Vec4>;
    table.toQuaternion = extractPython<Quaternion>;
    table.fromVariant = buildPythonObject;
    table.markPropertyEdited = markPropertyEdited;
}

void setScriptList(Variant &v, const std::vector<Variant> &entries)
{
    v.unset();
    if (!isPythonRunning())
        return;
    PythonRef list(PyList_New(0));
    for (const Variant &entry : entries)
    {
        const PythonRef made(list ? VariantToPython::convert(entry) : nullptr);
        if (!made || PyList_Append(list.get(), made.get()) != 0)
            return PyErr_Clear();
    }
    v.set(PythonObject::steal(list.release()));
}
