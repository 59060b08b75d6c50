// PartitioningGrid: which cells a triangle touches, seen from above.
#include "physics/grid/PartitioningGrid.h"

namespace
{

int floorCell(double coordinate)
{
    return toCell(std::floor(coordinate));
}

int ceilCell(double coordinate)
{
    return toCell(std::ceil(coordinate));
}

/// The corners by ascending z, and on which side of the edge from the lowest to the highest the middle one lies.
struct SortedTriangle
{
    Vec4 low, middle, high;
    bool middleIsLeft = false;

    /// Points in cell coordinates, wound as `rasterizeTriangle` wants them: the side follows from the order.
    explicit SortedTriangle(const Vec4 (&p)[3])
    {
        const auto set = [this](const Vec4 &a, const Vec4 &b, const Vec4 &c, bool left)
        {
            low = a;
            middle = b;
            high = c;
            middleIsLeft = left;
        };
        if (p[1].z > p[0].z)
        {
            if (p[2].z > p[1].z)
                set(p[0], p[1], p[2], true);
            else if (p[0].z > p[2].z)
                set(p[2], p[0], p[1], true);
            else
                set(p[0], p[2], p[1], false);
        }
        else if (p[2].z > p[1].z)
        {
            if (p[0].z > p[2].z)
                set(p[1], p[2], p[0], true);
            else
                set(p[1], p[0], p[2], false);
        }
        else
            set(p[2], p[1], p[0], false);
    }

    /// x at the middle corner's height on the edge opposite to it; a triangle without height is all at its base.
    float xOppositeMiddle() const
    {
        if (high.z == low.z)
            return middleIsLeft ? std::max(low.x, high.x) : std::min(low.x, high.x);
        return (high.x - low.x) / (high.z - low.z) * (middle.z - low.z) + low.x;
    }
};

/// Least and greatest x of a triangle within one row of cells; false if it does not reach the row.
bool spanInRow(const Vec4 (&triangle)[3], int row, double &least, double &greatest)
{
    least = FARTHEST_CELL;
    greatest = -FARTHEST_CELL;
    const auto include = [&](double x)
    {
        least = std::min(least, x);
        greatest = std::max(greatest, x);
    };
    const double bottom = row, top = row + 1.0;
    for (int i = 0; i < 3; ++i)
    {
        const Vec4 &from = triangle[i], &to = triangle[(i + 1) % 3];
        if (from.z >= bottom && from.z <= top)
            include(from.x);
        for (const double border : {bottom, top})
            if ((from.z < border) != (to.z < border))
                include(from.x + (border - from.z) / (static_cast<double>(to.z) - from.z) *
                                     (static_cast<double>(to.x) - from.x));
    }
    return least <= greatest;
}

} // namespace

PartitioningGrid::GridCellAddressList PartitioningGrid::rasterizeTriangle(Vec4 p1, Vec4 p2, Vec4 p3,
                                                                          RequestHandle request)
{
    GridCellAddressList cells;
    rasterizeTriangle(p1, p2, p3, cells, request);
    return cells;
}

void PartitioningGrid::rasterizeTriangle(Vec4 p1, Vec4 p2, Vec4 p3, GridCellAddressList &outList, RequestHandle request)
{
    const Vec4 p[3] = {getCellCoords(p1), getCellCoords(p2), getCellCoords(p3)};
    for (const Vec4 &point : p)
        if (!std::isfinite(point.x) || !std::isfinite(point.z))
            return;
    if ((p[1].z - p[0].z) * (p[2].x - p[0].x) - (p[2].z - p[0].z) * (p[1].x - p[0].x) < 0.f)
        return;
    const SortedTriangle sorted(p);
    const float opposite = sorted.xOppositeMiddle();
    const int left = floorCell(sorted.middleIsLeft ? sorted.middle.x : opposite);
    const int right = ceilCell(sorted.middleIsLeft ? opposite : sorted.middle.x);
    rasterizeTriangleHelper(p, toCell(sorted.low.x), floorCell(sorted.low.z) - 1, left - 1, right + 1,
                            ceilCell(sorted.middle.z), outList, request);
    rasterizeTriangleHelper(p, toCell(sorted.high.x), ceilCell(sorted.high.z) + 1, left - 1, right + 1,
                            floorCell(sorted.middle.z), outList, request);
}

/// Lists the cells of the part of a triangle between one corner and a flat base.
///
/// The two slanted edges stand one row off and give a margin, but fall short of a flat triangle's own span within a
/// row: that span always belongs to the cells.
void PartitioningGrid::rasterizeTriangleHelper(const Vec4 (&triangle)[3], int pointX, int pointZ, int baseXLeft,
                                               int baseXRight, int baseZ, GridCellAddressList &outList,
                                               RequestHandle request)
{
    if ((pointZ < 0 && baseZ < 0) || (pointZ >= rows && baseZ >= rows) || (pointX < 0 && baseXRight < 0) ||
        (pointX >= columns && baseXLeft >= columns))
        return;
    const int start = clamp(pointZ, 0, rows - 1), end = clamp(baseZ, 0, rows - 1);
    const int dz = baseZ - pointZ;
    const int step = dz < 0 ? -1 : 1;
    const double leftSlope = static_cast<double>(baseXLeft - pointX) / dz;
    const double rightSlope = static_cast<double>(baseXRight - pointX) / dz;
    for (int z = start; z != end + step; z += step)
    {
        const int offset = z - pointZ;
        int xl = floorCell(offset * leftSlope + pointX);
        int xr = ceilCell(offset * rightSlope + pointX);
        double least, greatest;
        if (spanInRow(triangle, z, least, greatest))
        {
            xl = std::min(xl, floorCell(least));
            xr = std::max(xr, floorCell(greatest));
        }
        xl = std::max(xl, 0);
        xr = std::min(xr, columns - 1);
        RequestHandle *const marks = lastRequestMarkings.data() + static_cast<std::ptrdiff_t>(columns) * z;
        for (int x = xl; x <= xr; ++x)
        {
            if (request != 0 && marks[x] == request)
                continue;
            outList.push_back(Vec4(static_cast<float>(x), 0.f, static_cast<float>(z), 1.f));
            marks[x] = request;
        }
    }
}
