#include "tools/views/FloorSolids.h"

#include "ai/paths/DoorState.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/bodies/Footing.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "rendering/drawn/HeightMapGraphics.h"
#include "rendering/drawn/ModelGraphicsComponent2.h"
#include "rendering/drawn/WorldBasedTCBoxGraphicsComponent.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{

constexpr float UPRIGHT = 0.999f;  ///< cosine of a lean that is none
constexpr float GIVE = 0.03f;      ///< metres that a floor may be uneven by
constexpr float NEAR_FLOOR = 0.1f; ///< metres between a floor that is drawn and the one that is stood on
constexpr float MOST_BINS = 500.f; ///< along x and z; what stands beyond shares the last ones

CellRect wholeOf(const PartitioningGrid &grid)
{
    return CellRect{0, 0, grid.getColumns() - 1, grid.getRows() - 1};
}

/// How far a box reaches from its middle along x, y and z.
Vec4 reachOf(const OrientedBox &box)
{
    Vec4 reach;
    for (int side = 0; side < 3; ++side)
        for (int axis = 0; axis < 3; ++axis)
            reach[side] += std::fabs(box.axes[axis][side] * box.half[axis]);
    return reach;
}

bool isUpright(const OrientedBox &box)
{
    return std::any_of(std::begin(box.axes), std::end(box.axes),
                       [](const Vec4 &axis) { return std::fabs(axis.y) > UPRIGHT; });
}

/// Whether one stands on a box: none of its faces is level enough where it is tilted far.
bool isGround(const OrientedBox &box)
{
    return std::any_of(std::begin(box.axes), std::end(box.axes),
                       [](const Vec4 &axis) { return std::fabs(axis.y) >= Footing::STEEPEST; });
}

bool isDrawnThing(const Handle<Object> &entity)
{
    return componentOf<ModelGraphicsComponent2>(entity, ComponentKeys::graphics2) ||
           componentOf<WorldBasedTCBoxGraphicsComponent>(entity, ComponentKeys::graphics2) ||
           componentOf<HeightMapGraphics>(entity, ComponentKeys::graphics2);
}

} // namespace

void FloorSolids::clear()
{
    *this = FloorSolids();
}

void FloorSolids::read(PartitioningGrid &grid)
{
    clear();
    std::vector<Handle<BoundingVolume>> found;
    grid.forEachVolume(wholeOf(grid), [&](const Handle<BoundingVolume> &volume) { found.push_back(volume); });
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    for (const Handle<BoundingVolume> &handle : found)
        if (const auto volume = handle.lookup())
            take(*volume);
    Vec4 least, greatest;
    if (!findExtent(least, greatest))
        return;
    west = least.x;
    south = least.z;
    columns = static_cast<int>(std::min(greatest.x - least.x, MOST_BINS)) + 1;
    rows = static_cast<int>(std::min(greatest.z - least.z, MOST_BINS)) + 1;
    solidsNear.resize(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    drawnNear.resize(solidsNear.size());
    for (std::size_t number = 0; number < solids.size(); ++number)
        enter(solidsNear, solids[number].box, static_cast<std::int32_t>(number));
    for (std::size_t number = 0; number < drawn.size(); ++number)
        enter(drawnNear, drawn[number], static_cast<std::int32_t>(number));
}

/// Takes a volume over as what it is to who walks: a wall or floor, a leaf, something to look at, or nothing.
void FloorSolids::take(BoundingVolume &volume)
{
    const TransformComponent *const transform = volume.findTransform();
    if (!transform || volume.isDying() || volume.getIsPartitioningDummy())
        return;
    const OrientedBox box(transform->getOrientation().generateRotation(), transform->getPosition(), volume.getHitBox());
    if (!isFinite(box.centre) || !isFinite(box.half) || !isFinite(transform->getOrientation()))
        return;
    if (isDrawnThing(volume.getParent()))
        drawn.push_back(box);
    const VolumeTraits &traits = VolumeTraits::of(volume);
    PhysicsComponent *const body = volume.findPhysics();
    if (!traits.isSolid || traits.isPlayer || volume.getTrigger() || !body || body->getInverseMass() != 0.f)
        return;
    const DoorState door(*body);
    if (door)
        doors.push_back(Door{handle_cast<Entity>(volume.getParent()),
                             OrientedBox(door.closedTurn.generateRotation(), door.closedMiddle, volume.getHitBox()),
                             door.isLocked && !door.isOpen});
    else
        solids.push_back(Solid{box, isUpright(box)});
}

bool FloorSolids::findExtent(Vec4 &least, Vec4 &greatest) const
{
    constexpr float FAR = std::numeric_limits<float>::max();
    least = Vec4(FAR, 0.f, FAR, 1.f);
    greatest = Vec4(-FAR, 0.f, -FAR, 1.f);
    const auto widen = [&](const OrientedBox &box)
    {
        const Vec4 reach = reachOf(box);
        for (const int side : {0, 2})
        {
            least[side] = std::min(least[side], box.centre[side] - reach[side]);
            greatest[side] = std::max(greatest[side], box.centre[side] + reach[side]);
        }
    };
    for (const Solid &solid : solids)
        widen(solid.box);
    for (const OrientedBox &box : drawn)
        widen(box);
    return !solids.empty() || !drawn.empty();
}

void FloorSolids::enter(Bins &bins, const OrientedBox &box, std::int32_t number)
{
    const Vec4 reach = reachOf(box);
    const auto bin = [](float metres, int count)
    { return std::clamp(static_cast<int>(std::floor(metres)), 0, count - 1); };
    const int lastX = bin(box.centre.x + reach.x + BODY - west, columns);
    const int lastZ = bin(box.centre.z + reach.z + BODY - south, rows);
    for (int z = bin(box.centre.z - reach.z - BODY - south, rows); z <= lastZ; ++z)
        for (int x = bin(box.centre.x - reach.x - BODY - west, columns); x <= lastX; ++x)
            bins[static_cast<std::size_t>(z) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(x)]
                .push_back(number);
}

const std::vector<std::int32_t> &FloorSolids::near(const Bins &bins, float x, float z) const
{
    static const std::vector<std::int32_t> NOTHING;
    if (bins.empty())
        return NOTHING;
    const int column = std::clamp(static_cast<int>(x - west), 0, columns - 1);
    const int row = std::clamp(static_cast<int>(z - south), 0, rows - 1);
    return bins[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column)];
}

/// What of a box a plumb line meets; with a margin the box is so much wider, but no higher.
bool FloorSolids::findSpan(const OrientedBox &box, float x, float z, float margin, Span &span)
{
    span = Span{-std::numeric_limits<float>::max(), std::numeric_limits<float>::max()};
    for (int axis = 0; axis < 3; ++axis)
    {
        const Vec4 &along = box.axes[axis];
        const float off = along.x * (x - box.centre.x) + along.z * (z - box.centre.z);
        const float half = box.half[axis] + (std::fabs(along.y) > UPRIGHT ? 0.f : margin);
        if (std::fabs(along.y) < 1e-4f)
        {
            if (std::fabs(off) > half)
                return false;
            continue;
        }
        const float one = box.centre.y + (-half - off) / along.y, other = box.centre.y + (half - off) / along.y;
        span.low = std::max(span.low, std::min(one, other));
        span.high = std::min(span.high, std::max(one, other));
    }
    return span.low < span.high;
}

bool FloorSolids::isFree(float x, float z, float height) const
{
    const auto isInTheWay = [&](std::int32_t number)
    {
        const Solid &solid = solids[static_cast<std::size_t>(number)];
        Span span;
        if (findSpan(solid.box, x, z, 0.f, span) && span.low < height + STOOP && span.high > height + GIVE)
            return true;
        return solid.isUpright && findSpan(solid.box, x, z, BODY, span) && span.low < height + STOOP &&
               span.high > height + STEP;
    };
    const auto &around = near(solidsNear, x, z);
    return std::none_of(around.begin(), around.end(), isInTheWay);
}

void FloorSolids::findStanding(float x, float z, std::vector<float> &heights) const
{
    const auto begin = static_cast<std::ptrdiff_t>(heights.size());
    heights.push_back(0.f); // nothing falls below that
    for (const std::int32_t number : near(solidsNear, x, z))
    {
        const OrientedBox &box = solids[static_cast<std::size_t>(number)].box;
        Span span;
        if (isGround(box) && findSpan(box, x, z, 0.f, span) && span.high > 0.f)
            heights.push_back(span.high);
    }
    std::sort(heights.begin() + begin, heights.end());
    const auto isSame = [](float one, float other) { return other - one < GIVE; };
    heights.erase(std::unique(heights.begin() + begin, heights.end(), isSame), heights.end());
    const auto isFilled = [&](float height) { return !isFree(x, z, height); };
    heights.erase(std::remove_if(heights.begin() + begin, heights.end(), isFilled), heights.end());
}

bool FloorSolids::isDrawn(const Vec4 &place) const
{
    const auto &around = near(drawnNear, place.x, place.z);
    return std::any_of(around.begin(), around.end(),
                       [&](std::int32_t number)
                       {
                           Span span;
                           if (!findSpan(drawn[static_cast<std::size_t>(number)], place.x, place.z, 0.f, span))
                               return false;
                           const auto isHere = [&](float height) { return std::fabs(height - place.y) < NEAR_FLOOR; };
                           // The box of a mesh has its origin in the middle: a floor may be there, or on its faces.
                           return isHere(span.high) || isHere(span.low) || isHere((span.low + span.high) / 2);
                       });
}

int FloorSolids::findDoor(const Vec4 &place, float metres) const
{
    for (std::size_t number = 0; number < doors.size(); ++number)
    {
        Span span;
        if (findSpan(doors[number].shut, place.x, place.z, metres, span) && span.low < place.y + STOOP &&
            span.high > place.y + STEP)
            return static_cast<int>(number);
    }
    return -1;
}

Handle<Entity> FloorSolids::getDoor(int door) const
{
    return door >= 0 && door < getDoorCount() ? doors[static_cast<std::size_t>(door)].leaf : Handle<Entity>();
}

bool FloorSolids::isLocked(int door) const
{
    return door >= 0 && door < getDoorCount() && doors[static_cast<std::size_t>(door)].isLocked;
}
