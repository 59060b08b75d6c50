#include "support/ScriptModule.h"

#include "object/python/PythonCalls.h"

#include <boost/python.hpp>
#include <gtest/gtest.h>

namespace python = boost::python;

void installScriptModule(const char *name, const char *source)
{
    initPython();
    const bool installed = pythonGuarded(
        [&]
        {
            python::object module = python::import("types").attr("ModuleType")(name);
            python::exec(source, module.attr("__dict__"));
            python::import("sys").attr("modules")[name] = module;
        });
    ASSERT_TRUE(installed) << getCurrentPythonTraceback().toCString();
}

std::string scriptText(const char *expression)
{
    std::string text;
    const bool evaluated = pythonGuarded(
        [&]
        {
            python::dict names;
            names["__builtins__"] = python::import("builtins");
            text = python::extract<std::string>(python::str(python::eval(expression, names)));
        });
    EXPECT_TRUE(evaluated) << getCurrentPythonTraceback().toCString();
    return text;
}
