// SquareGrid: a regular grid of values over the x/z plane of an entity's transform.
#pragma once

#include "physics/grid/GridCell.h"

#include "engine/entities/AbstractComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class TransformComponent;

/// Lays one `Vec4` a cell over its entity's transform, under the component key "grid".
///
/// Serves as height field, vector field and colour field; below a map it is found by a path such as
/// ".MapData_mainPathGrid/grid". The transform's position and orientation place the grid, its scale is the grid's
/// extent in metres; "world" coordinates are in the space in which that transform holds its numbers. Column x and row z
/// count from 0 at the near corner, and the centre of cell (cols/2, rows/2), halves rounded down, stands on the
/// transform's origin. Owns its values and gives them no meaning beyond how they are drawn for developers.
class SquareGrid : public AbstractComponent
{
    KV_REFLECTED(SquareGrid)
public:
    /// The eight cells around a cell, counterclockwise seen with z down.
    enum Neighbor : int
    {
        RIGHT = 0,      ///< x + 1
        UP_RIGHT = 1,   ///< x + 1, z - 1
        UP = 2,         ///< z - 1
        UP_LEFT = 3,    ///< x - 1, z - 1
        LEFT = 4,       ///< x - 1
        DOWN_LEFT = 5,  ///< x - 1, z + 1
        DOWN = 6,       ///< z + 1
        DOWN_RIGHT = 7, ///< x + 1, z + 1
        NUM_NEIGHBORS = 8
    };

    /// What the values stand for; it chooses how they are drawn for developers.
    enum ValueRepresentation : int
    {
        HEIGHTFIELD = 0, ///< the first component, from 0 to 1
        VECTORFIELD = 1, ///< a direction, of which x and z are shown
        COLORFIELD = 2   ///< a colour
    };

    typedef std::vector<Vec4> ValueList;

    /// The most cells that a grid may have.
    static constexpr int MOST_CELLS = 1 << 22;
    /// The most cells that are drawn in a frame.
    static constexpr int MOST_DRAWN_CELLS = 1 << 14;
    static constexpr std::size_t VALUE_COMPONENTS = 4;

    SquareGrid() = default;

    /// Makes the cells.
    void onLoadComplete() override;
    /// Fills each cell between the two debug colours by its value; only while the debug switches ask for it.
    ///
    /// A height field by its first component, from 0 to 1; a vector field with arrows, by their length; a colour field
    /// with the values themselves. A colour whose alpha is 0 and a value that is no number draw nothing. A grid of more
    /// than MOST_DRAWN_CELLS shows every second row and column, or fewer.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Makes the cells anew for the transform's scale and the cell size; cells that both sizes have keep their values.
    ///
    /// A partial row or column is dropped; a scale below the cell size gives a grid without cells, which is logged as a
    /// warning. A scale that is negative, no number or gives more than MOST_CELLS is logged as an error and changes
    /// nothing.
    void updateSize();
    /// Sets the edge of a cell, metres: where cells stand at once, how many there are with the next `updateSize`.
    ///
    /// What is no positive number is logged as an error and changes nothing.
    void setCellSize(float value);
    /// Stores a cell's value; nothing happens outside the grid.
    void setCellValue(int x, int z, const Vec4 &value);
    /// Stores the first component of a cell's value; nothing happens outside the grid.
    void setCellFloatValue(int x, int z, float value);
    /// Stores one component of a cell's value; nothing happens outside the grid or for an idx above 3.
    void setCellFloatValue(int x, int z, std::size_t idx, float value);
    /// Sets the colour in which the value 0 is drawn.
    void setDebugColor0(Vec4 value) { debugColor0 = value; }
    /// Sets the colour in which the value 1 is drawn.
    void setDebugColor1(Vec4 value) { debugColor1 = value; }
    /// Sets what the values are drawn as.
    void setValueRepresentation(ValueRepresentation value) { valueRepresentation = value; }

    /// Count of cells along z.
    int getGridRows() const { return rows; }
    /// Count of cells along x.
    int getGridCols() const { return cols; }
    /// Edge of a square cell, metres.
    float getCellSize() const { return cellSize; }
    /// The colour in which the value 0 is drawn.
    Vec4 getDebugColor0() const { return debugColor0; }
    /// The colour in which the value 1 is drawn.
    Vec4 getDebugColor1() const { return debugColor1; }
    /// What the values are drawn as.
    ValueRepresentation getValueRepresentation() const { return valueRepresentation; }

    /// The cell under a point, seen from above.
    ///
    /// A point outside gives a cell that is not valid, except that half a cell beyond the near edges counts as inside:
    /// fractions are cut towards 0. Coordinates that are no numbers give the cell (-1, -1). Test `isValid` first where
    /// the point may lie outside.
    /// @param flags  of TransformComponent, for the way from the point's space to the grid's
    GridCell getCellFromPoint(Vec4 coords, unsigned flags = 0);
    /// returns the location of the center of this grid cell.
    ///
    /// Fractions and cells outside the grid are allowed.
    Vec4 getCellWorldCoords(float x, float z);
    /// Centre of a cell, which may lie outside the grid.
    Vec4 getCellWorldCoords(int x, int z);
    /// Centre of a cell relative to the transform, at height 0 and with w 1; fractions are allowed.
    Vec4 getCellModelCoords(float x, float z) const;
    /// Centre of a cell by a matrix of `getTransformationMatrix`, for whoever asks for many.
    Vec4 calcCellWorldCoords(const Matrix4 &txfrmMat, float x, float z) const;
    /// The transform's matrix without its scale; a grid without a transform is an assertion and gives the identity.
    Matrix4 getTransformationMatrix(unsigned flags);

    /// Names a cell, whether the grid has it or not.
    GridCell getCell(int x, int z) const;
    /// Names the cell beside a cell, whether the grid has it or not; another `i` is an assertion and gives no cell.
    GridCell getCellNeighbor(int x, int z, Neighbor i) const;
    /// The cells around a cell that the grid has, in the order of `Neighbor`.
    HexCont getCellValidNeighbors(int x, int z) const;
    /// A cell's value; the zero vector outside the grid.
    Vec4 getCellValue(int x, int z) const;
    /// One component of a cell's value; a quiet NaN outside the grid and for an idx above 3.
    float getCellFloatValue(int x, int z, std::size_t idx = 0) const;
    /// A cell's value to read and write at once, good until the next `updateSize`.
    ///
    /// It counts as changed now: who writes later asks again. Outside the grid a zero vector that nobody keeps.
    Vec4 &getCellRef(int x, int z);
    /// The values of a row that the grid has, in order of x; good until the next `updateSize`.
    const Vec4 *borrowRow(int z) const { return grid.data() + cellIndex(0, z); }
    /// Counts changes of values and of the size, for whoever keeps what follows from them.
    std::uint32_t getChangeCount() const { return changeCount; }
    /// What the count of changes was when a row changed last; 0 for a row that the grid has not.
    std::uint32_t getRowChange(int z) const { return z >= 0 && z < rows ? rowChanges[static_cast<std::size_t>(z)] : 0; }
    /// Whether the grid has the cell.
    bool isCellInBounds(int x, int z) const { return x >= 0 && x < cols && z >= 0 && z < rows; }

private:
    std::size_t cellIndex(int x, int z) const
    {
        return static_cast<std::size_t>(cols) * static_cast<std::size_t>(z) + static_cast<std::size_t>(x);
    }
    void noteChange(int z);
    Handle<TransformComponent> findTransform();
    void resize(int newCols, int newRows);
    Vec4 debugColorOf(const Vec4 &value) const;
    void drawCell(DebugCollectorComponent &collector, const Matrix4 &toWorld, int x, int z) const;

    int rows = 0;
    int cols = 0;
    float cellSize = 1.f;                  ///< metres
    ValueList grid;                        ///< row by row: index = cols * z + x
    std::vector<std::uint32_t> rowChanges; ///< by row, the count of its last change
    std::uint32_t changeCount = 0;
    Vec4 debugColor0;                                      ///< of the value 0
    Vec4 debugColor1;                                      ///< of the value 1
    ValueRepresentation valueRepresentation = HEIGHTFIELD; ///< what the values are drawn as
};
