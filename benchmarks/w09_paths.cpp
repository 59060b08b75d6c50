// W9: a hundred paths over 256 x 256 cells, the slice of a frame, and the start of a search.
#include "Arena.h"
#include "Rate.h"

#include "ai/paths/PathComponent.h"
#include "ai/paths/PathManager.h"
#include "ai/paths/PathSearch.h"
#include "physics/grid/SquareGrid.h"

#include "object/tree/WellKnownPaths.h"

#include <benchmark/benchmark.h>

#include <limits>

namespace
{

/// A map with the cells of W9, and the grid of traces beside them.
class CellLevel
{
public:
    explicit CellLevel(bool isMaze) : level(bench::GridMap::W, 0.f)
    {
        isMaze ? cells.makeMaze(92) : cells.makeNoise(90);
        main = addGrid(WellKnownPaths::mainPathGrid);
        saturation = addGrid(WellKnownPaths::pathSaturationGrid);
        for (int z = 0; z < bench::GridMap::H; ++z)
            for (int x = 0; x < bench::GridMap::W; ++x)
                main->setCellFloatValue(x, z, cells.free(x, z) ? 0.f : 1.f);
    }

    PathGround ground() { return PathGround{*main, saturation}; }
    /// Adds an entity with a component to the map.
    template <class T>
    T *add(const Handle<Entity> &entity, const char *key)
    {
        return handle_cast<T>(entity.lookup()->addComponent(SCS(key), T::staticType)).lookup().ptr;
    }
    Handle<Entity> addEntity(const String &name)
    {
        const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
        entity.lookup()->setName(name);
        entity.lookup()->setParent(level.map);
        return entity;
    }

    ArenaLevel level;
    bench::GridMap cells;
    SquareGrid *main;
    SquareGrid *saturation;

private:
    SquareGrid *addGrid(const String &name)
    {
        const Handle<Entity> entity = addEntity(name);
        add<TransformComponent>(entity, "transform")->setScale(Vec4(bench::GridMap::W, 1, bench::GridMap::H, 0));
        SquareGrid *const grid = add<SquareGrid>(entity, "grid");
        grid->updateSize();
        return grid;
    }
};

void paths(benchmark::State &state)
{
    CellLevel level(state.range(0) != 0);
    PathSearch search;
    double cost = 0;
    for (auto _ : state)
    {
        cost = 0;
        for (const bench::GridMap::Query &query : level.cells.queries)
        {
            search.begin(level.ground(), level.main->getCell(query.sx, query.sz),
                         level.main->getCell(query.gx, query.gz));
            if (search.run(level.ground(), std::numeric_limits<int>::max()) == PS_Succeeded)
                cost += static_cast<double>(search.getPathCost());
        }
    }
    state.counters["check"] = cost;
}

/// What the manager takes in a frame of a long search: thirty cells, and finding the creature, its map and the grids.
void slice(benchmark::State &state)
{
    CellLevel level(true);
    PathManager &manager = static_cast<PathManager &>(level.level.manager("path"));
    const Handle<Entity> creature = level.addEntity(SCS("creature"));
    TransformComponent &transform = *level.add<TransformComponent>(creature, "transform");
    PathComponent &path = *level.add<PathComponent>(creature, "path");
    std::size_t next = 0;
    double answers = 0;
    const auto step = [&]
    {
        if (!path.isRequestPending())
        {
            const bench::GridMap::Query &query = level.cells.queries[next++ % level.cells.queries.size()];
            transform.setPosition(level.main->getCellWorldCoords(query.sx, query.sz));
            path.submitPathRequest(
                PathRequest(creature, level.main->getCell(query.gx, query.gz), RP_Normal, false, false));
        }
        manager.doFrame();
        answers += path.requestStatus() == PS_Failed;
    };
    step(); // makes the pool, which is kept
    for (auto _ : state)
        step();
    state.counters["check"] = answers;
    reportNanoseconds(state, 1);
}

/// Beginning a search after one that has reached the whole maze.
void start(benchmark::State &state)
{
    CellLevel level(true);
    PathSearch search;
    const GridCell from = level.main->getCell(1, 1), to = level.main->getCell(253, 253);
    search.begin(level.ground(), from, level.main->getCell(0, 0));
    search.run(level.ground(), std::numeric_limits<int>::max());
    double begun = 0;
    for (auto _ : state)
    {
        begun = search.begin(level.ground(), from, to);
        benchmark::ClobberMemory();
    }
    state.counters["check"] = begun;
    reportNanoseconds(state, 1);
}

} // namespace

BENCHMARK(paths)->Name("W9/paths")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);
BENCHMARK(slice)->Name("W9b/slice");
BENCHMARK(start)->Name("W9b/start");
