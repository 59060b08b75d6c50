#include "object/python/PythonReflectionProvider.h"

#include "object/python/PythonCalls.h"
#include "object/python/PythonRef.h"

#include <string_view>

namespace
{

/// A class name with its module.
struct ScriptClassName
{
    String module;
    String name;
};

ScriptClassName splitClassName(const String &classname)
{
    const std::string_view text(classname.toCString(), classname.size());
    const std::size_t colons = text.rfind("::");
    const std::size_t end = colons != text.npos ? colons : text.rfind('.');
    if (end == text.npos)
        return {SCS("__main__"), classname};
    const std::size_t start = end + (colons != text.npos ? 2 : 1);
    return {classname.slice(0, ssize_t(end)), classname.slice(ssize_t(start))};
}

} // namespace

ReflectorPtr PythonReflectionProvider::getType(const String &classname)
{
    if (classname.empty())
        return nullptr;
    const PythonExceptionSaver saver;
    const ScriptClassName wanted = splitClassName(classname);
    PyObject *const module = PyDict_GetItemString(PyImport_GetModuleDict(), wanted.module.toCString());
    const PythonRef found(module ? PyObject_GetAttrString(module, wanted.name.toCString()) : nullptr);
    PyErr_Clear();
    if (!found || !PyType_Check(found.get()))
        return nullptr;
    return getReflectorForPythonObject(PythonObject::borrow(found.get()));
}

PythonReflectionProvider &getPythonReflectionProvider()
{
    static PythonReflectionProvider provider;
    return provider;
}
