// SegmentHit and RayCollision as scripts see them.
#include "physics/grid/PartitioningGrid.h"

#include "physics/volumes/BoundingVolume.h"

#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

namespace python = boost::python;

namespace
{

Handle<Object> volumeOf(const SegmentHit &hit)
{
    return hit.volume;
}

bool hasHit(const SegmentHit &hit)
{
    return hit.collision.collided;
}

bool hasCollided(const RayCollision &collision)
{
    return collision.collided;
}

/// A part of a hit by value: what a script keeps stays as it is.
template <auto Member>
auto partOf(const RayCollision &collision)
{
    return collision.*Member;
}

template <auto Member>
auto partOfHit(const SegmentHit &hit)
{
    return hit.collision.*Member;
}

String showCollision(const RayCollision &collision)
{
    return collision.collided ? String::format("<hit at %g, %s>", static_cast<double>(collision.t),
                                               collision.point.toString().toCString())
                              : SCS("<no hit>");
}

String showHit(const SegmentHit &hit)
{
    return showCollision(hit.collision);
}

void addHits(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    python::class_<RayCollision>("RayCollision", "Where a segment meets a surface; true where it meets one.",
                                 python::no_init)
        .add_property("collided", partOf<&RayCollision::collided>)
        .add_property("point", partOf<&RayCollision::point>)
        .add_property("normal", partOf<&RayCollision::normal>)
        .add_property("t", partOf<&RayCollision::t>)
        .def("__bool__", hasCollided)
        .def("__repr__", showCollision);
    python::class_<SegmentHit>("SegmentHit", "The nearest volume on a segment; true where there is one.",
                               python::no_init)
        .add_property("volume", volumeOf)
        .add_property("collided", partOfHit<&RayCollision::collided>)
        .add_property("point", partOfHit<&RayCollision::point>)
        .add_property("normal", partOfHit<&RayCollision::normal>)
        .add_property("t", partOfHit<&RayCollision::t>)
        .def("__bool__", hasHit)
        .def("__repr__", showHit);
}

const PythonModulePart hitPart(addHits);

} // namespace

void SetToVariant(Variant &v, const RayCollision &collision)
{
    setScriptObject(v, [&] { return python::object(collision); });
}

void SetToVariant(Variant &v, const SegmentHit &hit)
{
    setScriptObject(v, [&] { return python::object(hit); });
}
