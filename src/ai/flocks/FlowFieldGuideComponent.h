// FlowFieldGuideComponent: lays flows through a map that lead everything to one place.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <cstdint>
#include <utility>
#include <vector>

class SquareGrid;
class TransformComponent;

/// Fills a map's field of flows with directions that lead around walls to a target, under the component key
/// "flowInfluence".
///
/// Metres, seconds. What has a `FlowFieldMovementComponent` then streams there through doorways: a crowd, smoke that is
/// drawn to a flue. The way is found over the map's path grid: cells that cannot be walked on are gone around, and
/// cells beside them avoided. Laid anew, once an interval, where the target or the path grid has changed; the cells
/// that it no longer reaches become still. A map has one field: where two guides reach, the later one leads.
class FlowFieldGuideComponent : public SimpleComponent
{
    KV_REFLECTED(FlowFieldGuideComponent)
public:
    FlowFieldGuideComponent() = default;

    /// Stills the cells that it has laid.
    void onMurder() override;
    /// Draws the flows that it has laid, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    void doFrame() override;

    /// Lays the flows now, whatever has changed.
    /// @return count of the cells that lead to the target; 0 without a map or fields, or with a target off the grid
    int lay();
    /// Metres of the way to the target from a place, as flows lead; infinite from where none leads there.
    float getWayFrom(Vec4 place);

    /// Where the flows lead to.
    Vec4 getTarget() const { return target; }
    void setTarget(Vec4 val);
    /// Distance from the target within which nothing flows, metres.
    float getTargetRadius() const { return targetRadius; }
    void setTargetRadius(float val);
    /// How long a way is that flows still lead, metres; 0 for any.
    float getReach() const { return reach; }
    void setReach(float val);
    /// Seconds between two looks at what has changed.
    float getInterval() const { return interval; }
    void setInterval(float val);

private:
    /// A map's grids that a guide works on.
    struct Fields
    {
        SquareGrid *ways = nullptr;  ///< what can be walked on
        SquareGrid *flows = nullptr; ///< null without either of them, and where their cells differ

        explicit operator bool() const { return flows != nullptr; }
    };

    Fields findFields();
    bool noteWalkable(const SquareGrid &ways);
    void flood(int startX, int startZ, float cellSize);
    void spread(int x, int z, float cellSize);
    Vec4 directionAt(int x, int z) const;
    bool isCell(int x, int z) const { return x >= 0 && x < cols && z >= 0 && z < rows; }
    bool isOpen(int x, int z) const { return isCell(x, z) && costs[index(x, z)] > 0.f; }
    std::size_t index(int x, int z) const
    {
        return static_cast<std::size_t>(cols) * static_cast<std::size_t>(z) + static_cast<std::size_t>(x);
    }
    int writeFlows(SquareGrid &flows, const Vec4 &end);

    Vec4 target = Vec4(0.f, 0.f, 0.f, 1.f);
    float targetRadius = 1.f;
    float reach = 0.f;
    float interval = 1.f;

    Handle<SquareGrid> hFlows; ///< where the flows are laid
    Seconds sinceLook = 0;
    bool changed = true; ///< the settings, since the flows were laid
    bool missingTold = false;
    int cols = 0;
    int rows = 0;
    std::vector<float> costs;                         ///< of a step in each cell; 0 for one that cannot be walked on
    std::vector<float> ways;                          ///< metres to the target from each cell
    std::vector<std::pair<float, std::int32_t>> open; ///< heap of the flood: way and cell
    std::vector<bool> laid;                           ///< cells that hold a flow of this guide
};
