// PlaneTriangulation: triangles between points of a plane, with edges that may be demanded.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

/// A point of the triangulated plane, on whole numbers so that every decision about it is exact.
struct PlanePoint
{
    std::int32_t x, y; ///< at most PlaneTriangulation::largestCoordinate either side of 0

    friend bool operator==(const PlanePoint &, const PlanePoint &) = default;
};

/// Constrained Delaunay triangulation of distinct points.
///
/// Four corners of its own surround the points and follow them in number, so that every given point has triangles all
/// around. Triangles are counter-clockwise here; edges are pairs of point numbers.
class PlaneTriangulation
{
public:
    typedef std::uint32_t Point;

    static constexpr std::int32_t largestCoordinate = 1 << 22;

    /// Triangulates the points. No two may be equal.
    /// @cost n log n as a rule, the square in the worst case
    explicit PlaneTriangulation(std::vector<PlanePoint> distinctPoints);

    /// Demands edges along the line from one point to another, through the points that lie on it.
    /// @param way  receives the points after `from`, the last is `to`
    /// @return false when the line crosses an edge demanded before; the triangulation is then unusable
    bool demand(Point from, Point to, std::vector<Point> &way);

    /// Makes the triangles as even as the demanded edges allow.
    void refine();

    /// Third point of the triangle to the left of an edge; `none` outside the corners.
    Point getApex(Point from, Point to) const;
    /// Demands of an edge in this direction, less those in the other.
    int getStep(Point from, Point to) const;
    /// Number of the first of the four corners.
    Point getFirstCorner() const { return static_cast<Point>(points.size() - 4); }
    /// A point to whose left, seen from a given point, there is a triangle.
    Point getNeighbour(Point point) const { return neighbours[point]; }

    /// Twice the signed area of a triangle of points; above 0 when they run counter-clockwise.
    std::int64_t turn(Point a, Point b, Point c) const;

    static constexpr Point none = ~Point(0);

private:
    /// An edge by the numbers of its ends.
    struct Edge
    {
        Point from, to;
    };
    class Sweep;

    static std::uint64_t key(Point from, Point to) { return std::uint64_t(from) << 32 | to; }
    void addTriangle(Point a, Point b, Point c);
    Edge flip(const Edge &edge);
    bool isDemanded(Point from, Point to) const;
    bool isConvexAround(const Edge &edge) const;
    bool isCrossed(const Edge &edge, Point from, Point to) const;
    bool isInCircle(Point a, Point b, Point c, Point other) const;
    Point stepTowards(Point from, Point to, std::vector<Edge> &crossed) const;
    void clearWay(Point from, Point to, std::vector<Edge> &crossed);
    void record(Point from, Point to);

    std::vector<PlanePoint> points;
    std::vector<Point> neighbours;                   ///< by point
    std::vector<Edge> edges;                         ///< those that may be uneven, oldest first
    std::unordered_map<std::uint64_t, Point> apexes; ///< by directed edge
    std::unordered_map<std::uint64_t, int> steps;    ///< of demanded edges, by edge from the lower to the higher point
};
