#include "object/python/PythonIntegration.h"

#include "object/messages/Message.h"
#include "object/python/ObjectChildrenView.h"
#include "object/python/PythonHandle.h"
#include "object/python/PythonInvocation.h"
#include "object/python/PythonMath.h"
#include "object/python/PythonMembers.h"
#include "object/python/PythonModulePart.h"
#include "object/python/PythonPostOffice.h"
#include "object/python/PythonReflectionSystem.h"
#include "object/python/PythonThing.h"

#include "foundation/Allocators.h"
#include "foundation/Logger.h"
#include "port/win32/Diagnostics.h"

#include <vector>

namespace python = boost::python;

namespace
{

/// What other folders bring, in the order in which their sources were linked.
std::vector<PythonModulePart::Adder> &moduleParts()
{
    static auto *parts = new std::vector<PythonModulePart::Adder>;
    return *parts;
}

void writeLog(const String &text)
{
    Logger().writeLine(Logger_::I_INFO, text);
}

void writeDebugString(const String &text)
{
    OutputDebugStringA(text.toCString());
}

void addAllocationCategories()
{
    python::class_<AllocationCategory, boost::noncopyable>("AllocationCategory", "What one purpose has allocated.",
                                                           python::no_init)
        .add_property("name", &AllocationCategory::getName)
        .def_readonly("objectCount", &AllocationCategory::objectCount)
        .def_readonly("totalObjectSize", &AllocationCategory::totalObjectSize)
        .def_readonly("totalHeaderOverhead", &AllocationCategory::totalHeaderOverhead)
        .def_readonly("totalAllocatorOverhead", &AllocationCategory::totalAllocatorOverhead)
        .def_readonly("totalAlignmentOverhead", &AllocationCategory::totalAlignmentOverhead);
    python::scope().attr("defaultAllocationCategory") = python::object(python::ptr(&defaultAllocationCategory));
}

/// Adds what scripts see; false with an exception raised where that fails.
bool fillModule(PyObject *module)
{
    if (!addPythonMemberTypes(module) || !addPythonHandleType(module) || !addPythonThingType(module))
        return false;
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    addPythonMath(module);
    addObjectChildren(module);
    addReflectionSystem(module);
    addPostOffice(module);
    addPythonListener(module);
    addAllocationCategories();
    for (const PythonModulePart::Adder add : moduleParts())
        add(module);
    python::def("writeLog", writeLog, "Writes one line of text to the log.");
    python::def("OutputDebugString", writeDebugString, "Writes a text to the debug output as it stands.");
    return true;
}

PyObject *defineModule()
{
    static PyModuleDef definition = {
        PyModuleDef_HEAD_INIT, "_kaVel", "The engine's native side.", -1, nullptr, nullptr, nullptr, nullptr, nullptr};
    PythonRef module(PyModule_Create(&definition));
    if (!module)
        return nullptr;
    try
    {
        return fillModule(module.get()) ? module.release() : nullptr;
    }
    catch (...)
    {
        return raiseCaughtException();
    }
}

} // namespace

PythonModulePart::PythonModulePart(Adder add)
{
    moduleParts().push_back(add);
}

PyObject *init_kaVel()
{
    return defineModule();
}

PyObject *PyInit__kaVel()
{
    return init_kaVel();
}
