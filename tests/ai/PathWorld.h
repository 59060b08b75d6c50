// PathWorld: a map with the grids that paths are searched in, and creatures that ask.
#pragma once

#include "ai/paths/PathComponent.h"
#include "ai/paths/PathManager.h"
#include "physics/grid/SquareGrid.h"
#include "support/TestLevel.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"

#include <random>
#include <string>
#include <vector>

/// Whole numbers of a seed.
class Dice
{
public:
    explicit Dice(unsigned seed) : generator(seed) {}
    int below(int count) { return static_cast<int>(generator() % static_cast<unsigned>(count)); }
    bool oneIn(int count) { return below(count) == 0; }

private:
    std::mt19937 generator;
};

/// A map about the origin with a main path grid and a saturation grid of some cells of 1 m.
class PathWorld
{
public:
    PathWorld(int cols, int rows)
    {
        map = level.map("map", Vec4(0, 0, 0, 1), Vec4(static_cast<float>(cols), 4, static_cast<float>(rows), 0));
        main = grid(".MapData_mainPathGrid", cols, rows);
        saturation = grid(".MapData_pathSaturationGrid", cols, rows);
    }

    SquareGrid *grid(const char *name, int cols, int rows)
    {
        const Handle<Entity> entity = level.entity(name, map);
        level.transform(entity).lookup()->setScale(Vec4(static_cast<float>(cols), 1, static_cast<float>(rows), 0));
        SquareGrid *const made = level.component<SquareGrid>(entity, "grid").lookup().ptr;
        made->updateSize();
        return made;
    }
    /// Blocks the cells of a picture that are '#'; its first line is row 0.
    void draw(const std::vector<std::string> &rows)
    {
        for (std::size_t z = 0; z < rows.size(); ++z)
            for (std::size_t x = 0; x < rows[z].size(); ++x)
                main->setCellFloatValue(static_cast<int>(x), static_cast<int>(z), rows[z][x] == '#' ? 1.f : 0.f);
    }
    /// A creature that stands in a cell.
    Handle<Entity> creature(int x, int z)
    {
        const Handle<Entity> entity = level.entity("creature", map);
        level.transform(entity, main->getCellWorldCoords(x, z));
        level.component<PathComponent>(entity, "path");
        return entity;
    }
    static PathComponent &path(const Handle<Entity> &creature)
    {
        return *componentOf<PathComponent>(creature, ComponentKeys::path);
    }
    void ask(const Handle<Entity> &creature, int x, int z, int priority = RP_Normal, bool rubberbanding = false,
             bool saturates = false)
    {
        path(creature).submitPathRequest(
            PathRequest(creature, main->getCell(x, z), priority, rubberbanding, saturates));
    }
    PathManager &manager()
    {
        return *handle_cast<PathManager>(level.coordinator().getManager(ComponentKeys::path)).lookup();
    }
    /// Steps the manager until a creature has its answer; the count of steps.
    int settle(const Handle<Entity> &creature, int most = 20000)
    {
        int steps = 0;
        for (; path(creature).isRequestPending() && steps < most; ++steps)
            manager().processRequest();
        return steps;
    }

    TestLevel level;
    Handle<MapRootEntity> map;
    SquareGrid *main;
    SquareGrid *saturation;
};
