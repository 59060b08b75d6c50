#include "object/python/ScriptPlace.h"

#include "object/python/PythonCalls.h"
#include "object/python/PythonConverters.h"

namespace
{

using FrameRef = std::unique_ptr<PyFrameObject, void (*)(PyFrameObject *)>;

FrameRef ownFrame(PyFrameObject *frame)
{
    return FrameRef(frame, [](PyFrameObject *owned) { Py_DECREF(owned); });
}

/// Whether a frame belongs to the layer that other scripts call the engine through.
bool isOfTheLayer(PyFrameObject *frame)
{
    const PythonRef globals(PyFrame_GetGlobals(frame));
    PyObject *const name = PyDict_GetItemString(globals.get(), "__name__");
    return name && PyUnicode_Check(name) && PyUnicode_CompareWithASCIIString(name, "kaVel") == 0;
}

ScriptPlace placeOf(PyFrameObject *frame, long line)
{
    ScriptPlace place;
    const PythonRef code(reinterpret_cast<PyObject *>(PyFrame_GetCode(frame)));
    String_from_python_str::convert(reinterpret_cast<PyCodeObject *>(code.get())->co_filename, place.file);
    place.line = line;
    return place;
}

/// An attribute; null where there is none.
PythonRef attribute(PyObject *o, const char *name)
{
    PythonRef value(PyObject_GetAttrString(o, name));
    if (!value)
        PyErr_Clear();
    return value;
}

long numberOf(const PythonRef &value)
{
    return value && PyLong_Check(value.get()) ? PyLong_AsLong(value.get()) : 0;
}

ScriptPlace placeOfUnreadable(PyObject *syntaxError)
{
    ScriptPlace place;
    const PythonRef file = attribute(syntaxError, "filename");
    if (file && PyUnicode_Check(file.get()))
        String_from_python_str::convert(file.get(), place.file);
    place.line = numberOf(attribute(syntaxError, "lineno"));
    return place;
}

/// The innermost place of a traceback; its first entry is the outermost.
ScriptPlace placeOfTraceback(PyObject *traceback)
{
    ScriptPlace place;
    for (PythonRef step(Py_XNewRef(traceback)); step && step.get() != Py_None; step = attribute(step.get(), "tb_next"))
    {
        const PythonRef held = attribute(step.get(), "tb_frame");
        auto *const frame = reinterpret_cast<PyFrameObject *>(held.get());
        if (frame && !isOfTheLayer(frame))
            place = placeOf(frame, numberOf(attribute(step.get(), "tb_lineno")));
    }
    return place;
}

} // namespace

ScriptPlace currentScriptPlace()
{
    if (!isPythonRunning())
        return ScriptPlace();
    FrameRef frame = ownFrame(reinterpret_cast<PyFrameObject *>(Py_XNewRef(PyEval_GetFrame())));
    while (frame && isOfTheLayer(frame.get()))
        frame = ownFrame(PyFrame_GetBack(frame.get()));
    return frame ? placeOf(frame.get(), PyFrame_GetLineNumber(frame.get())) : ScriptPlace();
}

ScriptPlace pendingScriptPlace()
{
    PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    const bool isUnreadable = value && PyErr_GivenExceptionMatches(value, PyExc_SyntaxError);
    ScriptPlace place = isUnreadable ? placeOfUnreadable(value) : placeOfTraceback(traceback);
    PyErr_Restore(type, value, traceback);
    return place;
}
