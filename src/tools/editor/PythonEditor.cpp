// The lists of an editor as scripts see them.
#include "tools/editor/EditorComponent.h"

#include "engine/entities/Entity.h"
#include "engine/levels/Coordinator.h"
#include "object/python/PythonCalls.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonIntegration.h"

namespace python = boost::python;

namespace
{
PythonObject listOf(const std::vector<Handle<Entity>> &entities)
{
    if (!isPythonRunning())
        return PythonObject();
    python::list list;
    for (const Handle<Entity> &entity : entities)
        list.append(python::object(python::handle<>(wrapHandle(entity))));
    return PythonObject(list);
}
} // namespace

PythonObject EditorComponent::pickBox(float x0, float y0, float x1, float y1)
{
    Coordinator *const found = findLevel();
    const ViewRect rect = ViewRect::between(x0, y0, x1, y1);
    return listOf(found ? picking.pickBox(*found, EditorView(*found), rect) : std::vector<Handle<Entity>>());
}

PythonObject EditorComponent::getSelected() const
{
    return listOf(selection.list());
}

void EditorComponent::setSelected(const PythonObject &entities)
{
    PyObject *const list = entities.get();
    if (!list || !PySequence_Check(list))
    {
        raisePython(PyExc_ValueError, SCS("what is selected is given as a list of entities"));
        pythonRaisePending();
    }
    const Py_ssize_t count = PySequence_Size(list);
    if (count < 0)
        pythonRaisePending();
    std::vector<Handle<Entity>> chosen;
    for (Py_ssize_t i = 0; i < count; ++i)
    {
        const PythonRef item(PySequence_GetItem(list, i));
        if (item && isPythonHandle(item.get()))
            chosen.push_back(handle_cast<Entity>(handleOf(item.get())));
        else
            PyErr_Clear();
    }
    clearSelection();
    for (const Handle<Entity> &entity : chosen)
        select(entity);
}
