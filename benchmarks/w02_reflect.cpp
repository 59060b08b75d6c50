// W2: a method with one float called through its record and by name; a property set and read by name and resolved.
#include "Rate.h"
#include "Subjects.h"

#include "object/reflection/PropertyDesc.h"
#include "object/reflection/SavedArguments.h"

#include <vector>

namespace
{
constexpr int count = 1024;

/// 1024 objects of one class, alive for one benchmark.
struct Things
{
    std::vector<Handle<Object>> handles;

    Things()
    {
        for (int i = 0; i < count; ++i)
            handles.push_back(construct<BenchThing>(defaultAllocationCategory));
    }
    ~Things()
    {
        for (const auto &h : handles)
            h.lookup()->murder();
        cremateDeadObjects();
    }

    /// What the last round left in the objects: its sum shows that the calls arrived.
    double check() const
    {
        double sum = 0;
        for (const auto &h : handles)
            sum += unchecked_handle_cast<BenchThing>(h).lookup()->value > 0;
        return sum;
    }
};

void callResolved(benchmark::State &state)
{
    Things things;
    const ReflectorPtr method = BenchThing::staticType->getMember(SCS("addValue"));
    for (auto _ : state)
    {
        for (const auto &h : things.handles)
        {
            ErrorReturn<Variant> result = method->call(h, 1.0f);
            benchmark::DoNotOptimize(result);
        }
    }
    state.counters["check"] = things.check();
    reportNanoseconds(state, count);
}

void callByName(benchmark::State &state)
{
    Things things;
    const String name = SCS("addValue");
    for (auto _ : state)
    {
        for (const auto &h : things.handles)
        {
            ErrorReturn<Variant> result = h.lookup()->getType()->getMember(name)->call(h, 1.0f);
            benchmark::DoNotOptimize(result);
        }
    }
    state.counters["check"] = things.check();
    reportNanoseconds(state, count);
}

void propertyByName(benchmark::State &state)
{
    Things things;
    const String name = SCS("speed");
    float sum = 0;
    for (auto _ : state)
    {
        for (const auto &h : things.handles)
        {
            auto object = h.lookup();
            object->setPropertyValue(name, 2.5f).ignoreError();
            sum += object->getPropertyValue(name).value.get<float>().value;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.counters["check"] = things.handles[0].lookup()->getPropertyValue(name).value.get<float>().value;
    reportNanoseconds(state, count);
}

void propertyResolved(benchmark::State &state)
{
    Things things;
    const PropertyDesc speed = BenchThing::staticType->getProperty(SCS("speed")).value;
    float sum = 0;
    for (auto _ : state)
    {
        for (const auto &h : things.handles)
        {
            speed.getSetter()->call(h, 2.5f);
            sum += speed.getGetter()->call(h).value.get<float>().value;
        }
    }
    benchmark::DoNotOptimize(sum);
    state.counters["check"] = speed.getGetter()->call(things.handles[0]).value.get<float>().value;
    reportNanoseconds(state, count);
}
} // namespace

BENCHMARK(callResolved)->Name("W2/call_resolved");
BENCHMARK(callByName)->Name("W2/call_by_name");
BENCHMARK(propertyByName)->Name("W2/property_set_get_by_name");
BENCHMARK(propertyResolved)->Name("W2/property_set_get_resolved");
