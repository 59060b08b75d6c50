// W5: one frame of ten managers with a thousand components each, every manager stepped through one reflected call.
#include "Rate.h"
#include "Subjects.h"

#include "object/reflection/Variant.h"

#include "engine/entities/SimpleManager.h"
#include "object/reflection/SavedArguments.h"

#include <vector>

namespace
{
constexpr int perManager = 1000;

void frame(benchmark::State &state)
{
    std::vector<Handle<SimpleManager>> managers;
    std::vector<ReflectorPtr> updaters;
    std::vector<Handle<BenchMover>> movers;
    for (const ReflectorPtr &type :
         {BenchMover::staticType, BenchMover1::staticType, BenchMover2::staticType, BenchMover3::staticType,
          BenchMover4::staticType, BenchMover5::staticType, BenchMover6::staticType, BenchMover7::staticType,
          BenchMover8::staticType, BenchMover9::staticType})
    {
        managers.push_back(construct<SimpleManager>(defaultAllocationCategory));
        auto manager = managers.back().lookup();
        for (int i = 0; i < perManager; ++i)
        {
            const Handle<AbstractComponent> h = manager->constructComponent(type);
            manager->addComponentToManager(h, Handle<Entity>());
            movers.push_back(unchecked_handle_cast<BenchMover>(h));
        }
        updaters.push_back(manager->bind(SCS("doFrame")));
    }

    for (auto _ : state)
    {
        for (const ReflectorPtr &updater : updaters)
            updater->call();
        benchmark::ClobberMemory();
    }
    double moved = 0;
    for (const auto &h : movers)
        moved += h.lookup()->x > 0;
    state.counters["check"] = moved;
    reportNanoseconds(state, double(perManager) * double(managers.size()));

    for (const auto &h : movers)
        h.lookup()->murder();
    for (const auto &h : managers)
        h.lookup()->murder();
    cremateDeadObjects();
}
} // namespace

BENCHMARK(frame)->Name("W5/frame");
