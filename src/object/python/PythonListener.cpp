#include "object/python/PythonInvocation.h"

#include "object/tree/Object.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonConverters.h"
#include "object/python/PythonHandle.h"

#include "foundation/Logger.h"

#include <boost/python.hpp>

#include <unordered_map>

namespace python = boost::python;

namespace
{

/// The property that a function sets, or "murder"; empty for one that the listener does not hear.
String findHeardName(const DoxyElement &function, const Object &object)
{
    if (function.getName() == SCS("murder"))
        return function.getName();
    for (const PropertyDesc &property : object.getType()->getPropertyList())
        if (property.getSetter() == &function)
            return property.getName();
    return String();
}

const String &heardName(const DoxyElement &function, const Object &object)
{
    static auto *const known = new std::unordered_map<const DoxyElement *, String>;
    const auto found = known->find(&function);
    return found != known->end() ? found->second
                                 : known->emplace(&function, findHeardName(function, object)).first->second;
}

} // namespace

void PythonListener::tell(const DoxyElement &function, const SavedArguments &args)
{
    const bool hasSubject = args.getArgCount() > 0 && args[0].getType() == Variant::VT_HANDLE;
    const auto object = hasSubject ? args[0].as<Handle<Object>>().lookup() : Handle<Object>().lookup();
    if (!object || !function.takesThis())
        return;
    const String &name = heardName(function, *object);
    if (name.empty())
        return;
    isTelling = true;
    const PythonRef called = newPythonRef(listener);
    const PythonRef subject(wrapHandle(object->getHandle())), text(String_to_python_str::convert(name));
    const PythonRef told(
        subject && text ? PyObject_CallFunctionObjArgs(called.get(), subject.get(), text.get(), nullptr) : nullptr);
    isTelling = false;
    if (told)
        return;
    Logger().writeLine(Logger_::I_ERROR, SCS("Changes are heard no more: ") + getCurrentPythonTraceback());
    set(Py_None);
}

void PythonListener::set(PyObject *function)
{
    Py_XDECREF(std::exchange(listener, function == Py_None ? nullptr : Py_NewRef(function)));
}

void addPythonListener(PyObject *)
{
    python::def(
        "hearChanges", +[](const python::object &function) { PythonListener::set(function.ptr()); },
        "Has a function hear what scripts are about to change of objects; None for nobody.");
}
