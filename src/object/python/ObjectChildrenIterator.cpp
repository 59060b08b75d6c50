#include "object/python/ObjectChildrenIterator.h"

#include "object/tree/Object.h"
#include "object/python/ObjectChildrenView.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonRef.h"

#include <algorithm>

ObjectChildrenIterator::ObjectChildrenIterator(const Handle<Object> &parent) : obj(parent)
{
    end = lookUpParent(obj).getChildCount();
    valid = true;
}

Handle<Object> ObjectChildrenIterator::advance()
{
    if (!valid)
        return Handle<Object>();
    const Object &parent = lookUpParent(obj);
    const std::size_t last = std::min(end, parent.getChildCount());
    while (current < last)
    {
        const Handle<Object> child = parent.children_begin()[current++];
        if (child.isValid())
            return child;
    }
    valid = false;
    return Handle<Object>();
}

Handle<Object> ObjectChildrenIterator::next()
{
    const Handle<Object> child = advance();
    if (child.isValid())
        return child;
    raisePython(PyExc_StopIteration, SCS("Stop Iteration"));
    pythonRaisePending();
}
