// Runs every `test_` function of the modules beside this file inside the embedded interpreter, one test each.
#include "object/PythonCalls.h"

#include <boost/python.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace python = boost::python;

namespace
{

const std::filesystem::path SCRIPT_FOLDER = KV_SOURCE_DIR "/tests/python/scripts";

std::string readText(const std::filesystem::path &path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// The module of a file, run once a process.
python::object loadModule(const std::filesystem::path &path)
{
    python::object modules = python::import("sys").attr("modules");
    const std::string name = path.stem().string();
    if (modules.contains(name))
        return modules[name];
    python::object module = python::import("types").attr("ModuleType")(name);
    modules[name] = module;
    const python::object builtins = python::import("builtins");
    const python::object code = builtins.attr("compile")(readText(path), path.string(), "exec");
    builtins.attr("exec")(code, module.attr("__dict__"));
    return module;
}

class ScriptTest : public testing::Test
{
public:
    ScriptTest(std::filesystem::path path, std::string function) : path(std::move(path)), function(std::move(function))
    {
    }

    void TestBody() override
    {
        initPython();
        const bool passed = pythonGuarded([&] { loadModule(path).attr(function.c_str())(); });
        EXPECT_TRUE(passed) << getCurrentPythonTraceback().toCString();
    }

private:
    std::filesystem::path path;
    std::string function;
};

void registerTests(const std::filesystem::path &path)
{
    std::istringstream lines(readText(path));
    int number = 0;
    for (std::string line; std::getline(lines, line);)
    {
        ++number;
        const std::string start = "def test_";
        if (line.compare(0, start.size(), start) != 0)
            continue;
        const std::string function = line.substr(4, line.find('(') - 4);
        testing::RegisterTest(path.stem().string().c_str(), function.c_str() + 5, nullptr, nullptr, path.string().c_str(),
                              number, [=]() -> ScriptTest * { return new ScriptTest(path, function); });
    }
}

bool registerAllTests()
{
    std::filesystem::current_path(KV_GAME_DIR "/bin");
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(SCRIPT_FOLDER))
        if (entry.path().extension() == ".py")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto &file : files)
        registerTests(file);
    return !files.empty();
}

const bool registered = registerAllTests();

} // namespace

TEST(ScriptTests, AreFoundBesideTheProgramsSource)
{
    EXPECT_TRUE(registered);
}
