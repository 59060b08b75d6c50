#include "ai/paths/WalkPlan.h"

#include "ai/paths/CellSteps.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr float COMFORT = 0.45f;    ///< metres of room at which nobody looks for a better place in a cell
constexpr float ROOM_UNITS = 128.f; ///< a metre
constexpr std::uint8_t ROOMY = 255;
constexpr float TOLERANCE = 0.03f; ///< metres by which a body may be wider than its way: contacts give so much

struct Offset
{
    int x, z; ///< fifths of a cell's edge
};

/// The places in a cell that a station may have, the nearest to its centre first.
constexpr std::array<Offset, 25> STATIONS = {{{0, 0},  {1, 0},   {0, -1},  {-1, 0}, {0, 1},  {1, -1}, {-1, -1},
                                              {-1, 1}, {1, 1},   {2, 0},   {0, -2}, {-2, 0}, {0, 2},  {2, -1},
                                              {1, -2}, {-1, -2}, {-2, -1}, {-2, 1}, {-1, 2}, {1, 2},  {2, 1},
                                              {2, -2}, {-2, -2}, {-2, 2},  {2, 2}}};

constexpr int opposite(int direction)
{
    return (direction + SquareGrid::NUM_NEIGHBORS / 2) % SquareGrid::NUM_NEIGHBORS;
}

std::uint8_t inUnits(float room)
{
    return static_cast<std::uint8_t>(std::min(room * ROOM_UNITS, ROOMY - 1.f));
}

} // namespace

std::uint8_t WalkPlan::roomFor(float radius)
{
    return static_cast<std::uint8_t>(std::ceil(marginFor(radius) * ROOM_UNITS));
}

float WalkPlan::marginFor(float radius)
{
    constexpr float LEAST = 0.01f; // nobody walks through what leaves no room, however small he is
    return std::max(std::clamp(radius, 0.f, WIDEST) - TOLERANCE, LEAST);
}

void WalkPlan::layOut(int newColumns, int newRows, float cellEdge)
{
    columns = newColumns;
    rows = newRows;
    edge = cellEdge;
    Cell open;
    std::fill(std::begin(open.steps), std::end(open.steps), ROOMY);
    open.room = ROOMY;
    open.station = 0;
    open.isNearLeaf = open.isTouched = false;
    open.firstEntry = NONE;
    cells.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), open);
    obstacles.clear();
    freeNumbers.clear();
    entries.clear();
    freeEntry = NONE;
    touched.clear();
    settled.clear();
}

WalkPlan::Number WalkPlan::add(const Footprint &shape, bool isLeaf, Handle<PhysicsComponent> leaf)
{
    if (freeNumbers.empty())
    {
        freeNumbers.push_back(static_cast<Number>(obstacles.size()));
        obstacles.emplace_back();
    }
    const Number number = freeNumbers.back();
    freeNumbers.pop_back();
    Obstacle &obstacle = obstacles[number];
    obstacle.shape = shape;
    obstacle.isLeaf = isLeaf;
    obstacle.leaf = leaf;
    const PlanPoint reach = shape.reach() + PlanPoint(REACH, REACH);
    const PlanPoint low = shape.middle - reach, high = shape.middle + reach;
    obstacle.cells = CellRect{cellAlong(low.x), cellAlong(low.z), cellAlong(high.x), cellAlong(high.z)}.common(
        CellRect{0, 0, columns - 1, rows - 1});
    for (int z = obstacle.cells.minZ; z <= obstacle.cells.maxZ; ++z)
        for (int x = obstacle.cells.minX; x <= obstacle.cells.maxX; ++x)
            if (isNear(shape, x, z))
                enter(number, x, z);
    return number;
}

void WalkPlan::remove(Number number)
{
    Obstacle &obstacle = obstacles[number];
    for (int z = obstacle.cells.minZ; z <= obstacle.cells.maxZ; ++z)
        for (int x = obstacle.cells.minX; x <= obstacle.cells.maxX; ++x)
            if (isNear(obstacle.shape, x, z))
                leave(number, x, z);
    obstacle = Obstacle();
    freeNumbers.push_back(number);
}

/// Whether something may be nearer to a place of a cell than REACH.
bool WalkPlan::isNear(const Footprint &shape, int x, int z) const
{
    constexpr float HALF_DIAGONAL = 0.7072f;
    return shape.distanceTo(centreOf(x, z)) <= REACH + HALF_DIAGONAL * edge;
}

void WalkPlan::touch(int x, int z)
{
    const std::size_t index = indexOf(x, z);
    if (!cells[index].isTouched)
        touched.push_back(static_cast<std::uint32_t>(index));
    cells[index].isTouched = true;
}

void WalkPlan::enter(Number number, int x, int z)
{
    if (freeEntry == NONE)
    {
        freeEntry = static_cast<std::uint32_t>(entries.size());
        entries.push_back(Entry{NONE, NONE});
    }
    const std::uint32_t entry = freeEntry;
    freeEntry = entries[entry].next;
    Cell &cell = cells[indexOf(x, z)];
    entries[entry] = Entry{number, cell.firstEntry};
    cell.firstEntry = entry;
    touch(x, z);
}

void WalkPlan::leave(Number number, int x, int z)
{
    for (std::uint32_t *link = &cells[indexOf(x, z)].firstEntry; *link != NONE; link = &entries[*link].next)
    {
        const std::uint32_t entry = *link;
        if (entries[entry].obstacle != number)
            continue;
        *link = entries[entry].next;
        entries[entry].next = freeEntry;
        freeEntry = entry;
        break;
    }
    touch(x, z);
}

CellRect WalkPlan::settle()
{
    settled.clear();
    settled.swap(touched);
    CellRect around{columns, rows, -1, -1};
    for (const std::uint32_t index : settled)
    {
        const int x = static_cast<int>(index) % columns, z = static_cast<int>(index) / columns;
        settleStation(x, z);
        around = CellRect{std::min(around.minX, x), std::min(around.minZ, z), std::max(around.maxX, x),
                          std::max(around.maxZ, z)};
    }
    for (const std::uint32_t index : settled)
    {
        settleSteps(static_cast<int>(index) % columns, static_cast<int>(index) / columns);
        cells[index].isTouched = false;
    }
    return around;
}

/// Looks for the best place in a cell, and how much room is around it.
void WalkPlan::settleStation(int x, int z)
{
    Cell &cell = cells[indexOf(x, z)];
    cell.isNearLeaf = false;
    bool isOpen = true;
    forEachNear(x, z,
                [&](const Obstacle &obstacle)
                {
                    cell.isNearLeaf |= obstacle.isLeaf;
                    isOpen &= obstacle.isLeaf;
                });
    cell.station = 0;
    cell.room = isOpen ? ROOMY : 0;
    if (isOpen || isFilled(x, z))
        return;
    float best = -1.f;
    for (std::size_t i = 0; i < STATIONS.size() && best < COMFORT; ++i)
    {
        const PlanPoint offset(static_cast<float>(STATIONS[i].x), static_cast<float>(STATIONS[i].z));
        const float room = roomAround(x, z, centreOf(x, z) + offset * (edge * 0.2f), best);
        if (!(room > best))
            continue;
        best = room;
        cell.station = static_cast<std::uint8_t>(i);
    }
    cell.room = inUnits(best);
}

/// Whether something no larger than the cell, and not thin, stands with its middle in it: it has the cell for itself.
bool WalkPlan::isFilled(int x, int z) const
{
    constexpr float LARGEST = 0.505f, THINNEST = 0.15f; // of a cell's edge, half extents
    const PlanPoint centre = centreOf(x, z);
    bool filled = false;
    forEachNear(x, z,
                [&](const Obstacle &obstacle)
                {
                    const auto [thin, thick] = std::minmax(obstacle.shape.halfAlong, obstacle.shape.halfAcross);
                    const PlanPoint from = obstacle.shape.middle - centre;
                    filled |= !obstacle.isLeaf && thick <= edge * LARGEST && thin >= edge * THINNEST &&
                              std::max(std::fabs(from.x), std::fabs(from.z)) <= edge * 0.5f;
                });
    return filled;
}

/// Metres from a place of a cell to the nearest thing but closed leaves.
/// @param enough  as soon as it turns out less, nobody wants to know how much less
float WalkPlan::roomAround(int x, int z, const PlanPoint &place, float enough) const
{
    float room = REACH;
    for (std::uint32_t entry = cells[indexOf(x, z)].firstEntry; entry != NONE && room > enough;
         entry = entries[entry].next)
        if (const Obstacle &obstacle = obstacles[entries[entry].obstacle]; !obstacle.isLeaf)
            room = std::min(room, obstacle.shape.distanceTo(place));
    return room;
}

/// Measures the steps between a cell and its neighbours, both ways.
void WalkPlan::settleSteps(int x, int z)
{
    Cell &cell = cells[indexOf(x, z)];
    const PlanPoint station = stationOf(x, z);
    for (int direction = 0; direction < SquareGrid::NUM_NEIGHBORS; ++direction)
    {
        const int nextX = x + CELL_STEPS[direction].dx, nextZ = z + CELL_STEPS[direction].dz;
        if (!isCell(nextX, nextZ))
            continue;
        Cell &next = cells[indexOf(nextX, nextZ)];
        const PlanPoint end = stationOf(nextX, nextZ);
        std::uint8_t room = std::min(cell.room, next.room);
        const auto measure = [&](const Obstacle &obstacle)
        {
            if (!obstacle.isLeaf && room > 0)
                room = std::min(room, inUnits(obstacle.shape.distanceTo(station, end)));
        };
        forEachNear(x, z, measure);
        forEachNear(nextX, nextZ, measure);
        cell.steps[direction] = next.steps[opposite(direction)] = room;
    }
}

PlanPoint WalkPlan::stationOf(int x, int z) const
{
    const Offset &offset = STATIONS[cells[indexOf(x, z)].station];
    return centreOf(x, z) + PlanPoint(static_cast<float>(offset.x), static_cast<float>(offset.z)) * (edge * 0.2f);
}
