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

} // namespace

ScriptPlace currentScriptPlace()
{
    ScriptPlace place;
    if (!isPythonRunning())
        return place;
    FrameRef frame = ownFrame(reinterpret_cast<PyFrameObject *>(Py_XNewRef(PyEval_GetFrame())));
    while (frame && isOfTheLayer(frame.get()))
        frame = ownFrame(PyFrame_GetBack(frame.get()));
    if (!frame)
        return place;
    const PythonRef code(reinterpret_cast<PyObject *>(PyFrame_GetCode(frame.get())));
    String_from_python_str::convert(reinterpret_cast<PyCodeObject *>(code.get())->co_filename, place.file);
    place.line = PyFrame_GetLineNumber(frame.get());
    return place;
}
