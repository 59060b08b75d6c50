#include "object/python/PythonReflectionSystem.h"

#include "object/reflection/AutoReflector.h"
#include "object/reflection/NearestName.h"
#include "object/python/PythonCalls.h"
#include "object/reflection/Reflection.h"

#include <boost/python.hpp>

namespace python = boost::python;

namespace
{

ReflectorPtr getTypeByName(const Reflection_ &reflection, const String &name)
{
    // The interpreter asks every object for names of its own, which no reflected thing bears.
    ReflectorPtr type = name.startsWith(SCS("__")) ? ReflectorPtr() : reflection.getType(name);
    if (type)
        return type;
    NearestName nearest(name);
    for (const String &known : getAutoReflector().getClassNames())
        nearest.consider(known);
    raisePython(PyExc_AttributeError, String::format("no class '%s'%s", name.toCString(), nearest.hint().toCString()));
    pythonRaisePending();
}

/// A reflected thing as an attribute of the register, which from then on is found without asking.
python::object getAttribute(const python::object &self, const String &name)
{
    const Reflection_ &reflection = python::extract<const Reflection_ &>(self);
    python::object found(getTypeByName(reflection, name));
    self.attr("__dict__")[name.toCString()] = found;
    return found;
}

bool hasType(const Reflection_ &reflection, const String &name)
{
    return bool(reflection.getType(name));
}

Reflection_ &getReflectionInstance()
{
    return Reflection();
}

} // namespace

void addReflectionSystem(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    python::class_<Reflection_, boost::noncopyable>("_ReflectionSystem", "Reflected things by name.", python::no_init)
        .def("__getattr__", getAttribute)
        .def("__contains__", hasType)
        .def("has_key", hasType);
    python::def("_ReflectionInstance", getReflectionInstance,
                python::return_value_policy<python::reference_existing_object>(),
                "The one register of reflected things.");
}
