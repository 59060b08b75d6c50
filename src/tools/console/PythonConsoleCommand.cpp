// ConsoleCommand as scripts see it.
#include "tools/console/ConsoleCommand.h"

#include "object/python/PythonIntegration.h"
#include "object/python/PythonModulePart.h"
#include "object/python/ScriptValue.h"

namespace python = boost::python;

namespace
{

template <String ConsoleCommand::*Member>
String textOf(const ConsoleCommand &command)
{
    return command.*Member;
}

template <String ConsoleCommand::*Member>
void setText(ConsoleCommand &command, const String &text)
{
    command.*Member = text;
}

Variant functionOf(const ConsoleCommand &command)
{
    return command.function;
}

/// Takes None, or anything that can be called.
ReflectorPtr callableFrom(const python::object &function)
{
    if (function.is_none())
        return ReflectorPtr();
    if (!PyCallable_Check(function.ptr()))
    {
        PyErr_SetString(PyExc_TypeError, "the function of a command is None or can be called");
        python::throw_error_already_set();
    }
    return getReflectorForPythonObject(PythonObject(function));
}

void setFunction(ConsoleCommand &command, const python::object &function)
{
    command.function = callableFrom(function);
}

bool takesLine(const ConsoleCommand &command)
{
    return command.takesLine;
}

void setTakesLine(ConsoleCommand &command, bool value)
{
    command.takesLine = value;
}

ConsoleCommand *newCommand(const String &command, const String &param, const String &description,
                           const python::object &function, bool wholeLine)
{
    return new ConsoleCommand{command, param, description, callableFrom(function), wholeLine};
}

String show(const ConsoleCommand &command)
{
    return String::format("<console command '%s'>", command.command.toCString());
}

void addConsoleCommand(PyObject *module)
{
    const python::scope within{python::object(python::handle<>(python::borrowed(module)))};
    using python::arg;
    python::class_<ConsoleCommand>("ConsoleCommand", "A word that the console knows, and what it calls.")
        .def("__init__",
             python::make_constructor(newCommand, python::default_call_policies(),
                                      (arg("command"), arg("param") = String(), arg("description") = String(),
                                       arg("function") = python::object(), arg("takesLine") = false)))
        .add_property("command", textOf<&ConsoleCommand::command>, setText<&ConsoleCommand::command>)
        .add_property("param", textOf<&ConsoleCommand::param>, setText<&ConsoleCommand::param>)
        .add_property("description", textOf<&ConsoleCommand::description>, setText<&ConsoleCommand::description>)
        .add_property("function", functionOf, setFunction)
        .add_property("takesLine", takesLine, setTakesLine)
        .def("__repr__", show);
}

const PythonModulePart consoleCommandPart(addConsoleCommand);

} // namespace

void SetToVariant(Variant &v, const ConsoleCommand &command)
{
    setScriptObject(v, [&] { return python::object(command); });
}

bool fromVariant(const Variant &v, ConsoleCommand &command)
{
    return readScriptObject(v, command, extractValue<ConsoleCommand>);
}
