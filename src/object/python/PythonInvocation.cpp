#include "object/python/PythonInvocation.h"

#include "object/python/PythonConverters.h"

#include <boost/python/errors.hpp>

#include <exception>

PyObject *raiseCallFailure(const String &what, const ErrorCode &code)
{
    return raisePython(PyExc_RuntimeError,
                       String::format("Call to %s failed: %s", what.toCString(), code.toString().toCString()));
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

PyObject *valueForPython(const IReflectedThing &thing, const ErrorReturn<Variant> &result)
{
    if (!result.code.succeeded())
        return raiseCallFailure(thing.toString(), result.code);
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
        return valueForPython(thing, thing.do_call(args));
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
    return callAnyForPython(function, args);
}
