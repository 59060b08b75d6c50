// The points of a DummyObjectComponent as a script's list.
#include "gameplay/creatures/DummyObjectComponent.h"

#include "object/python/PythonIntegration.h"
#include "physics/volumes/FiniteProperty.h"

#include <boost/python.hpp>

namespace python = boost::python;

namespace
{

[[noreturn]] void refuse(const char *why)
{
    PyErr_SetString(PyExc_ValueError, why);
    throw python::error_already_set();
}

Vec4 pointFrom(const python::object &given)
{
    const python::extract<Vec4> vector(given);
    if (vector.check())
        return vector();
    const bool isList = PySequence_Check(given.ptr()) && python::len(given) >= 3;
    float parts[3] = {};
    for (int number = 0; number < 3; ++number)
    {
        const python::object part = isList ? python::object(given[number]) : python::object();
        const python::extract<float> value(part);
        if (!value.check())
            refuse("a point is a Vec4, or three numbers");
        parts[number] = value();
    }
    return Vec4(parts[0], parts[1], parts[2], 1);
}

} // namespace

PythonObject DummyObjectComponent::getSavedPoints() const
{
    python::list points;
    for (const Vec4 &point : dummyPoints)
        points.append(point);
    return PythonObject(points);
}

void DummyObjectComponent::setSavedPoints(const PythonObject &points)
{
    const python::object given = points;
    if (!PySequence_Check(given.ptr()) || python::len(given) > static_cast<long>(MOST_POINTS))
        refuse("points come as a sequence, of 4096 at most");
    DummyPointCont taken;
    for (long number = 0; number < python::len(given); ++number)
    {
        taken.push_back(pointFrom(given[number]));
        if (!isUsable(*this, "a point", taken.back()))
            return;
    }
    dummyPoints.swap(taken);
    setCurrDummyPointIndex(currDummyPointIndex);
    currFollowIndex = 0;
}
