// W6: boxes in a walled arena. a: prescribed motion and detection; b: the full step. One iteration is one step.
#include "Arena.h"

#include "engine/time/TimeKeeper.h"
#include "engine/time/TimeSystem.h"

#include <benchmark/benchmark.h>

namespace
{
constexpr int warmUpSteps = 60;
constexpr float wallMargin = 4.f; ///< metres: the walls' own rectangles

double meanSquaredSpeed(const ArenaLevel &level)
{
    double squares = 0;
    for (const ArenaBox &box : level.boxes)
        squares += static_cast<double>(box.body->getVelocity().magnitudeSquared());
    return squares / static_cast<double>(level.boxes.size());
}

void detect(benchmark::State &state)
{
    bench::Arena arena(static_cast<int>(state.range(0)));
    ArenaLevel level(arena.side, wallMargin);
    level.addBoxes(arena.boxes, BoundingVolume::BV_BOX);
    level.addWalls(arena.side);
    AbstractManager &volumes = level.manager("boundingVolume");
    const auto step = [&]
    {
        arena.advance();
        for (std::size_t i = 0; i < arena.boxes.size(); ++i)
            ArenaLevel::place(level.boxes[i], arena.boxes[i]);
        volumes.doFrame();
        level.grid->checkCollisions();
        const int touching = level.grid->getCollisionCount();
        level.grid->dropCollisions();
        return touching;
    };
    for (int i = 0; i < warmUpSteps; ++i)
        step();
    double touching = 0;
    for (auto _ : state)
        touching += step();
    state.counters["check"] = benchmark::Counter(touching, benchmark::Counter::kAvgIterations);
}

void fullStep(benchmark::State &state)
{
    bench::Arena arena(static_cast<int>(state.range(0)));
    ArenaLevel level(arena.side, wallMargin);
    level.addBoxes(arena.boxes, BoundingVolume::BV_BOX);
    level.addWalls(arena.side);
    AbstractManager &bodies = level.manager("physics"), &volumes = level.manager("boundingVolume"),
                    &grids = level.manager("partitioning");
    level.level.lookup()->getTimer(SCS("master")).newFrame(getSystemDeref<TimeSystem>().getTicksPerSecond() / 60);
    const auto step = [&]
    {
        bodies.doFrame();
        volumes.doFrame();
        grids.doFrame();
    };
    state.counters["start"] = meanSquaredSpeed(level);
    for (int i = 0; i < warmUpSteps; ++i)
        step();
    for (auto _ : state)
        step();
    state.counters["check"] = meanSquaredSpeed(level);
}
} // namespace

BENCHMARK(detect)->Name("W6a/detect")->Arg(1000)->Arg(4000)->Arg(16000)->Iterations(240)->Unit(benchmark::kMillisecond);
BENCHMARK(fullStep)->Name("W6b/step")->Arg(1000)->Arg(4000)->Arg(16000)->Iterations(240)->Unit(benchmark::kMillisecond);
