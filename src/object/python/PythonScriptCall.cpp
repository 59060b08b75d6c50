#include "object/python/ScriptCall.h"

#include "object/python/PythonCalls.h"
#include "object/python/PythonConverters.h"
#include "object/python/ScriptPlace.h"
#include "object/reflection/SavedArguments.h"
#include "object/reflection/Variant.h"
#include "object/tree/Object.h"
#include "object/tree/PathBelow.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <utility>
#include <vector>

const ScriptCall *ScriptCall::current = nullptr;

namespace
{

/// Reports that are remembered; the oldest is forgotten first.
constexpr std::size_t REMEMBERED = 64;

constexpr const char *CONSEQUENCE = ". It is not called again until it is set anew.";

/// A report, and how often there was cause for it.
struct Told
{
    String report;
    unsigned times = 0;
};

unsigned countTimes(const String &report)
{
    static std::vector<Told> told;
    for (Told &each : told)
        if (each.report == report)
            return ++each.times;
    if (told.size() == REMEMBERED)
        told.erase(told.begin());
    told.push_back({report, 1});
    return 1;
}

bool isPowerOfTen(unsigned count)
{
    while (count % 10 == 0)
        count /= 10;
    return count == 1;
}

/// Type and text of the pending exception, as the last line of its traceback has them.
String pendingMessage()
{
    PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    const PythonRef shown(value ? PyObject_Str(value) : nullptr);
    String text;
    if (shown)
        String_from_python_str::convert(shown.get(), text);
    PyErr_Clear();
    String name = type ? String::copyFrom(reinterpret_cast<PyTypeObject *>(type)->tp_name) : String();
    PyErr_Restore(type, value, traceback);
    return text.empty() ? name : name + SCS(": ") + text;
}

/// "Hall/lamp/player: the frame callback levels.Hall::flicker", with as much of it as is known.
String describe(const IReflectedThing &function, const ScriptCall *call)
{
    String name = function.getQualifiedName();
    if (!call)
        return name;
    const String path = call->owner ? pathBelow(nullptr, *call->owner) + SCS(": the ") : SCS("The ");
    return path + String::format("%s %s", call->role, name.toCString());
}

} // namespace

const ScriptCall *ScriptCall::take()
{
    return std::exchange(current, nullptr);
}

void reportScriptException(const IReflectedThing &function, const ScriptCall *call)
{
    const ScriptPlace place = pendingScriptPlace();
    const String message = pendingMessage();
    if (call && call->raised)
    {
        *call->raised = message + SCS("\n") + getCurrentPythonTraceback();
        return;
    }
    const String summary = String::format("%s failed: %s%s", describe(function, call).toCString(), message.toCString(),
                                          call ? CONSEQUENCE : "");
    const String report = summary + SCS("\n") + getCurrentPythonTraceback();
    const unsigned times = countTimes(report);
    if (times == 1)
        Assertions::raiseInScript(place.file, place.line, report);
    else if (isPowerOfTen(times))
        Assertions::raiseInScript(place.file, place.line,
                                  String::format("%s (%u times so far)", summary.toCString(), times));
}

bool callOrReport(const ReflectorPtr &function, SavedArguments &args, const Object &owner, const char *role)
{
    const ScriptCall call(*function, &owner, role);
    const ErrorCode outcome = function->do_call(args).code;
    if (!outcome.succeeded() && outcome.getCode() != ErrorCode::PYTHON_EXCEPTION) // which is reported where it arose
        KV_LOGF(Logger_::I_ERROR, "%s failed: %s%s", describe(*function, &call).toCString(),
                outcome.toString().toCString(), CONSEQUENCE);
    return outcome.succeeded();
}
