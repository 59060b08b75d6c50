// Runs every `test_` function of the modules beside this file inside the embedded interpreter, one test each.
#include "GatheredAssertions.h"

#include "object/python/PythonCalls.h"

#include <boost/python.hpp>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace python = boost::python;

extern "C" PyObject *PyInit__kaVelTest();

namespace
{

const std::filesystem::path SCRIPT_FOLDER = KV_SOURCE_DIR "/tests/python/scripts";

std::string readText(const std::filesystem::path &path)
{
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Lets scripts import the modules beside this file for its scope; the engine's own search path knows them not.
class TestPath
{
public:
    TestPath() : path(python::import("sys").attr("path")) { path.attr("insert")(0, SCRIPT_FOLDER.string()); }
    ~TestPath() { PyList_SetSlice(path.ptr(), 0, 1, nullptr); }
    TestPath(const TestPath &) = delete;
    TestPath &operator=(const TestPath &) = delete;

private:
    python::object path;
};

python::object loadModule(const std::filesystem::path &path)
{
    const TestPath reachable;
    return python::import(path.stem().string().c_str());
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
    const std::string suite = "Scripted_" + path.stem().string().substr(5);
    std::istringstream lines(readText(path));
    int number = 0;
    for (std::string line; std::getline(lines, line);)
    {
        ++number;
        const std::string start = "def test_";
        if (line.compare(0, start.size(), start) != 0)
            continue;
        const std::string function = line.substr(4, line.find('(') - 4);
        testing::RegisterTest(suite.c_str(), function.c_str() + start.size() - 4, nullptr, nullptr,
                              path.string().c_str(), number,
                              [=]() -> ScriptTest * { return new ScriptTest(path, function); });
    }
}

std::string gatherAssertions(bool start)
{
    static std::unique_ptr<GatheredAssertions> gathered;
    const std::string text = gathered ? gathered->getText() : std::string();
    gathered.reset(start ? new GatheredAssertions : nullptr);
    return text;
}

bool registerAllTests()
{
    PyImport_AppendInittab("_kaVelTest", PyInit__kaVelTest);
    std::filesystem::current_path(KV_GAME_DIR "/bin");
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(SCRIPT_FOLDER))
        if (entry.path().stem().string().compare(0, 5, "test_") == 0)
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const auto &file : files)
        registerTests(file);
    return !files.empty();
}

const bool registered = registerAllTests();

} // namespace

BOOST_PYTHON_MODULE(_kaVelTest)
{
    python::def("gatherAssertions", gatherAssertions);
}

TEST(ScriptCases, AreFoundBesideTheProgramsSource)
{
    EXPECT_TRUE(registered);
}
