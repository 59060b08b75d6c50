#include "ai/paths/WalkSurvey.h"

#include "ai/paths/DoorState.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/OrientedBox.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr std::uint32_t STOCK_EVERY = 32; ///< calls: half a second until a wall that came up is one
constexpr std::uint32_t STOCK_SOON = 4;   ///< calls until it is looked at what births and deaths have changed
constexpr std::uint32_t WALLS_IN = 32;    ///< calls in which all walls are looked at
constexpr std::uint32_t LOOK_EVERY = 128; ///< calls until walls are looked at though none has come, moved or gone
constexpr float STEP = 0.3f;              ///< metres above the floor that one steps over
constexpr float HEAD = 1.7f;              ///< metres above the floor below which one does not pass
constexpr float MOVED = 0.05f;            ///< metres from which on something stands elsewhere
constexpr float FLYING = 4.f;             ///< metres a second: nobody waits for what flies by
constexpr float AJAR = 0.15f;             ///< openness up to which a leaf counts as closed
constexpr std::uint8_t RESTING = 10;      ///< frames after which a leaf rests

/// Who has one of these goes his own ways.
const String *const CREATURE_KEYS[] = {
    &ComponentKeys::path,     &ComponentKeys::pathFollower, &ComponentKeys::steering,   &ComponentKeys::behaviors,
    &ComponentKeys::flocking, &ComponentKeys::flowMovement, &ComponentKeys::perception, &ComponentKeys::player};

bool isCreature(const BoundingVolume &volume)
{
    const auto entity = handle_cast<Entity>(volume.getParent()).lookup();
    return entity && std::any_of(std::begin(CREATURE_KEYS), std::end(CREATURE_KEYS),
                                 [&](const String *key) { return entity->getComponent(*key).isValid(); });
}

/// Whether a volume may stop a walker at all.
bool isThing(BoundingVolume &volume)
{
    const VolumeTraits &traits = VolumeTraits::of(volume);
    return traits.isSolid && !traits.isPlayer && !volume.getTrigger() && !volume.isDying() && volume.findPhysics() &&
           volume.findTransform() && !isCreature(volume);
}

bool isTurned(const Quaternion &one, const Quaternion &other)
{
    constexpr float SAME = 0.9999f; // half a degree
    return !(std::fabs(one.r * other.r + one.i * other.i + one.j * other.j + one.k * other.k) > SAME);
}

CellRect wholeOf(const PartitioningGrid &grid)
{
    return CellRect{0, 0, grid.getColumns() - 1, grid.getRows() - 1};
}

bool isBall(const BoundingVolume &volume)
{
    return VolumeTraits::of(volume).shape == VolumeTraits::BALL;
}

} // namespace

void WalkSurvey::begin(const Matrix4 &newToPlan)
{
    toPlan = newToPlan;
    things.clear();
    walls.clear();
    calls = 0;
}

bool WalkSurvey::isStockDue() const
{
    return calls < STOCK_SOON || calls % STOCK_EVERY == 0 ||
           (calls % STOCK_SOON == 0 && stockChanges != ObjectMap().getChangeCount());
}

void WalkSurvey::follow(PartitioningGrid *grid, WalkPlan &plan)
{
    if (grid && calls < STOCK_SOON)
        takeStock(*grid, plan);
    else if (grid && isStockDue())
        takeStockOfMoving(*grid, plan);
    refreshPointers();
    for (Thing &thing : things)
        watch(thing, plan);
    if (grid)
        followWalls(*grid, plan);
    ++calls;
}

/// Brings a wall to where it stands; one that has become something else, as a trigger, goes.
void WalkSurvey::watchWall(Thing &wall, WalkPlan &plan) const
{
    if (wall.volume && VolumeTraits::of(*wall.volume).isStatic && !wall.volume->getTrigger())
        watch(wall, plan);
    else
        withdraw(wall, plan);
}

void WalkSurvey::takeStock(PartitioningGrid &grid, WalkPlan &plan)
{
    takeStockOfMoving(grid, plan);
    found.clear();
    grid.forEachStaticVolume(wholeOf(grid), [&](const Handle<BoundingVolume> &handle) { find(handle); });
    renew(walls, plan);
}

void WalkSurvey::takeStockOfMoving(PartitioningGrid &grid, WalkPlan &plan)
{
    if (stockChanges != ObjectMap().getChangeCount())
        dropDeadWalls(plan);
    stockChanges = ObjectMap().getChangeCount();
    found.clear();
    grid.forEachMovingVolume(wholeOf(grid), [&](const Handle<BoundingVolume> &handle) { find(handle); });
    renew(things, plan);
}

/// Notes a volume that may stop somebody.
void WalkSurvey::find(const Handle<BoundingVolume> &handle)
{
    const auto volume = handle.lookup();
    if (volume && isThing(*volume))
        found.push_back(handle);
}

/// Makes a list that of what was found: who is new comes, and who is not there any more goes.
void WalkSurvey::renew(ThingList &list, WalkPlan &plan)
{
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    kept.clear();
    auto known = list.begin();
    for (const Handle<BoundingVolume> &handle : found)
    {
        for (; known != list.end() && known->handle < handle; ++known)
            withdraw(*known, plan);
        const bool isKnown = known != list.end() && known->handle == handle;
        kept.push_back(isKnown ? *known++ : Thing());
        kept.back().handle = handle;
    }
    for (; known != list.end(); ++known)
        withdraw(*known, plan);
    list.swap(kept);
    for (Thing &thing : list)
    {
        thing.volume = thing.handle.lookup().ptr;
        watch(thing, plan);
    }
}

/// Looks at a part of the walls and of the static volumes; for nothing while none of them changes.
void WalkSurvey::followWalls(PartitioningGrid &grid, WalkPlan &plan)
{
    if (wallChanges != grid.getStaticChanges() || calls % LOOK_EVERY == 0)
        looksLeft = WALLS_IN;
    wallChanges = grid.getStaticChanges();
    if (looksLeft == 0)
        return;
    --looksLeft;
    for (std::size_t number = calls % WALLS_IN; number < walls.size(); number += WALLS_IN)
        watchWall(walls[number], plan);
    lookForWalls(grid, plan);
}

/// Looks for walls that have come up among a part of the static volumes.
void WalkSurvey::lookForWalls(PartitioningGrid &grid, WalkPlan &plan)
{
    const std::uint32_t turn = calls % WALLS_IN;
    std::uint32_t number = 0;
    found.clear();
    grid.forEachStaticVolume(wholeOf(grid),
                             [&](const Handle<BoundingVolume> &handle)
                             {
                                 if (number++ % WALLS_IN == turn && !isWall(handle))
                                     find(handle);
                             });
    for (const Handle<BoundingVolume> &handle : found)
    {
        if (isWall(handle))
            continue; // it came twice
        Thing &wall = *walls.insert(placeAmongWalls(handle), Thing());
        wall.handle = handle;
        wall.volume = handle.lookup().ptr;
        watch(wall, plan);
    }
}

/// Where a volume stands among the walls, or would stand.
WalkSurvey::ThingList::iterator WalkSurvey::placeAmongWalls(const Handle<BoundingVolume> &handle)
{
    return std::lower_bound(walls.begin(), walls.end(), handle,
                            [](const Thing &wall, const Handle<BoundingVolume> &sought)
                            { return wall.handle < sought; });
}

bool WalkSurvey::isWall(const Handle<BoundingVolume> &handle)
{
    const auto place = placeAmongWalls(handle);
    return place != walls.end() && place->handle == handle;
}

void WalkSurvey::dropDeadWalls(WalkPlan &plan)
{
    std::erase_if(walls,
                  [&](Thing &wall)
                  {
                      const bool isDead = !wall.handle.isValid();
                      if (isDead)
                          withdraw(wall, plan);
                      return isDead;
                  });
}

void WalkSurvey::refreshPointers()
{
    if (objectChanges == ObjectMap().getChangeCount())
        return;
    objectChanges = ObjectMap().getChangeCount();
    for (ThingList *const list : {&things, &walls})
        for (Thing &thing : *list)
            thing.volume = thing.handle.lookup().ptr;
}

/// Brings a thing in the plan to where it stands.
void WalkSurvey::watch(Thing &thing, WalkPlan &plan) const
{
    TransformComponent *const transform = thing.volume ? thing.volume->findTransform() : nullptr;
    PhysicsComponent *const body = transform ? thing.volume->findPhysics() : nullptr;
    if (!body || thing.volume->isDying())
        return withdraw(thing, plan);
    Vec4 place = transform->getPosition();
    Quaternion turn = transform->getOrientation();
    const bool isStill = place == thing.lastPlace && turn == thing.lastTurn;
    thing.stillFrames = isStill ? static_cast<std::uint8_t>(std::min(thing.stillFrames + 1, 255)) : 0;
    thing.lastPlace = place;
    thing.lastTurn = turn;
    const DoorState door(*body);
    const Manner manner = mannerOf(thing, door);
    if (manner == SHUT)
    {
        place = door.closedMiddle;
        turn = door.closedTurn;
    }
    const bool isElsewhere = !((place - thing.place).magnitude() < MOVED) || isTurned(turn, thing.turn) ||
                             thing.volume->getHitBox() != thing.hitBox;
    if (manner == thing.manner && (manner == ABSENT || !isElsewhere))
        return;
    thing.place = place;
    thing.turn = turn;
    stand(thing, plan, manner);
}

/// How a thing stops walkers. A leaf that opens is on its way out of it, one that closes as good as closed.
WalkSurvey::Manner WalkSurvey::mannerOf(const Thing &thing, const DoorState &door) const
{
    if (!door)
    {
        // Without its fall: what rests on the plane at height 0 keeps that speed.
        const Vec4 velocity = thing.volume->findPhysics()->getVelocity();
        const bool flies = std::hypot(velocity.x, velocity.z) > FLYING;
        return !flies && isInTheWay(*thing.volume, thing.lastPlace, thing.lastTurn) ? SOLID : ABSENT;
    }
    if (!isInTheWay(*thing.volume, door.closedMiddle, door.closedTurn))
        return ABSENT;
    if (thing.stillFrames < RESTING)
        return door.isOpen ? ABSENT : SHUT;
    return door.openness <= AJAR ? SHUT : SOLID;
}

/// Whether a volume reaches into the height in which a walker's body is; numbers that are none reach nowhere.
bool WalkSurvey::isInTheWay(const BoundingVolume &volume, const Vec4 &place, const Quaternion &turn) const
{
    if (!isFinite(place) || !isFinite(turn) || !isFinite(volume.getHitBox()))
        return false;
    const OrientedBox box(toPlan * turn.generateRotation(), toPlan * place, volume.getHitBox());
    float height = 0.f;
    for (int axis = 0; axis < 3; ++axis)
        height += std::fabs(box.axes[axis].y * box.half[axis]);
    if (isBall(volume))
        height = std::fabs(box.half.x);
    return box.centre.y + height > STEP && box.centre.y - height < HEAD;
}

/// Puts a thing into the plan in another place or manner than before.
void WalkSurvey::stand(Thing &thing, WalkPlan &plan, Manner manner) const
{
    withdraw(thing, plan);
    thing.manner = manner;
    thing.hitBox = thing.volume->getHitBox();
    if (manner == ABSENT)
        return;
    const Matrix4 turned = toPlan * thing.turn.generateRotation();
    const Vec4 extents = isBall(*thing.volume) ? Vec4(1.f, 1.f, 1.f, 0.f) * thing.hitBox.x : thing.hitBox;
    const Footprint shape(OrientedBox(turned, toPlan * thing.place, extents));
    const bool isShut = manner == SHUT;
    if (shape.isFinite())
        thing.number =
            plan.add(shape, isShut, isShut ? getHandle(thing.volume->findPhysics()) : Handle<PhysicsComponent>());
}

void WalkSurvey::withdraw(Thing &thing, WalkPlan &plan) const
{
    if (thing.number != WalkPlan::NONE)
        plan.remove(thing.number);
    thing.number = WalkPlan::NONE;
    thing.manner = ABSENT;
}
