#include "object/ObjectChildrenIterator.h"

#include "object/Object.h"
#include "object/ObjectChildrenView.h"
#include "object/PythonHandle.h"

#include <boost/python/errors.hpp>

#include <algorithm>

ObjectChildrenIterator::ObjectChildrenIterator(const Handle<Object> &parent) : obj(parent)
{
    end = lookUpParent(obj).getChildCount();
    valid = true;
}

PyObject *ObjectChildrenIterator::next()
{
    if (valid)
    {
        const Object &parent = lookUpParent(obj);
        const std::size_t last = std::min(end, parent.getChildCount());
        while (current < last)
        {
            const Handle<Object> child = parent.children_begin()[current++];
            if (child.isValid())
                return wrapHandle(child);
        }
        valid = false;
    }
    PyErr_SetString(PyExc_StopIteration, "Stop Iteration");
    boost::python::throw_error_already_set();
    return nullptr;
}
