// SquareGrid: its cells for developers.
#include "physics/grid/SquareGrid.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"

#include <cmath>

namespace
{

constexpr int FILL_LINES = 4;        ///< that fill a cell
constexpr float FILLED_PART = 0.8f;  ///< of a cell's edge, so that cells stand apart
constexpr float ARROW_REACH = 0.45f; ///< edges, from the centre to the tip of an arrow of length 1
constexpr float BARB = 0.3f;         ///< of an arrow's length
constexpr float LIFT = 0.02f;        ///< metres above the cells, so that a floor does not hide what lies on it

/// Takes places relative to a cell's centre, in edges of the cell, and draws them in the world.
struct CellPen
{
    DebugCollectorComponent &collector;
    Matrix4 toWorld;
    Vec4 centre;
    float cellSize; ///< metres
    Vec4 color;

    void line(float fromX, float fromZ, float toX, float toZ) const
    {
        collector.addLine3D(toWorld * (centre + Vec4(fromX, 0.f, fromZ, 0.f) * cellSize),
                            toWorld * (centre + Vec4(toX, 0.f, toZ, 0.f) * cellSize), color);
    }
    void fill() const
    {
        const float half = FILLED_PART * 0.5f;
        for (int i = 0; i < FILL_LINES; ++i)
        {
            const float z = half * (2.f * static_cast<float>(i) / (FILL_LINES - 1) - 1.f);
            line(-half, z, half, z);
        }
    }
    /// An arrow along x and z; one longer than 1 is drawn as 1.
    void arrow(float x, float z) const
    {
        const float length = std::hypot(x, z);
        if (length < EPSILON)
            return;
        const float reach = ARROW_REACH * saturate(length) / length;
        const float tipX = x * reach, tipZ = z * reach;
        line(0.f, 0.f, tipX, tipZ);
        for (const float side : {-BARB, BARB})
            line(tipX, tipZ, tipX * (1.f - BARB) - tipZ * side, tipZ * (1.f - BARB) + tipX * side);
    }
};

} // namespace

void SquareGrid::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawGridsEnabled())
        return;
    if (!findTransform().isValid())
        return;
    // By the transform's numbers as they stand, like what is drawn of a map's objects.
    const Matrix4 toWorld = getTransformationMatrix(0);
    int step = 1;
    while (((rows + step - 1) / step) * ((cols + step - 1) / step) > MOST_DRAWN_CELLS)
        ++step;
    for (int z = 0; z < rows; z += step)
        for (int x = 0; x < cols; x += step)
            drawCell(*collector, toWorld, x, z);
}

void SquareGrid::drawCell(DebugCollectorComponent &collector, const Matrix4 &toWorld, int x, int z) const
{
    const Vec4 &value = grid[cellIndex(x, z)];
    const Vec4 color = debugColorOf(value);
    if (!isFinite(value) || color.a == 0.f)
        return;
    const Vec4 centre = getCellModelCoords(static_cast<float>(x), static_cast<float>(z)) + Vec4(0.f, LIFT, 0.f, 0.f);
    const CellPen pen{collector, toWorld, centre, cellSize, color};
    if (valueRepresentation == VECTORFIELD)
        pen.arrow(value.x, value.z);
    else
        pen.fill();
}

Vec4 SquareGrid::debugColorOf(const Vec4 &value) const
{
    if (valueRepresentation == COLORFIELD)
        return value;
    const float amount = valueRepresentation == VECTORFIELD ? std::hypot(value.x, value.z) : value.x;
    return lerp(debugColor0, debugColor1, saturate(amount));
}
