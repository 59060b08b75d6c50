#include "object/python/PythonInvocation.h"

#include "object/python/PythonConverters.h"
#include "object/tree/Obituaries.h"
#include "object/tree/Object.h"

#include <boost/python/errors.hpp>

#include <exception>

namespace
{
/// Adds a line that shows below the pending exception.
void notePendingException(const String &line)
{
    PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    const PythonRef noted(PyObject_CallMethod(value, "add_note", "s", line.toCString()));
    if (!noted)
        PyErr_Clear(); // it shows without
    PyErr_Restore(type, value, traceback);
}
} // namespace

PyObject *raiseCallFailure(const String &what, const ErrorCode &code, const Handle<Object> &subject)
{
    raisePython(PyExc_RuntimeError,
                String::format("Call to %s failed: %s", what.toCString(), code.toString().toCString()));
    const String gone = Obituaries::of(subject);
    if (!gone.empty())
        notePendingException(gone);
    return nullptr;
}

PyObject *raiseCaughtException()
{
    try
    {
        throw;
    }
    catch (const boost::python::error_already_set &)
    {
        return PyErr_Occurred() ? nullptr : raisePython(PyExc_RuntimeError, SCS("no Python exception was pending"));
    }
    catch (const std::exception &e)
    {
        return raisePython(PyExc_RuntimeError, String::copyFrom(e.what()));
    }
    catch (...)
    {
        return raisePython(PyExc_RuntimeError, SCS("an unknown C++ exception"));
    }
}

PyObject *raiseKeywordsRefused(const IReflectedThing &thing)
{
    return raisePython(PyExc_TypeError,
                       String::format("%s takes no keyword arguments", thing.getQualifiedName().toCString()));
}

namespace
{

/// Raises a failed call; one of an object that is gone tells what that was.
PyObject *raiseFailure(const IReflectedThing &thing, const SavedArguments &args, const ErrorCode &code)
{
    const bool hasSubject = args.getArgCount() > 0 && args[0].getType() == Variant::VT_HANDLE;
    return raiseCallFailure(thing.toString(), code, hasSubject ? args[0].as<Handle<Object>>() : Handle<Object>());
}

PyObject *valueForPython(const IReflectedThing &thing, const SavedArguments &args, const ErrorReturn<Variant> &result)
{
    if (!result.code.succeeded())
        return raiseFailure(thing, args, result.code);
    if (PyErr_Occurred())
        return nullptr;
    // A function without result gives the empty value, which has no script form of its own.
    if (result.value.getType() == Variant::VT_INVALID)
        Py_RETURN_NONE;
    return VariantToPython::convert(result.value);
}

template <class Thing>
PyObject *callAnyForPython(const Thing &thing, SavedArguments &args)
{
    try
    {
        return valueForPython(thing, args, thing.do_call(args));
    }
    catch (...)
    {
        return raiseCaughtException();
    }
}

} // namespace

PyObject *callForPython(const IReflectedThing &thing, SavedArguments &args)
{
    return callAnyForPython(thing, args);
}

PyObject *callForPython(const DoxyElement &function, SavedArguments &args)
{
    if (PythonListener::isThere()) [[unlikely]]
        PythonListener::tell(function, args);
    return callAnyForPython(function, args);
}
