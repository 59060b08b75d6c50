// PathRequest as scripts see it.
#include "ai/paths/PathRequest.h"

#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

#include <cmath>

namespace python = boost::python;

namespace
{

Handle<Object> entityOf(const PathRequest &request)
{
    return request.hEntity;
}

/// Names the creature; any other object than an entity is none.
void setEntity(PathRequest &request, const Handle<Object> &entity)
{
    request.hEntity = handle_cast<Entity>(entity);
}

GridCell destinationOf(const PathRequest &request)
{
    return request.destination;
}

void setDestination(PathRequest &request, const GridCell &cell)
{
    request.destination = cell;
}

/// A priority as one of its names or a number.
int priorityFrom(const Variant &level)
{
    const ErrorReturn<RequestPriority> named = level.get<RequestPriority>();
    if (named.succeeded())
        return named.value;
    const ErrorReturn<int> number = level.get<int>();
    if (!number.succeeded())
    {
        PyErr_SetString(PyExc_ValueError, "a priority is one of RequestPriority, its name, or a whole number");
        python::throw_error_already_set();
    }
    return number.value;
}

int priorityOf(const PathRequest &request)
{
    return request.priority;
}

void setPriority(PathRequest &request, const Variant &level)
{
    request.priority = priorityFrom(level);
}

double timeOf(const PathRequest &request)
{
    return request.timeInQueue;
}

void setTime(PathRequest &request, double seconds)
{
    if (!std::isfinite(seconds))
    {
        PyErr_SetString(PyExc_ValueError, "timeInQueue is a number of seconds");
        python::throw_error_already_set();
    }
    request.timeInQueue = seconds;
}

template <bool PathRequest::*Member>
bool flagOf(const PathRequest &request)
{
    return request.*Member;
}

template <bool PathRequest::*Member>
void setFlag(PathRequest &request, bool value)
{
    request.*Member = value;
}

PathRequest *newRequest(const Handle<Object> &entity, const GridCell &destination, const Variant &priority,
                        bool rubberbanding, bool saturation)
{
    return new PathRequest(handle_cast<Entity>(entity), destination, priorityFrom(priority), rubberbanding, saturation);
}

String show(const PathRequest &request)
{
    return String::format("<path to cell %d, %d, priority %d>", request.destination.getX(), request.destination.getZ(),
                          request.priority);
}

void addPathRequest(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    using python::arg;
    python::class_<PathRequest>("PathRequest", "A creature's wish for a path to a cell of its map's path grid.")
        .def("__init__", python::make_constructor(newRequest, python::default_call_policies(),
                                                  (arg("hEntity"), arg("destination"), arg("priority") = Variant(0),
                                                   arg("rubberbanding") = true, arg("saturation") = true)))
        .add_property("hEntity", entityOf, setEntity)
        .add_property("destination", destinationOf, setDestination)
        .add_property("priority", priorityOf, setPriority)
        .add_property("timeInQueue", timeOf, setTime)
        .add_property("rubberbanding", flagOf<&PathRequest::rubberbanding>, setFlag<&PathRequest::rubberbanding>)
        .add_property("saturation", flagOf<&PathRequest::saturation>, setFlag<&PathRequest::saturation>)
        .def("__repr__", show);
}

const PythonModulePart pathRequestPart(addPathRequest);

} // namespace

void SetToVariant(Variant &v, const PathRequest &request)
{
    setScriptObject(v, [&] { return python::object(request); });
}

bool fromVariant(const Variant &v, PathRequest &request)
{
    return readScriptObject(v, request, extractValue<PathRequest>);
}
