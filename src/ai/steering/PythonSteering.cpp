// SteeringOutput and AvoidRay as scripts see them.
#include "ai/steering/SteeringComponent.h"

#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

namespace python = boost::python;

namespace
{

/// A part of a value by value: what a script keeps stays as it is.
template <class Value, class Part>
auto readPart(Part Value::*part)
{
    return python::make_getter(part, python::return_value_policy<python::return_by_value>());
}

String showOutput(const SteeringOutput &output)
{
    return String::format("<accel %s, vel %s, orientation %s>", output.accel.toString().toCString(),
                          output.vel.toString().toCString(), output.orientation.toString().toCString());
}

String showRay(const SteeringComponent::AvoidRay &ray)
{
    return String::format("<ray %s%s>", ray.ray.toString().toCString(), ray.collision.collided ? ", collided" : "");
}

void addSteering(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    using python::self;
    typedef SteeringComponent::AvoidRay AvoidRay;
    python::class_<SteeringOutput>("SteeringOutput", "What a behaviour asks of a body; a new one asks for nothing.")
        .add_property("accel", readPart(&SteeringOutput::accel), python::make_setter(&SteeringOutput::accel))
        .add_property("vel", readPart(&SteeringOutput::vel), python::make_setter(&SteeringOutput::vel))
        .add_property("orientation", readPart(&SteeringOutput::orientation),
                      python::make_setter(&SteeringOutput::orientation))
        .def("reset", &SteeringOutput::reset, "Asks for nothing any more.")
        .def(self + self)
        .def(self += self)
        .def(self * float())
        .def("__repr__", showOutput);
    python::class_<AvoidRay>("AvoidRay", "A ray that looks for what stands in the way.")
        .add_property("collision", readPart(&AvoidRay::collision), python::make_setter(&AvoidRay::collision))
        .add_property("ray", readPart(&AvoidRay::ray), python::make_setter(&AvoidRay::ray))
        .def("__repr__", showRay);
}

const PythonModulePart steeringPart(addSteering);

} // namespace

void SetToVariant(Variant &v, const SteeringOutput &output)
{
    setScriptObject(v, [&] { return python::object(output); });
}

bool fromVariant(const Variant &v, SteeringOutput &output)
{
    return readScriptObject(v, output, extractValue<SteeringOutput>);
}

void SetToVariant(Variant &v, const SteeringComponent::AvoidRay &ray)
{
    setScriptObject(v, [&] { return python::object(ray); });
}

bool fromVariant(const Variant &v, SteeringComponent::AvoidRay &ray)
{
    return readScriptObject(v, ray, extractValue<SteeringComponent::AvoidRay>);
}
