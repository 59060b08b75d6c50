// PythonConverters: how values pass between the engine and the interpreter.
#pragma once

#include "object/python/PythonRef.h"
#include "object/reflection/Variant.h"

/// Native text to a script's `str`.
struct String_to_python_str
{
    /// A new `str`; null with UnicodeDecodeError raised where the bytes are not UTF-8.
    static PyObject *convert(const String &text);
};

/// A script's `str` to native text.
struct String_from_python_str
{
    /// False for anything but a `str`, and for one with half of a surrogate pair; raises nothing.
    static bool convert(PyObject *o, String &out);
};

/// A value of the reflection layer to a script object.
struct VariantToPython
{
    /// A new reference. An empty value raises TypeError, what fails otherwise ValueError; null then.
    static PyObject *convert(const Variant &value)
    {
        const bool isFloat = value.getType() == Variant::VT_FLOAT;
        return isFloat ? PyFloat_FromDouble(value.as<double>()) : convertAny(value);
    }

private:
    static PyObject *convertAny(const Variant &value);
};

/// Any script object to a value of the reflection layer.
///
/// Numbers, bools, texts, vectors, quaternions, handles and reflected things become their native alternative, an
/// enumerator becomes its number, a bound member of an object a reflector of that call; all else, `None` included,
/// stays a script object. Never fails.
struct VariantFromPython
{
    static void convert(PyObject *o, Variant &out)
    {
        // Most values of a frame are plain numbers.
        if (PyFloat_CheckExact(o))
            out.emplace(Variant::VT_FLOAT, PyFloat_AS_DOUBLE(o));
        else
            convertAny(o, out);
    }

private:
    static void convertAny(PyObject *o, Variant &out);
};

/// Teaches Boost.Python these conversions and those of handles and reflectors, and fills the engine's own table.
void registerPythonConverters(PythonConversions &table);
