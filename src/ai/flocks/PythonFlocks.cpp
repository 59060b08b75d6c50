// FlockTarget as scripts see it.
#include "ai/flocks/FlockingComponent.h"

#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

namespace python = boost::python;

namespace
{

typedef FlockingComponent::FlockTarget FlockTarget;

String show(const FlockTarget &target)
{
    return String::format("<pos %s, vel %s, since %g s>", target.pos.toString().toCString(),
                          target.vel.toString().toCString(), static_cast<double>(target.fTime));
}

void addFlockTarget(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    const auto byValue = [](Vec4 FlockTarget::*part)
    { return python::make_getter(part, python::return_value_policy<python::return_by_value>()); };
    python::class_<FlockTarget>("FlockTarget", "What a flock makes for.")
        .add_property("pos", byValue(&FlockTarget::pos), python::make_setter(&FlockTarget::pos))
        .add_property("vel", byValue(&FlockTarget::vel), python::make_setter(&FlockTarget::vel))
        .def_readwrite("fTime", &FlockTarget::fTime)
        .def("__repr__", show);
}

const PythonModulePart flockPart(addFlockTarget);

} // namespace

void SetToVariant(Variant &v, const FlockTarget &target)
{
    setScriptObject(v, [&] { return python::object(target); });
}

bool fromVariant(const Variant &v, FlockTarget &target)
{
    return readScriptObject(v, target, extractValue<FlockTarget>);
}
