// Behaviours as scripts give them: lists of names.
#include "ai/trees/BTComponent.h"

#include "ai/trees/BTLib.h"

#include "object/python/PythonConverters.h"
#include "object/python/PythonIntegration.h"

void BTComponent::setBehaviors(const PythonObject &behaviorList)
{
    PyObject *const list = behaviorList.isNone() ? Py_None : behaviorList.get();
    const Py_ssize_t count = PyUnicode_Check(list) ? -1 : PyObject_Size(list);
    if (count < 0)
    {
        raisePython(PyExc_ValueError, SCS("behaviours are given as a list of the names of their trees"));
        pythonRaisePending();
    }
    for (Py_ssize_t i = 0; i < count; ++i)
    {
        const PythonRef item(PySequence_GetItem(list, i));
        String name;
        if (!item || !String_from_python_str::convert(item.get(), name))
        {
            raisePython(PyExc_ValueError, String::format("behaviour %zd is no text: behaviours are given as a list of "
                                                         "the names of their trees",
                                                         i + 1));
            pythonRaisePending();
        }
        addBehavior(name);
    }
}

PythonObject BTComponent::getBehaviors() const
{
    boost::python::list names;
    for (const String &name : sortedNames(behaviors))
        if (getTree(name).isValid())
            names.append(name);
    return PythonObject(names);
}
