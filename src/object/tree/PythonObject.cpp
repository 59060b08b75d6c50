#include "object/tree/PythonObject.h"

#include <boost/python/object.hpp>

#include <utility>

PythonObject::PythonObject(const boost::python::api::object &shared)
{
    *this = borrow(shared.ptr());
}

PythonObject::PythonObject(const PythonObject &other) : object(other.object)
{
    Py_XINCREF(object);
}

PythonObject &PythonObject::operator=(const PythonObject &other)
{
    PythonObject copy(other);
    std::swap(object, copy.object);
    return *this;
}

PythonObject &PythonObject::operator=(PythonObject &&other) noexcept
{
    std::swap(object, other.object);
    return *this;
}

PythonObject PythonObject::borrow(_object *borrowed)
{
    Py_XINCREF(borrowed);
    return steal(borrowed);
}

PythonObject PythonObject::steal(_object *owned)
{
    PythonObject result;
    if (owned == Py_None)
        Py_DECREF(owned);
    else
        result.object = owned;
    return result;
}

PythonObject::operator boost::python::api::object() const
{
    if (!object)
        return boost::python::object();
    return boost::python::object(boost::python::handle<>(boost::python::borrowed(object)));
}

void PythonObject::release()
{
    Py_DECREF(object);
    object = nullptr;
}
