#include "assets/building/PolygonTriangulator.h"

#include "assets/building/PlaneTriangulation.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace
{

constexpr float largestPlan = 1e6f;              ///< metres either side of the origin
constexpr double finestRaster = 1.0 / (1 << 20); ///< metres; an author's figures are not finer
constexpr double passingDistance = 1.5;          ///< cells; rounding moves a point by less than one

typedef std::vector<std::uint32_t> Ring; ///< points of an outline, the last joined to the first

bool isWithinBounds(const MeshPolygon::Outline &outline)
{
    return std::all_of(outline.begin(), outline.end(),
                       [](const MeshVector2 &p)
                       {
                           return std::fabs(p.x) <= largestPlan &&
                                  std::fabs(p.y) <= largestPlan; // false for what is no number
                       });
}

/// Turns metres into the cells of the raster, counted from the middle of the outline's box.
class Raster
{
public:
    explicit Raster(const MeshPolygon::Outline &outline)
    {
        double low[2] = {largestPlan, largestPlan}, high[2] = {-largestPlan, -largestPlan};
        for (const MeshVector2 &p : outline)
            for (int axis = 0; axis < 2; ++axis)
            {
                low[axis] = std::min(low[axis], double(axis ? p.y : p.x));
                high[axis] = std::max(high[axis], double(axis ? p.y : p.x));
            }
        for (int axis = 0; axis < 2; ++axis)
            middle[axis] = 0.5 * (low[axis] + high[axis]);
        const double half = 0.5 * std::max(high[0] - low[0], high[1] - low[1]);
        pitch = std::max(finestRaster, half / (PlaneTriangulation::largestCoordinate - 1));
    }

    /// The cell of a point; none outside the outline's box, where only a misplaced hole can be.
    std::optional<PlanePoint> operator()(const MeshVector2 &p) const
    {
        const double x = std::round((p.x - middle[0]) / pitch), y = std::round((p.y - middle[1]) / pitch);
        if (std::max(std::fabs(x), std::fabs(y)) > PlaneTriangulation::largestCoordinate)
            return std::nullopt;
        return PlanePoint{static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
    }

private:
    double middle[2]; ///< metres
    double pitch;     ///< metres a cell
};

/// One plan on its way from outlines to triangles.
class PlanCutter
{
public:
    explicit PlanCutter(const MeshPolygon &polygon) : raster(polygon.outline) {}

    bool addRing(const MeshPolygon::Outline &outline, bool hole);
    bool cut();

    TriangulatedPlan plan;

private:
    std::optional<std::uint32_t> pointAt(const MeshVector2 &position);
    std::int64_t doubleArea(const Ring &ring) const;
    Ring bentThroughNearPoints(const Ring &ring) const;
    void appendNearPoints(std::uint32_t from, std::uint32_t to, Ring &way) const;
    static bool demand(PlaneTriangulation &plane, Ring &ring);
    bool collectTriangles(const PlaneTriangulation &plane);
    void collectSides(const PlaneTriangulation &plane, const Ring &ring);

    Raster raster;
    std::vector<PlanePoint> cells; ///< of plan.points
    std::unordered_map<std::uint64_t, std::uint32_t> pointsByCell;
    std::vector<Ring> rings;                    ///< the plan to the left of each
    std::unordered_set<std::uint64_t> bordered; ///< edges that are sides; an outline may run along one to and fro
};

std::uint64_t keyOf(std::uint32_t high, std::uint32_t low)
{
    return std::uint64_t(high) << 32 | low;
}

std::optional<std::uint32_t> PlanCutter::pointAt(const MeshVector2 &position)
{
    const std::optional<PlanePoint> cell = raster(position);
    if (!cell)
        return std::nullopt;
    const std::uint64_t key = keyOf(static_cast<std::uint32_t>(cell->x), static_cast<std::uint32_t>(cell->y));
    const auto [place, isNew] = pointsByCell.try_emplace(key, static_cast<std::uint32_t>(cells.size()));
    if (isNew)
    {
        cells.push_back(*cell);
        plan.points.push_back(position);
    }
    return place->second;
}

/// Twice the area that a ring runs around counter-clockwise.
std::int64_t PlanCutter::doubleArea(const Ring &ring) const
{
    std::int64_t sum = 0;
    for (std::size_t i = 0; i < ring.size(); ++i)
    {
        const PlanePoint &a = cells[ring[i]], &b = cells[ring[(i + 1) % ring.size()]];
        sum += std::int64_t(a.x) * b.y - std::int64_t(b.x) * a.y;
    }
    return sum;
}

bool PlanCutter::addRing(const MeshPolygon::Outline &outline, bool hole)
{
    Ring ring;
    for (const MeshVector2 &position : outline)
    {
        const std::optional<std::uint32_t> point = pointAt(position);
        if (!point)
            return false;
        if (ring.empty() || ring.back() != *point)
            ring.push_back(*point);
    }
    const std::int64_t area = doubleArea(ring);
    if (area == 0)
        return false;
    if ((area < 0) != hole)
        std::reverse(ring.begin(), ring.end());
    rings.push_back(std::move(ring));
    return true;
}

/// The points that a line passes within the passing distance, in its order, after its beginning.
void PlanCutter::appendNearPoints(std::uint32_t from, std::uint32_t to, Ring &way) const
{
    const PlanePoint &a = cells[from], &b = cells[to];
    const auto [lowX, highX] = std::minmax(a.x, b.x);
    const auto [lowY, highY] = std::minmax(a.y, b.y);
    const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
    std::vector<std::pair<double, std::uint32_t>> near;
    for (std::uint32_t i = 0; i < cells.size(); ++i)
    {
        const PlanePoint &p = cells[i];
        if (p.x < lowX - 2 || p.x > highX + 2 || p.y < lowY - 2 || p.y > highY + 2 || i == from || i == to)
            continue;
        const double along = ((p.x - a.x) * dx + (p.y - a.y) * dy) / length;
        const double aside = ((p.x - a.x) * dy - (p.y - a.y) * dx) / length;
        if (along > passingDistance && along < length - passingDistance && std::fabs(aside) <= passingDistance)
            near.emplace_back(along, i);
    }
    std::sort(near.begin(), near.end());
    for (const auto &[along, point] : near)
        way.push_back(point);
}

Ring PlanCutter::bentThroughNearPoints(const Ring &ring) const
{
    Ring bent;
    for (std::size_t i = 0; i < ring.size(); ++i)
    {
        bent.push_back(ring[i]);
        const std::uint32_t to = ring[(i + 1) % ring.size()];
        if (to != ring[i])
            appendNearPoints(ring[i], to, bent);
    }
    return bent;
}

/// Demands the edges of a ring and puts the points they run through in its place.
bool PlanCutter::demand(PlaneTriangulation &plane, Ring &ring)
{
    Ring way = {ring.front()};
    for (std::size_t i = 0; i < ring.size(); ++i)
        if (!plane.demand(ring[i], ring[(i + 1) % ring.size()], way))
            return false;
    way.pop_back(); // the first again
    ring = std::move(way);
    return true;
}

bool PlanCutter::cut()
{
    for (Ring &ring : rings)
        ring = bentThroughNearPoints(ring);
    PlaneTriangulation plane(cells);
    for (Ring &ring : rings)
        if (!demand(plane, ring))
            return false;
    plane.refine();
    if (!collectTriangles(plane) || plan.triangles.empty())
        return false;
    for (const Ring &ring : rings)
        collectSides(plane, ring);
    return true;
}

/// Spreads from outside over all triangles, counting how often each is surrounded: once is inside, never outside,
/// and anything else is a fault of the outlines.
bool PlanCutter::collectTriangles(const PlaneTriangulation &plane)
{
    struct Entry
    {
        std::uint32_t from, to; ///< the triangle is to the left
        int surrounded;
    };
    std::unordered_set<std::uint64_t> entered; ///< edges by which a triangle was met or may be met again
    const std::uint32_t corner = plane.getFirstCorner();
    std::vector<Entry> open = {{corner, plane.getNeighbour(corner), 0}};
    while (!open.empty())
    {
        const Entry entry = open.back();
        open.pop_back();
        const std::uint32_t apex = plane.getApex(entry.from, entry.to);
        const std::uint32_t corners[] = {entry.from, entry.to, apex, entry.from};
        if (apex == PlaneTriangulation::none || !entered.insert(keyOf(entry.from, entry.to)).second)
            continue;
        if (entry.surrounded < 0 || entry.surrounded > 1)
            return false;
        if (entry.surrounded == 1)
            plan.triangles.insert(plan.triangles.end(), {entry.from, apex, entry.to});
        for (int i = 0; i < 3; ++i)
        {
            entered.insert(keyOf(corners[i], corners[i + 1]));
            open.push_back({corners[i + 1], corners[i], entry.surrounded - plane.getStep(corners[i], corners[i + 1])});
        }
    }
    return true;
}

void PlanCutter::collectSides(const PlaneTriangulation &plane, const Ring &ring)
{
    float along = 0;
    for (std::size_t i = 0; i < ring.size(); ++i)
    {
        const std::uint32_t from = ring[i], to = ring[(i + 1) % ring.size()];
        if (plane.getStep(from, to) > 0 && bordered.insert(keyOf(from, to)).second)
            plan.sides.push_back({from, to, along});
        const MeshVector2 way = plan.points[to] - plan.points[from];
        along += std::hypot(way.x, way.y);
    }
}

} // namespace

ErrorReturn<TriangulatedPlan> triangulate(const MeshPolygon &polygon)
{
    if (!isWithinBounds(polygon.outline) || !std::all_of(polygon.holes.begin(), polygon.holes.end(), isWithinBounds))
        return ErrorCode::OUT_OF_BOUNDS;
    PlanCutter cutter(polygon);
    bool sound = cutter.addRing(polygon.outline, false);
    for (const MeshPolygon::Outline &hole : polygon.holes)
        sound = sound && cutter.addRing(hole, true);
    if (!sound || !cutter.cut())
        return ErrorCode::MAP_DATA_ERROR;
    return std::move(cutter.plan);
}
