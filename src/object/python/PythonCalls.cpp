#include "object/python/PythonCalls.h"

#include "object/tree/Object.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonHandle.h"
#include "object/reflection/SavedArguments.h"

#include <boost/python/errors.hpp>
#include <boost/python/object.hpp>

namespace
{

PythonRef importedAttribute(const char *module, const char *attribute)
{
    const PythonRef imported(PyImport_ImportModule(module));
    return PythonRef(imported ? PyObject_GetAttrString(imported.get(), attribute) : nullptr);
}

PythonRef packIntoTuple(const SavedArguments &args)
{
    PythonRef packed(PyTuple_New(Py_ssize_t(args.getArgCount())));
    for (std::size_t index = 0; packed && index < args.getArgCount(); ++index)
    {
        PyObject *const value = VariantToPython::convert(args[index]);
        if (!value)
            return nullptr;
        PyTuple_SET_ITEM(packed.get(), Py_ssize_t(index), value);
    }
    return packed;
}

PythonRef callAttribute(const char *module, const char *attribute, const SavedArguments &args)
{
    const PythonRef function = importedAttribute(module, attribute);
    const PythonRef packed(function ? packIntoTuple(args) : nullptr);
    return PythonRef(packed ? PyObject_Call(function.get(), packed.get(), nullptr) : nullptr);
}

/// Lets the interpreter write a traceback into a text of its own; null with an exception raised where that fails.
PythonRef writeTraceback(PyObject *type, PyObject *value, PyObject *traceback)
{
    const PythonRef module(PyImport_ImportModule("io"));
    const PythonRef stream(module ? PyObject_CallMethod(module.get(), "StringIO", nullptr) : nullptr);
    if (!stream || PySys_SetObject("stderr", stream.get()) < 0)
        return nullptr;
    PyErr_Display(type, value, traceback);
    return PythonRef(PyObject_CallMethod(stream.get(), "getvalue", nullptr));
}

} // namespace

String getCurrentPythonTraceback()
{
    PyObject *type = nullptr;
    PyObject *value = nullptr;
    PyObject *traceback = nullptr;
    if (isPythonRunning())
        PyErr_Fetch(&type, &value, &traceback);
    if (!type)
        return SCS("ERROR: getCurrentPythonTraceback called with Python error indicator not set!");
    PyErr_NormalizeException(&type, &value, &traceback);
    const PythonRef ownedType(type);
    const PythonRef ownedValue(value);
    const PythonRef ownedTraceback(traceback);

    const PythonRef written = writeTraceback(type, value, traceback);
    String text;
    const bool isText = written && String_from_python_str::convert(written.get(), text);
    PySys_SetObject("stderr", PySys_GetObject("__stderr__"));
    PyErr_Clear();
    if (!isText)
        return SCS("ERROR!!! A second Python exception was raised while retrieving the error information. Additional "
                   "details may be available on standard error.");
    return text;
}

void pythonRaisePending()
{
    boost::python::throw_error_already_set();
    __builtin_unreachable();
}

bool pythonGuarded(void (*body)(void *data), void *data)
{
    try
    {
        body(data);
        return true;
    }
    catch (const boost::python::error_already_set &)
    {
        if (!PyErr_Occurred())
            PyErr_SetString(PyExc_RuntimeError, "no Python exception was pending");
        return false;
    }
}

bool pythonCall(const char *module, const char *attribute, const SavedArguments &args, Variant &result)
{
    const PythonRef value = callAttribute(module, attribute, args);
    if (value)
        VariantFromPython::convert(value.get(), result);
    return value != nullptr;
}

bool pythonAttribute(const char *module, const char *attribute, Variant &result)
{
    const PythonRef value = importedAttribute(module, attribute);
    if (value)
        VariantFromPython::convert(value.get(), result);
    return value != nullptr;
}

PythonObject loadFromPattern(const String &module, const String &pattern, const Handle<Object> &parent, String name)
{
    PythonRef root = callAttribute(module.toCString(), pattern.toCString(), SavedArguments::of(parent, name));
    if (!root)
        pythonRaisePending();
    return PythonObject::steal(root.release());
}

Handle<Object> loadFromPatternToHandle(const String &module, const String &pattern, const Handle<Object> &parent,
                                       String name)
{
    return handleFromPython(loadFromPattern(module, pattern, parent, name));
}

Handle<Object> handleFromPython(const PythonObject &o)
{
    return !o.isNone() && isPythonHandle(o.get()) ? handleOf(o.get()) : Handle<Object>();
}
