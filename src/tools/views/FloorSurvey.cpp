#include "tools/views/FloorSurvey.h"

#include "ai/perception/LightAt.h"
#include "engine/entities/Entity.h"
#include "engine/levels/MapRootEntity.h"
#include "physics/grid/PartitioningGrid.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>

namespace
{

constexpr float SMALLEST_EDGE = 0.05f; ///< metres
constexpr float DROP = 1.2f;           ///< metres that one lets oneself down from a ledge
constexpr float CLIMB = 0.4f;          ///< metres from a square to the next: a step, or a slope

/// The squares around a square: columns and rows from it.
constexpr int BESIDE[8][2] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 1}, {-1, 1}, {-1, -1}, {1, -1}};

} // namespace

void FloorSurvey::begin(Handle<MapRootEntity> newMap, float wishedEdge)
{
    spots.clear();
    firstSpots.assign(1, 0);
    areas.clear();
    solids.clear();
    map = newMap;
    columns = rows = looked = lit = 0;
    const auto grid = map.isValid() ? PartitioningGrid::ofMap(map).lookup() : Handle<PartitioningGrid>::Result{};
    if (!grid || !(wishedEdge >= SMALLEST_EDGE) || !std::isfinite(wishedEdge))
    {
        KV_LOGF(Logger_::I_ERROR,
                "A survey of floors finds none with squares of %g m: it wants a live map and at least %g m.",
                static_cast<double>(wishedEdge), static_cast<double>(SMALLEST_EDGE));
        return;
    }
    solids.read(*grid);
    barred.assign(static_cast<std::size_t>(solids.getDoorCount()), false);
    for (int door = 0; door < solids.getDoorCount(); ++door)
        setBarred(door, solids.isLocked(door));
    Vec4 least, greatest;
    if (!solids.findExtent(least, greatest))
        return;
    const double wide = static_cast<double>(greatest.x - least.x), deep = static_cast<double>(greatest.z - least.z);
    edge = std::max({wishedEdge, static_cast<float>(std::sqrt(wide * deep / MOST_SQUARES)) * 1.01f,
                     static_cast<float>(std::max(wide, deep) / MOST_SQUARES)});
    columns = std::max(static_cast<int>(wide / static_cast<double>(edge)), 1);
    rows = std::max(static_cast<int>(deep / static_cast<double>(edge)), 1);
    west = least.x + edge / 2;
    south = least.z + edge / 2;
}

bool FloorSurvey::work(int squares)
{
    const int last = looked + std::clamp(squares, 0, columns * rows - looked);
    while (looked < last)
        lookAtSquare();
    return looked < columns * rows;
}

/// Finds the spots of the next square.
void FloorSurvey::lookAtSquare()
{
    const int square = looked;
    if (square >= columns * rows)
        return;
    ++looked;
    const float x = west + static_cast<float>(square % columns) * edge;
    const float z = south + static_cast<float>(square / columns) * edge;
    standing.clear();
    solids.findStanding(x, z, standing);
    for (const float height : standing)
    {
        const Vec4 place(x, height, z, 1.f);
        Spot spot;
        spot.height = height;
        spot.square = square;
        spot.shown = solids.isDrawn(place);
        // So wide that no step leads past it, not even a slanting one.
        spot.door = solids.findDoor(place, edge * 0.75f);
        spots.push_back(spot);
    }
    firstSpots.push_back(getSpotCount());
}

bool FloorSurvey::shine(int count)
{
    const int last = lit + std::clamp(count, 0, getSpotCount() - lit);
    for (; lit < last; ++lit)
        at(lit).light = lightAt(map, getSpot(lit) + Vec4(0.f, LIGHT_ABOVE, 0.f, 0.f));
    return lit < getSpotCount();
}

Vec4 FloorSurvey::getSpot(int spot) const
{
    if (!isSpot(spot))
        return Vec4();
    const Spot &found = at(spot);
    const int column = found.square % columns, row = found.square / columns;
    return Vec4(west + static_cast<float>(column) * edge, found.height, south + static_cast<float>(row) * edge, 1.f);
}

int FloorSurvey::findSpot(Vec4 feet) const
{
    int best = NONE;
    float bestDistance = 1.f;
    for (int spot = 0; spot < getSpotCount(); ++spot)
    {
        Vec4 way = getSpot(spot) - feet;
        way.w = 0.f;
        if (way.magnitude() < bestDistance)
        {
            bestDistance = way.magnitude();
            best = spot;
        }
    }
    return best;
}

/// Calls a function with the spots that one comes to from a spot in a step, and the length of that.
template <class Function>
void FloorSurvey::forEachBeside(int spot, Function function) const
{
    const Spot &here = at(spot);
    const int x = here.square % columns, z = here.square / columns;
    for (const auto &way : BESIDE)
    {
        const int column = x + way[0], row = z + way[1], square = row * columns + column;
        if (column < 0 || column >= columns || row < 0 || row >= rows || square >= looked)
            continue;
        const int end = firstSpots[static_cast<std::size_t>(square) + 1];
        for (int other = firstSpots[static_cast<std::size_t>(square)]; other < end; ++other)
        {
            const float up = at(other).height - here.height;
            if (up <= CLIMB && up >= -DROP)
                function(other,
                         std::hypot(std::hypot(static_cast<float>(way[0]), static_cast<float>(way[1])) * edge, up));
        }
    }
}

bool FloorSurvey::isInner(int spot) const
{
    if (!isSpot(spot))
        return false;
    int level = 0;
    forEachBeside(spot, [&](int other, float) { level += std::fabs(at(other).height - at(spot).height) <= CLIMB; });
    return level >= 8;
}

float FloorSurvey::getSlope(int spot) const
{
    if (!isSpot(spot))
        return 0.f;
    float steepest = 0.f;
    forEachBeside(spot,
                  [&](int other, float length)
                  {
                      const float up = std::fabs(at(other).height - at(spot).height);
                      if (up <= CLIMB)
                          steepest = std::max(steepest, up / std::sqrt(std::max(length * length - up * up, 1e-6f)));
                  });
    return steepest;
}

void FloorSurvey::setBarred(int door, bool bar)
{
    if (door >= 0 && door < static_cast<int>(barred.size()))
        barred[static_cast<std::size_t>(door)] = bar;
}

bool FloorSurvey::getBarred(int door) const
{
    return door >= 0 && door < static_cast<int>(barred.size()) && barred[static_cast<std::size_t>(door)];
}

/// Finds the ways from a spot to all others that steps lead to by allowed ones; below 0 where none leads.
/// @return the spot that is farthest
template <class Allowed>
int FloorSurvey::walk(int from, std::vector<float> &ways, Allowed allowed) const
{
    std::vector<Open> open{{0.f, from}};
    ways[static_cast<std::size_t>(from)] = 0.f;
    int farthest = from;
    while (!open.empty())
    {
        std::pop_heap(open.begin(), open.end(), std::greater<>());
        const auto [way, spot] = open.back();
        open.pop_back();
        if (way > ways[static_cast<std::size_t>(spot)])
            continue;
        farthest = spot;
        forEachBeside(spot,
                      [&, way = way](int other, float length)
                      {
                          float &known = ways[static_cast<std::size_t>(other)];
                          if ((known >= 0.f && known <= way + length) || !allowed(other))
                              return;
                          known = way + length;
                          open.emplace_back(known, other);
                          std::push_heap(open.begin(), open.end(), std::greater<>());
                      });
    }
    return farthest;
}

int FloorSurvey::flood(Vec4 feet)
{
    for (Spot &spot : spots)
        spot.way = -1.f;
    const int from = findSpot(feet);
    if (from == NONE)
        return 0;
    scratch.assign(spots.size(), -1.f);
    walk(from, scratch, [&](int spot) { return !getBarred(at(spot).door); });
    int reached = 0;
    for (int spot = 0; spot < getSpotCount(); ++spot)
    {
        at(spot).way = scratch[static_cast<std::size_t>(spot)];
        reached += at(spot).way >= 0.f;
    }
    return reached;
}

/// Divides the spots that belong to some area into areas that hang together, each with its begin and square metres.
template <class Member>
void FloorSurvey::gather(Member isMember)
{
    areas.clear();
    for (Spot &spot : spots)
        spot.area = NONE;
    std::vector<int> open;
    for (int first = 0; first < getSpotCount(); ++first)
    {
        if (at(first).area != NONE || !isMember(first))
            continue;
        const auto number = static_cast<std::int32_t>(areas.size());
        areas.push_back(Area{first, first, 0.f});
        open.assign(1, first);
        at(first).area = number;
        while (!open.empty())
        {
            const int spot = open.back();
            open.pop_back();
            areas.back().size += edge * edge;
            forEachBeside(spot,
                          [&](int other, float)
                          {
                              if (at(other).area != NONE || !isMember(other))
                                  return;
                              at(other).area = number;
                              open.push_back(other);
                          });
        }
    }
}

/// Orders the areas by size and drops those that are too small.
void FloorSurvey::rank(float least)
{
    std::vector<std::int32_t> order(areas.size());
    std::iota(order.begin(), order.end(), 0);
    const auto sizeOf = [&](std::int32_t area) { return areas[static_cast<std::size_t>(area)].size; };
    std::erase_if(order, [&](std::int32_t area) { return !(sizeOf(area) >= least); });
    std::stable_sort(order.begin(), order.end(),
                     [&](std::int32_t one, std::int32_t other) { return sizeOf(one) > sizeOf(other); });
    std::vector<std::int32_t> rankOf(areas.size(), NONE);
    std::vector<Area> ranked;
    for (const std::int32_t area : order)
    {
        rankOf[static_cast<std::size_t>(area)] = static_cast<std::int32_t>(ranked.size());
        ranked.push_back(areas[static_cast<std::size_t>(area)]);
    }
    areas.swap(ranked);
    for (Spot &spot : spots)
        spot.area = spot.area == NONE ? NONE : rankOf[static_cast<std::size_t>(spot.area)];
}

int FloorSurvey::findIslands(float least)
{
    gather([&](int spot) { return at(spot).way < 0.f && at(spot).shown && isInner(spot); });
    rank(least);
    return static_cast<int>(areas.size());
}

int FloorSurvey::findStretches(float darkest)
{
    const auto isDark = [&](int spot)
    { return at(spot).way >= 0.f && at(spot).light >= 0.f && at(spot).light < darkest; };
    gather(isDark);
    for (Area &area : areas)
        measureStretch(area);
    rank(edge);
    return static_cast<int>(areas.size());
}

/// Finds the ends of a stretch: what is farthest from anywhere in it, and what is farthest from that.
void FloorSurvey::measureStretch(Area &area)
{
    const std::int32_t number = at(area.begin).area;
    const auto isInside = [&](int spot) { return at(spot).area == number; };
    scratch.assign(spots.size(), -1.f);
    area.begin = walk(area.begin, scratch, isInside);
    scratch.assign(spots.size(), -1.f);
    area.end = walk(area.begin, scratch, isInside);
    area.size = scratch[static_cast<std::size_t>(area.end)];
}
