// Starts the embedded interpreter. It is never shut down: objects, listeners and patterns of the engine hold script
// objects to the last line of the process, and Boost.Python's registry does not survive a shutdown.
#include "object/python/PythonIntegration.h"

#include "object/python/LibraryArchive.h"
#include "object/python/PythonReflectionProvider.h"
#include "object/reflection/Reflection.h"

#include "foundation/Assertions.h"
#include "foundation/CrashReport.h"
#include "foundation/FailedStart.h"
#include "foundation/Logger.h"
#include "port/win32/Diagnostics.h"

// The interpreter's own writer for a process that crashed; it declares it for itself only.
extern "C" void _Py_DumpTraceback(int descriptor, PyThreadState *state);

namespace
{

constexpr const wchar_t *PYTHON_HOME = L".";
constexpr const wchar_t *PROGRAM_NAME = L"./kaVel.exe";
constexpr const char *SCRIPT_FOLDER = "../scripts";
constexpr const char *LIBRARY_ZIP = "../python.zip";

bool running = false;

/// Owner of an interpreter configuration. The isolated one: no environment, no user's site, no signal handlers.
struct Configuration
{
    Configuration() { PyConfig_InitIsolatedConfig(&config); }
    ~Configuration() { PyConfig_Clear(&config); }
    Configuration(const Configuration &) = delete;
    Configuration &operator=(const Configuration &) = delete;

    PyConfig config;
};

/// Settings that precede all others: texts are UTF-8 whatever the locale.
PyStatus preconfigure()
{
    PyPreConfig early;
    PyPreConfig_InitIsolatedConfig(&early);
    early.utf8_mode = 1;
#ifdef KV_SANITIZE
    // The interpreter's own pools hide what they hold from the leak check.
    early.allocator = PYMEM_ALLOCATOR_MALLOC;
#endif
    return Py_PreInitialize(&early);
}

PyStatus addSearchPath(PyConfig &config, const char *path)
{
    wchar_t *const wide = Py_DecodeLocale(path, nullptr);
    const PyStatus status = wide ? PyWideStringList_Append(&config.module_search_paths, wide) : PyStatus_NoMemory();
    PyMem_RawFree(wide);
    return status;
}

/// Starts the interpreter with home, program name and search path of its own. The path must be known before the start,
/// which imports the text encodings from it.
PyStatus startInterpreter()
{
    PyStatus status = preconfigure();
    if (PyStatus_Exception(status))
        return status;
    Configuration configuration;
    PyConfig &config = configuration.config;
    config.site_import = 0;
    config.write_bytecode = 0;
    config.buffered_stdio = 0;
    config.pathconfig_warnings = 0;
    config.module_search_paths_set = 1;
    for (const char *path : {SCRIPT_FOLDER, LIBRARY_ZIP})
        if (!PyStatus_Exception(status))
            status = addSearchPath(config, path);
    if (!PyStatus_Exception(status))
        status = PyConfig_SetString(&config, &config.home, PYTHON_HOME);
    if (!PyStatus_Exception(status))
        status = PyConfig_SetString(&config, &config.program_name, PROGRAM_NAME);
    return PyStatus_Exception(status) ? status : Py_InitializeFromConfig(&config);
}

bool replaceSearchPath()
{
    const PythonRef path(Py_BuildValue("[ss]", SCRIPT_FOLDER, LIBRARY_ZIP));
    return path && PySys_SetObject("path", path.get()) == 0;
}

/// Writes the lines that the scripts are at, innermost first.
void writeScriptTrace(int descriptor)
{
    if (PyThreadState *const state = _PyThreadState_UncheckedGet())
        _Py_DumpTraceback(descriptor, state);
}

void prepareModule()
{
    registerPythonConverters(pythonConversions);
    const PythonRef module(PyImport_ImportModule("_kaVel"));
    if (!module || !replaceSearchPath())
        pythonRaisePending();
}

} // namespace

void initPython()
{
    if (running)
        return;
    if (const String fault = faultOfLibraryArchive(LIBRARY_ZIP); !fault.empty())
        Assertions::failStart(fault.toCString());
    PyImport_AppendInittab("_kaVel", &init_kaVel);
    const PyStatus status = startInterpreter();
    if (!Py_IsInitialized())
    {
        KV_LOG(Logger_::I_CRITICAL,
               String::format("Python does not start: %s. It needs its library in %s, which the build makes.",
                              status.err_msg ? status.err_msg : "no reason given", LIBRARY_ZIP));
        DebugBreak();
        return;
    }
    running = true;
    CrashReport::setScriptTraceWriter(writeScriptTrace);
    if (!pythonGuarded(prepareModule))
        KV_FATAL(getCurrentPythonTraceback());
    Reflection().addProvider(&getPythonReflectionProvider());
}

bool isPythonRunning()
{
    return running;
}
