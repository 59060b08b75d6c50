#include "physics/doors/PushProbe.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"
#include "physics/grid/CellRect.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/bodies/PhysicsComponent.h"

#include "engine/transforms/TransformComponent.h"

#include <algorithm>

namespace
{

constexpr float ROUNDING = 1e-5f; ///< metres
/// Metres that what is pushed may overlap at its foot and its head: a sill, a seam of the floor, the crate below.
constexpr float SILL = 0.05f;
/// Times that a body is pushed on and held back: what slips off sideways is less deep each time.
constexpr int MOST_PUSHES = 3;
constexpr float SLIPPING = 0.75f; ///< part of a depth that may be left then: slower is no slipping

/// A shape as a box whose faces are turned to another shape.
OrientedBox facing(const PushedShape &shape, const PushedShape &other)
{
    OrientedBox box = shape.box;
    if (shape.isBall && !other.isBall)
        std::copy(std::begin(other.box.axes), std::end(other.box.axes), std::begin(box.axes));
    else if (shape.isBall)
    {
        box.axes[0] = other.box.centre - box.centre;
        box.axes[1] =
            std::fabs(box.axes[0].y) < std::fabs(box.axes[0].x) ? Vec4(0.f, 1.f, 0.f, 0.f) : Vec4(1.f, 0.f, 0.f, 0.f);
        makeOrthonormal(box.axes[0], box.axes[1], box.axes[2]);
    }
    for (int i = 0; shape.isMovable && i < 3; ++i)
        box.half[i] = std::max(box.half[i] - SILL * std::fabs(box.axes[i].y), 0.5f * box.half[i]);
    return box;
}

/// The way on which a shape gets out of another one, as far as it stands deeper in it than it may; 0 where it does not.
Vec4 wayOut(const PushedShape &shape, const PushedShape &other, float allowed)
{
    const OrientedBox one = facing(other, shape), two = facing(shape, other);
    const Vec4 between = two.centre - one.centre;
    BoxOverlap overlap;
    if (between.magnitude() > one.half.magnitude() + two.half.magnitude() || !overlap.find(one, two))
        return Vec4();
    const float deeper = overlap.depth - allowed;
    return deeper > ROUNDING ? overlap.axis * std::copysign(deeper, overlap.axis.dot(between)) : Vec4();
}

float depthBetween(const PushedShape &shape, const PushedShape &other)
{
    return wayOut(shape, other, 0.f).magnitude();
}

/// Whether contacts stop bodies at a volume.
bool isSolid(BoundingVolume &volume)
{
    return VolumeTraits::of(volume).isSolid && volume.findPhysics();
}

} // namespace

PushedShape::PushedShape(BoundingVolume &volume)
    : isBall(VolumeTraits::of(volume).shape == VolumeTraits::BALL), isMovable(PushProbe::isMovable(volume))
{
    const TransformComponent *const place = volume.findTransform();
    if (!place)
        return;
    box = OrientedBox(place->getOrientation().generateRotation(), place->getPosition(), volume.getHitBox());
    for (int i = 0; i < 3; ++i)
        box.half[i] = std::fabs(isBall ? box.half.x : box.half[i]);
}

/// A body that is pushed, and who pushed those before it.
struct PushProbe::Pushed
{
    const BoundingVolume &volume;
    const PushedShape shape;
    const Pushed *const pusher;

    bool isPushedBy(const BoundingVolume &other) const
    {
        return &other == &volume || (pusher && pusher->isPushedBy(other));
    }
};

bool PushProbe::isMovable(BoundingVolume &volume)
{
    return VolumeTraits::of(volume).isBody && volume.findPhysics() && volume.findPhysics()->getInverseMass() > 0.f;
}

bool PushProbe::givesWay(BoundingVolume &body, const OrientedBox &from, const OrientedBox &to)
{
    bodies = 0;
    return givesWay(Pushed{body, PushedShape(body), nullptr}, PushedShape(from), PushedShape(to));
}

/// Whether a body gets out of what moves against it, or at least slips along what holds it.
bool PushProbe::givesWay(const Pushed &body, const PushedShape &from, const PushedShape &to)
{
    const float allowed = depthBetween(body.shape, from);
    PushedShape moved = body.shape;
    float left = INFINITY;
    for (int push = 0; push < MOST_PUSHES; ++push)
    {
        const Vec4 way = wayOut(moved, to, allowed);
        const float depth = way.magnitude();
        if (depth <= ROUNDING)
            return true;
        if (depth > left * SLIPPING)
            return false;
        left = depth;
        moved.box.centre += way;
        holdBack(body, moved);
    }
    return true;
}

/// Takes a body that has been moved back out of whatever does not make room for it.
void PushProbe::holdBack(const Pushed &body, PushedShape &moved)
{
    const float reach = moved.box.half.magnitude();
    const Vec4 corner(reach, 0.f, reach, 0.f);
    const CellRect cells =
        CellRect::between(grid.getCellCoords(moved.box.centre - corner), grid.getCellCoords(moved.box.centre + corner),
                          grid.getColumns(), grid.getRows());
    grid.forEachVolume(cells,
                       [&](const Handle<BoundingVolume> &h)
                       {
                           const auto other = h.lookup();
                           if (!other || other.ptr == &leaf || body.isPushedBy(*other) || !isSolid(*other))
                               return;
                           const PushedShape shape(*other);
                           const Vec4 back = wayOut(moved, shape, depthBetween(body.shape, shape));
                           if (back.magnitude() > ROUNDING && !takesPush(*other, body, moved))
                               moved.box.centre += back;
                       });
}

bool PushProbe::takesPush(BoundingVolume &other, const Pushed &body, const PushedShape &moved)
{
    if (!isMovable(other) || ++bodies > MOST_BODIES)
        return false;
    return givesWay(Pushed{other, PushedShape(other), &body}, body.shape, moved);
}
