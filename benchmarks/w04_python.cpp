// W4: a script's loop over a wrapped object: a call, a bound call, a property read and written.
#include <boost/python.hpp>

#include "w04_python_common.h"

#include "Subjects.h"

#include "object/python/PythonIntegration.h"
#include "object/reflection/Variant.h"

namespace
{
/// Makes the thing that the script's loops call, as the name `thing` of the script's module.
void makeThing()
{
    const Handle<Object> h = construct<BenchThing>(defaultAllocationCategory);
    PythonObject wrapped;
    if (!fromVariant(Variant(h), wrapped))
        std::abort();
    PyDict_SetItemString(w04Globals(), "thing", wrapped.get());
}

void loop(benchmark::State &state, const char *function)
{
    static const bool ready = (PyRun_SimpleString(w04Script) == 0 && (makeThing(), true));
    if (!ready)
        state.SkipWithError("the script does not run");
    w04Loop(state, function, "thing");
    state.counters["ns"] = state.counters["ns_op"];
    state.counters.erase("ns_op");
}
} // namespace

BENCHMARK_CAPTURE(loop, call, "call")->Name("W4/call");
BENCHMARK_CAPTURE(loop, call_bound, "call_bound")->Name("W4/call_bound");
BENCHMARK_CAPTURE(loop, prop_get, "prop_get")->Name("W4/prop_get");
BENCHMARK_CAPTURE(loop, prop_set, "prop_set")->Name("W4/prop_set");
BENCHMARK_CAPTURE(loop, empty_loop, "empty_loop")->Name("W4/empty_loop");
