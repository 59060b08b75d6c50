// W7: the nearest of 10,000 standing boxes on each of 10,000 segments.
#include "Arena.h"
#include "Rate.h"

#include <benchmark/benchmark.h>

namespace
{
void segments(benchmark::State &state)
{
    const bench::RayCase scene(static_cast<float>(state.range(0)));
    ArenaLevel level(scene.side, 2.f);
    level.addBoxes(scene.boxes, BoundingVolume::BV_BOX);
    level.manager("boundingVolume").doFrame();
    double hits = 0, sum = 0;
    for (auto _ : state)
    {
        hits = sum = 0;
        for (const bench::Segment &segment : scene.segs)
        {
            const SegmentHit hit =
                level.grid->checkSegment(Vec4(segment.x, 0, segment.z, 1), Vec4(segment.dx, 0, segment.dz, 0));
            hits += hit.collision.collided;
            sum += hit.collision.collided ? static_cast<double>(hit.collision.t) : 0.0;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.counters["check"] = hits;
    state.counters["t_sum"] = sum;
    reportNanoseconds(state, static_cast<double>(scene.segs.size()));
}
} // namespace

BENCHMARK(segments)->Name("W7/segment")->Arg(20)->Arg(100);
