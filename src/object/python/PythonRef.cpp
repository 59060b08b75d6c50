#include "object/python/PythonRef.h"

namespace
{

/// The pending exception as an object, cleared; null if there is none.
PythonRef takePendingException()
{
    PyObject *type = nullptr;
    PyObject *value = nullptr;
    PyObject *traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    if (!type)
        return nullptr;
    PyErr_NormalizeException(&type, &value, &traceback);
    if (traceback)
        PyException_SetTraceback(value, traceback);
    Py_XDECREF(type);
    Py_XDECREF(traceback);
    return PythonRef(value);
}

} // namespace

PyObject *raisePython(PyObject *exceptionType, const String &text)
{
    PythonRef cause = takePendingException();
    // Bytes that are no text must not replace the message by a complaint about them.
    PythonRef message(PyUnicode_DecodeUTF8(text.toCString(), Py_ssize_t(text.size()), "replace"));
    if (!message)
        return nullptr;
    PyErr_SetObject(exceptionType, message.get());
    if (!cause)
        return nullptr;

    PythonRef raised = takePendingException();
    PyException_SetContext(raised.get(), Py_NewRef(cause.get()));
    PyException_SetCause(raised.get(), cause.release());
    PyErr_SetObject(reinterpret_cast<PyObject *>(Py_TYPE(raised.get())), raised.get());
    return nullptr;
}
