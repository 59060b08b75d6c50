#include "assets/building/PlaneTriangulation.h"

#include <algorithm>
#include <deque>
#include <numeric>
#include <utility>

namespace
{

/// Wide enough for the determinant of isInCircle, whose terms reach 2^98.
__extension__ typedef __int128 WideInt;

} // namespace

/// Joins the points from left to right, each to the part of the hull of those before that it sees.
class PlaneTriangulation::Sweep
{
public:
    explicit Sweep(PlaneTriangulation &plane)
        : plane(plane), next(plane.points.size()), previous(plane.points.size()), order(plane.points.size())
    {
        std::iota(order.begin(), order.end(), Point(0));
        std::sort(order.begin(), order.end(),
                  [&](Point a, Point b)
                  {
                      const PlanePoint &p = plane.points[a], &q = plane.points[b];
                      return p.x != q.x ? p.x < q.x : p.y < q.y;
                  });
    }

    void run()
    {
        for (std::size_t i = startHull(); i < order.size(); ++i)
            join(order[i], order[i - 1]);
    }

private:
    void link(Point a, Point b)
    {
        next[a] = b;
        previous[b] = a;
    }

    /// The points up to the first that leaves the line of the others; returns how many that are.
    std::size_t startHull()
    {
        std::size_t off = 2;
        while (plane.turn(order[0], order[1], order[off]) == 0)
            ++off;
        const Point tip = order[off];
        const bool left = plane.turn(order[0], order[1], tip) > 0;
        for (std::size_t i = 0; i + 1 < off; ++i)
        {
            const Point a = left ? order[i] : order[i + 1], b = left ? order[i + 1] : order[i];
            plane.addTriangle(a, b, tip);
            link(a, b);
        }
        link(left ? order[off - 1] : order[0], tip);
        link(tip, left ? order[0] : order[off - 1]);
        return off + 1;
    }

    /// Appends the triangles between a point and the hull's edges that it sees; the first of them touch `last`.
    void join(Point point, Point last)
    {
        Point end = last;
        for (; plane.turn(end, next[end], point) < 0; end = next[end])
            plane.addTriangle(next[end], end, point);
        Point begin = last;
        for (; plane.turn(previous[begin], begin, point) < 0; begin = previous[begin])
            plane.addTriangle(begin, previous[begin], point);
        link(begin, point);
        link(point, end);
    }

    PlaneTriangulation &plane;
    std::vector<Point> next, previous; ///< around the hull, counter-clockwise
    std::vector<Point> order;          ///< points from left to right
};

PlaneTriangulation::PlaneTriangulation(std::vector<PlanePoint> distinctPoints) : points(std::move(distinctPoints))
{
    constexpr std::int32_t beyond = 2 * largestCoordinate;
    points.insert(points.end(), {{-beyond, -beyond}, {beyond, -beyond}, {beyond, beyond}, {-beyond, beyond}});
    neighbours.resize(points.size(), none);
    apexes.reserve(6 * points.size());
    Sweep(*this).run();
    refine();
}

std::int64_t PlaneTriangulation::turn(Point a, Point b, Point c) const
{
    const PlanePoint &p = points[a], &q = points[b], &r = points[c];
    return std::int64_t(q.x - p.x) * (r.y - p.y) - std::int64_t(q.y - p.y) * (r.x - p.x);
}

PlaneTriangulation::Point PlaneTriangulation::getApex(Point from, Point to) const
{
    const auto found = apexes.find(key(from, to));
    return found == apexes.end() ? none : found->second;
}

int PlaneTriangulation::getStep(Point from, Point to) const
{
    const auto found = steps.find(key(std::min(from, to), std::max(from, to)));
    const int upwards = found == steps.end() ? 0 : found->second;
    return from < to ? upwards : -upwards;
}

bool PlaneTriangulation::isDemanded(Point from, Point to) const
{
    return steps.count(key(std::min(from, to), std::max(from, to))) > 0;
}

void PlaneTriangulation::addTriangle(Point a, Point b, Point c)
{
    const Point corners[] = {a, b, c, a, b};
    for (int i = 0; i < 3; ++i)
    {
        apexes[key(corners[i], corners[i + 1])] = corners[i + 2];
        neighbours[corners[i]] = corners[i + 1];
        edges.push_back({corners[i], corners[i + 1]});
    }
}

/// Replaces an edge between two triangles by the other diagonal of the two, which it returns.
PlaneTriangulation::Edge PlaneTriangulation::flip(const Edge &edge)
{
    const auto [a, b] = edge;
    const Point left = getApex(a, b), right = getApex(b, a);
    apexes.erase(key(a, b));
    apexes.erase(key(b, a));
    addTriangle(a, right, left);
    addTriangle(right, b, left);
    return {left, right};
}

bool PlaneTriangulation::isConvexAround(const Edge &edge) const
{
    const Point left = getApex(edge.from, edge.to), right = getApex(edge.to, edge.from);
    return turn(left, edge.from, right) > 0 && turn(right, edge.to, left) > 0;
}

/// Whether an edge has its ends on both sides of the line between two points.
bool PlaneTriangulation::isCrossed(const Edge &edge, Point from, Point to) const
{
    const std::int64_t first = turn(from, to, edge.from), second = turn(from, to, edge.to);
    return (first < 0 && second > 0) || (first > 0 && second < 0);
}

bool PlaneTriangulation::isInCircle(Point a, Point b, Point c, Point other) const
{
    const PlanePoint &centre = points[other];
    std::int64_t x[3], y[3];
    WideInt square[3];
    const Point corners[] = {a, b, c};
    for (int i = 0; i < 3; ++i)
    {
        x[i] = points[corners[i]].x - centre.x;
        y[i] = points[corners[i]].y - centre.y;
        square[i] = x[i] * x[i] + y[i] * y[i];
    }
    return square[0] * (x[1] * y[2] - x[2] * y[1]) + square[1] * (x[2] * y[0] - x[0] * y[2]) +
               square[2] * (x[0] * y[1] - x[1] * y[0]) >
           0;
}

void PlaneTriangulation::refine()
{
    std::vector<Edge> open = std::exchange(edges, {});
    while (!open.empty())
    {
        const Edge edge = open.back();
        open.pop_back();
        const Point left = getApex(edge.from, edge.to), right = getApex(edge.to, edge.from);
        if (left == none || right == none || isDemanded(edge.from, edge.to) ||
            !isInCircle(edge.from, edge.to, left, right))
            continue;
        flip(edge);
        open.insert(open.end(), {{edge.from, right}, {right, edge.to}, {edge.to, left}, {left, edge.from}});
    }
    edges.clear();
}

bool PlaneTriangulation::demand(Point from, Point to, std::vector<Point> &way)
{
    std::vector<Edge> crossed;
    while (from != to)
    {
        crossed.clear();
        const Point reached = stepTowards(from, to, crossed);
        if (reached == none)
            return false;
        clearWay(from, reached, crossed);
        record(from, reached);
        way.push_back(reached);
        from = reached;
    }
    return true;
}

/// Finds the first point on the line from one point to another and the edges crossed on the way to it; `none` when
/// one of them was demanded.
PlaneTriangulation::Point PlaneTriangulation::stepTowards(Point from, Point to, std::vector<Edge> &crossed) const
{
    // The triangle around `from` through which the line leaves: right of the line at one corner, left at the other.
    Point right = neighbours[from], left = getApex(from, right);
    while (!(turn(from, to, right) <= 0 && turn(from, to, left) > 0))
    {
        right = left;
        left = getApex(from, right);
    }
    if (turn(from, to, right) == 0)
        return right;
    for (;;)
    {
        if (isDemanded(right, left))
            return none;
        crossed.push_back({right, left});
        const Point across = getApex(left, right);
        const std::int64_t side = turn(from, to, across);
        if (side == 0)
            return across;
        (side > 0 ? left : right) = across;
    }
}

/// Flips the crossed edges until the edge between the two points exists.
void PlaneTriangulation::clearWay(Point from, Point to, std::vector<Edge> &crossed)
{
    std::deque<Edge> open(crossed.begin(), crossed.end());
    while (!open.empty())
    {
        Edge edge = open.front();
        open.pop_front();
        if (isConvexAround(edge))
            edge = flip(edge);
        if (isCrossed(edge, from, to))
            open.push_back(edge);
    }
}

void PlaneTriangulation::record(Point from, Point to)
{
    steps[key(std::min(from, to), std::max(from, to))] += from < to ? 1 : -1;
}
