// HeardWay and ReverbShare as scripts see them.
#include "physics/acoustics/HeardWay.h"
#include "physics/acoustics/ReverbManager.h"

#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

namespace python = boost::python;

namespace
{

/// A part of an answer by value: what a script keeps stays as it is.
template <auto Member>
auto partOf(const HeardWay &way)
{
    return way.*Member;
}

String showWay(const HeardWay &way)
{
    return String::format("<heard from %s, %.1f m away, gain %.3g, below %.0f Hz%s>",
                          way.apparent.toString().toCString(), static_cast<double>(way.distance),
                          static_cast<double>(way.gain), static_cast<double>(way.lowpass),
                          way.open ? "" : ", through walls");
}

template <auto Preset>
String nameOf(const ReverbShare &share)
{
    return String::copyFrom((share.*Preset)->name);
}

float shareOf(const ReverbShare &share)
{
    return share.share;
}

String showShare(const ReverbShare &share)
{
    return String::format("<%s, %s to %.2f>", share.first->name, share.second->name, static_cast<double>(share.share));
}

void addAnswers(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    python::class_<HeardWay>("HeardWay", "How a sound of one place is heard at another.", python::no_init)
        .add_property("apparent", partOf<&HeardWay::apparent>)
        .add_property("gain", partOf<&HeardWay::gain>)
        .add_property("lowpass", partOf<&HeardWay::lowpass>)
        .add_property("reverb", partOf<&HeardWay::reverb>)
        .add_property("distance", partOf<&HeardWay::distance>)
        .add_property("open", partOf<&HeardWay::open>)
        .add_property("inSight", partOf<&HeardWay::inSight>)
        .def("__repr__", showWay);
    python::class_<ReverbShare>("ReverbShare", "The two kinds of room that are strongest at a point.", python::no_init)
        .add_property("first", nameOf<&ReverbShare::first>)
        .add_property("second", nameOf<&ReverbShare::second>)
        .add_property("share", shareOf)
        .def("__repr__", showShare);
}

const PythonModulePart answerPart(addAnswers);

} // namespace

void SetToVariant(Variant &v, const HeardWay &way)
{
    setScriptObject(v, [&] { return python::object(way); });
}

void SetToVariant(Variant &v, const ReverbShare &share)
{
    setScriptObject(v, [&] { return python::object(share); });
}
