// PartitioningGrid: its cells and the contacts it found, for developers.
#include "physics/grid/PartitioningGrid.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/bodies/RigidCollision.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/transforms/TransformComponent.h"

namespace
{

/// Length of the arrow along a contact's normal, metres: to be seen beside a crate, and not to hide it.
constexpr float ARROW_LENGTH = 0.3f;
constexpr float ARROW_HEAD = 0.06f; ///< metres
/// From this many cells on only those with volumes are drawn: millions of lines would stop the game.
constexpr std::int64_t MOST_EMPTY_CELLS = 4096;
constexpr float POINT_CROSS = 0.03f; ///< half length of the cross at a contact's point, metres

bool wants(bool switchOfThis)
{
    return getSystemDeref<GlobalConfigSystem>().getDebugDrawEnabled() && switchOfThis;
}

/// Where a contact lies on its first volume's surface. Contacts of balls keep a mirrored place, which nobody could
/// recognise.
Vec4 placeOf(const RigidCollision &contact)
{
    const auto first = contact.volumes[0].lookup();
    if (!first || VolumeTraits::of(*first).shape != VolumeTraits::BALL)
        return contact.contactPos;
    const auto transform = handle_cast<TransformComponent>(first->getSibling(ComponentKeys::transform)).lookup();
    return transform ? transform->getPosition() - contact.contactNormal * (0.5f * first->getHitBox().x)
                     : contact.contactPos;
}

} // namespace

/// Keeps what was just found for the drawing at the end of the frame: the contacts themselves are freed before that.
void PartitioningGrid::noteContacts()
{
    drawnContacts.clear();
    if (!wants(getSystemDeref<GlobalConfigSystem>().getDebugDrawContacts()))
        return;
    for (const Collision *collision : collisions)
        if (const auto *contact = dynamic_cast<const RigidCollision *>(collision))
            drawnContacts.push_back({placeOf(*contact), contact->contactNormal, contact->penetration});
}

void PartitioningGrid::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector)
        return;
    if (wants(config.getDebugDrawPartitioningGrid()))
        drawCells(*collector);
    if (wants(config.getDebugDrawContacts()))
        drawContacts(*collector);
}

void PartitioningGrid::drawCells(DebugCollectorComponent &collector)
{
    const Vec4 lineColor(0.3f, 0.6f, 0.9f, 1.f), textColor(1.f, 1.f, 1.f, 1.f);
    const float half = cellSize * 0.5f;
    const bool isVast = std::int64_t(rows) * columns > MOST_EMPTY_CELLS;
    for (int z = 0; z < rows; ++z)
    {
        for (int x = 0; x < columns; ++x)
        {
            const Vec4 centre = calcCellWorldCoords(static_cast<unsigned>(x), static_cast<unsigned>(z));
            const int moving = static_cast<int>(getGridCellList(x, z).size());
            const int fixed = static_cast<int>(getStaticGridCellList(x, z).size());
            if (isVast && moving + fixed == 0)
                continue;
            const Vec4 corner = centre - Vec4(half, 0.f, half, 0.f);
            // Each cell draws its near edges; the last ones draw the far edges of the grid too.
            collector.addLine3D(corner, corner + Vec4(cellSize, 0.f, 0.f, 0.f), lineColor);
            collector.addLine3D(corner, corner + Vec4(0.f, 0.f, cellSize, 0.f), lineColor);
            const Vec4 farCorner = centre + Vec4(half, 0.f, half, 0.f);
            if (z + 1 == rows)
                collector.addLine3D(farCorner, farCorner - Vec4(cellSize, 0.f, 0.f, 0.f), lineColor);
            if (x + 1 == columns)
                collector.addLine3D(farCorner, farCorner - Vec4(0.f, 0.f, cellSize, 0.f), lineColor);
            collector.addText3D(centre, String::format("%d %d\n", moving, fixed), textColor);
        }
    }
}

/// For each contact a cross at its point, an arrow along its normal, and a red line as long as it is deep.
///
/// The point of two boxes is a corner of the one that sinks into a face of the other: where a crate stands on a slab,
/// that may be a corner of the slab, far off.
void PartitioningGrid::drawContacts(DebugCollectorComponent &collector) const
{
    const Vec4 pointColor(1.f, 1.f, 1.f, 1.f), normalColor(1.f, 0.6f, 0.1f, 1.f), depthColor(1.f, 0.1f, 0.1f, 1.f);
    for (const DrawnContact &contact : drawnContacts)
    {
        const Vec4 &point = contact.position, &normal = contact.normal;
        for (int axis = 0; axis < 3; ++axis)
        {
            Vec4 arm;
            arm[axis] = POINT_CROSS;
            collector.addLine3D(point - arm, point + arm, pointColor);
        }
        const Vec4 tip = point + normal * ARROW_LENGTH;
        const Vec4 aside = std::fabs(normal.y) > 0.9f ? Vec4(1.f, 0.f, 0.f, 0.f) : Vec4(0.f, 1.f, 0.f, 0.f);
        collector.addLine3D(point, tip, normalColor);
        for (const float side : {-ARROW_HEAD, ARROW_HEAD})
            collector.addLine3D(tip, tip - normal * ARROW_HEAD + aside * side, normalColor);
        collector.addLine3D(point, point - normal * contact.depth, depthColor);
        collector.addText3D(tip, String::format("%.3f", static_cast<double>(contact.depth)), normalColor);
    }
}
