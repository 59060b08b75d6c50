// ScriptValue: how a plain value with a script class of its own crosses into scripts and back.
#pragma once

#include "object/python/PythonCalls.h"
#include "object/reflection/Variant.h"

#include <boost/python.hpp>

/// Puts what a function builds into a Variant, for a script; nothing where that raises or there are no scripts.
template <class Build>
void setScriptObject(Variant &v, const Build &build)
{
    v.unset();
    if (isPythonRunning() && !pythonGuarded([&] { v.set(PythonObject(build())); }))
        PyErr_Clear();
}

/// Reads a script object by a function that may raise; false where it does, or where there is none.
template <class Value>
bool readScriptObject(const Variant &v, Value &out, bool (*extract)(const boost::python::object &, Value &))
{
    if (v.getType() != Variant::VT_PYTHON)
        return false;
    bool fits = false;
    if (!pythonGuarded([&] { fits = extract(v.as<PythonObject>(), out); }))
        PyErr_Clear();
    return fits;
}

/// Copies the value out of an object of its script class; false for any other object.
template <class Value>
bool extractValue(const boost::python::object &o, Value &out)
{
    const boost::python::extract<const Value &> held(o);
    if (held.check())
        out = held();
    return held.check();
}
