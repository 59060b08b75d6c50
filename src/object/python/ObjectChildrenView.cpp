#include "object/python/ObjectChildrenView.h"

#include "object/tree/Object.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonInvocation.h"

#include <boost/python.hpp>

namespace python = boost::python;

const Object &lookUpParent(const Handle<Object> &h)
{
    const auto object = h.lookup();
    if (object)
        return *object;
    raisePython(PyExc_ValueError, SCS("Attempt to locate children of a dead object"));
    pythonRaisePending();
}

Handle<Object> ObjectChildrenView::findChild(const String &name) const
{
    const Object &parent = lookUpParent(obj);
    for (auto child = parent.children_begin(); child != parent.children_end(); ++child)
        if (const auto object = child->lookup(); object && object->getName() == name)
            return *child;
    return Handle<Object>();
}

Handle<Object> ObjectChildrenView::getItem(const String &name) const
{
    const Handle<Object> child = findChild(name);
    if (child.isValid())
        return child;
    raisePython(PyExc_KeyError,
                String::format("Child %s not found in %s", name.toCString(), lookUpParent(obj).toString().toCString()));
    pythonRaisePending();
}

bool ObjectChildrenView::contains(const String &name) const
{
    return findChild(name).isValid();
}

std::size_t ObjectChildrenView::getLength() const
{
    return lookUpParent(obj).getChildCount();
}

PyObject *newChildrenView(const Handle<Object> &h)
{
    try
    {
        return python::incref(python::object(ObjectChildrenView(h)).ptr());
    }
    catch (...)
    {
        return raiseCaughtException();
    }
}

namespace
{
/// A step of a script's loop. Its end is told as loops expect it, without an exception: there is one for each object
/// of a tree that is walked, most of which have no children.
PyObject *nextOfLoop(PyObject *walk)
{
    try
    {
        const Handle<Object> child = python::extract<ObjectChildrenIterator &>(walk)().advance();
        return child.isValid() ? wrapHandle(child) : nullptr;
    }
    catch (const python::error_already_set &)
    {
        return nullptr;
    }
}
} // namespace

void addObjectChildren(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    const auto itself = +[](const python::object &iterator) { return iterator; };
    python::class_<ObjectChildrenIterator> walks("ObjectChildrenIterator", "A walk over the children of an object.",
                                                 python::no_init);
    walks.def("__iter__", itself)
        .def("next", &ObjectChildrenIterator::next)
        .def("__next__", &ObjectChildrenIterator::next);
    reinterpret_cast<PyTypeObject *>(walks.ptr())->tp_iternext = &nextOfLoop;

    python::class_<ObjectChildrenView>("ObjectChildrenView", "The children of an object, in order and by name.",
                                       python::no_init)
        .def("__iter__", &ObjectChildrenView::itervalues)
        .def("itervalues", &ObjectChildrenView::itervalues)
        .def("__getitem__", &ObjectChildrenView::getItem)
        .def("__contains__", &ObjectChildrenView::contains)
        .def("has_key", &ObjectChildrenView::contains)
        .def("__len__", &ObjectChildrenView::getLength);
}
