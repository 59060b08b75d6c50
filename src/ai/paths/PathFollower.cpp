#include "ai/paths/PathFollower.h"

#include "ai/paths/DoorState.h"
#include "ai/paths/PathComponent.h"
#include "ai/paths/Walkways.h"
#include "ai/steering/SteeringComponent.h"
#include "physics/bodies/PhysicsComponent.h"
#include "physics/doors/DoorCalls.h"
#include "physics/grid/PartitioningGrid.h"
#include "physics/grid/SquareGrid.h"
#include "physics/volumes/BoundingVolume.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr int LOOK_EVERY = 4;          ///< frames between two looks ahead
constexpr int MOST_LOOKS = 6;          ///< cells that a look may get farther
constexpr float FARTHEST_LOOK = 12.f;  ///< metres
constexpr float NEAR_STATION = 0.3f;   ///< of a cell's edge, at which a station counts as reached
constexpr float DOOR_REACH = 1.1f;     ///< metres from a leaf at which one opens it
constexpr float WIDE_OPEN = 0.8f;      ///< openness at which one passes
constexpr Seconds DOOR_PATIENCE = 4.0; ///< until a leaf counts as stuck
constexpr float BEHIND = 1.2f;         ///< metres past a door at which one closes it
constexpr float FORGOTTEN = 4.f;       ///< metres from a door at which nobody cares for it any more
constexpr Seconds STANDSTILL = 1.0;    ///< without way until it is asked anew
constexpr float LEAST_WAY = 0.2f;      ///< of what the speed would give
constexpr float UNHINDERED = 0.5f;     ///< of that; who makes less beside another has to come nearer
constexpr int MOST_STANDSTILLS = 20;   ///< until it gives up
constexpr float CLOSE_ENOUGH = 1.f;    ///< metres from a place that others take
constexpr int CAREFUL_CELLS = 3;       ///< gone one by one by who has got stuck
constexpr float BRAKING_TIME = 0.35f;  ///< seconds before the end at which it slows down
constexpr float HEADWAY_TIME = 0.15f;  ///< seconds over which it is told whether it gets on
constexpr float LEANING = 0.3f;        ///< part of the speed with which it leans on what holds it up
constexpr int PATIENCE = 2;            ///< standstills after which it may let others pass
constexpr Seconds ASIDE_TIME = 2.5;    ///< for which it then goes aside
constexpr float ASIDE = 1.4f;          ///< metres that it does, back and to a side
constexpr float STANDING = 0.02f;      ///< metres a second
constexpr float QUICKNESS = 10.f;      ///< metres a second squared, where no steering has its own
constexpr float NO_WAY = 1e-3f;        ///< metres

Vec4 flat(const Vec4 &v)
{
    return Vec4(v.x, 0.f, v.z, 0.f);
}

float flatDistance(const Vec4 &one, const Vec4 &other)
{
    return flat(other - one).magnitude();
}

bool canSteer(const SteeringComponent *steering)
{
    return steering && steering->getMaxSpeed() > 0.f && steering->getMaxAccel() > 0.f &&
           steering->getTimeToTarget() > 0.f;
}

String nameOf(const Handle<PhysicsComponent> &leaf)
{
    const auto body = leaf.lookup();
    const auto entity = body ? body->getParent().lookup() : Handle<Object>::Result();
    return entity ? entity->getName() : SCS("door");
}

} // namespace

PathFollower::Body PathFollower::findBody()
{
    Body body;
    const Handle<Object> entity = getParent();
    body.transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    body.physics = componentOf<PhysicsComponent>(entity, ComponentKeys::physics);
    if (!body.transform || !body.physics)
        return body;
    body.steering = componentOf<SteeringComponent>(entity, ComponentKeys::steering);
    body.ways = Walkways::ofMap(body.transform->findMap());
    body.walker = Walker::of(entity);
    body.place = body.transform->getPosition();
    body.seconds = static_cast<float>(frameSeconds());
    return body;
}

Seconds PathFollower::frameSeconds()
{
    const auto level = getAncestorOfType<Coordinator>().lookup();
    return level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0.0;
}

PathComponent *PathFollower::findPath()
{
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    if (!entity)
        return nullptr;
    const auto present = handle_cast<PathComponent>(entity->getComponent(ComponentKeys::path)).lookup();
    if (present)
        return present.ptr;
    return handle_cast<PathComponent>(entity->addComponent(ComponentKeys::path, PathComponent::staticType))
        .lookup()
        .ptr;
}

void PathFollower::goTo(Vec4 place)
{
    const Body body = findBody();
    if (!body || !isFinite(place) || !isFinite(body.place))
    {
        if (state != FS_FAILED)
            KV_LOGF(Logger_::I_ERROR,
                    "%s cannot go to %s: the place must be a number, and the creature needs a transform and a physics "
                    "component, and a map with a path grid.",
                    getParent().toString().toCString(), place.toString().toCString());
        return fail(SCS("it cannot go there"));
    }
    const GridCell cell = body.ways->findFreeCell(place, body.walker.radius);
    if (!cell.isValid())
        return fail(SCS("there is no room for it anywhere near"));
    const bool isRoomy = cell == body.ways->cellAt(place);
    const Vec4 target = isRoomy ? place : body.ways->getStation(cell);
    const bool isNew = !getUnderWay() || cell != goalCell;
    if (getArrived() && flatDistance(body.place, target) < arriveRadius)
        return;
    goal = target;
    goalCell = cell;
    if (!isNew)
        return;
    if (!getUnderWay())
    {
        way.clear();
        standstills = 0;
        careful = 0;
        lastPlace = body.place;
        sinceLastPlace = 0.0;
    }
    requestPriority = priority;
    reason = String();
    if (body.ways->isFree(body.place, goal, body.walker, false))
    {
        way.clear();
        next = 0;
        wantsPath = false;
        waysSeen = static_cast<std::uint32_t>(body.ways->getChangeCount());
        return begin(FS_WALKING);
    }
    wantsPath = true;
    if (!getUnderWay())
        begin(FS_ASKING);
}

void PathFollower::begin(State newState)
{
    state = newState;
    if (newState != FS_WAITING)
        door = Handle<PhysicsComponent>();
    doorSeconds = 0.0;
}

void PathFollower::stop()
{
    isBraking = isBraking || getUnderWay();
    begin(FS_IDLE);
    way.clear();
    wantsPath = false;
    backSeconds = 0.0;
}

void PathFollower::fail(const String &why)
{
    stop();
    state = FS_FAILED;
    reason = why;
}

void PathFollower::arrive()
{
    stop();
    state = FS_ARRIVED;
}

void PathFollower::doFrame()
{
    if (!getUnderWay() && !doorBehind.isValid() && !isBraking)
        return;
    const Body body = findBody();
    if (!body || !isFinite(body.place))
    {
        if (getUnderWay())
            fail(SCS("it has no body, or no map with a path grid, any more"));
        isBraking = false;
        return;
    }
    ++frames;
    closeBehind(body);
    if (!getUnderWay())
        return comeToRest(body);
    receive(body);
    if (wantsPath)
        ask(body);
    if (flatDistance(body.place, goal) <= arriveRadius && (way.empty() || next >= way.size()))
        return arrive();
    if (state == FS_WAITING)
        return waitForDoor(body);
    if (state == FS_ASKING)
        return drive(body, body.place, HALT);
    if (state == FS_WALKING)
        walk(body);
}

void PathFollower::wantPath(const String &why)
{
    wantsPath = true;
    reason = why;
}

/// Asks for a path once the answer to an earlier request is there.
void PathFollower::ask(const Body &body)
{
    PathComponent *const path = findPath();
    if (asking || !path || path->isRequestPending())
        return;
    wantsPath = false;
    asking = true;
    askedCell = goalCell;
    path->submitPathRequest(PathRequest(handle_cast<Entity>(getParent()), goalCell, requestPriority, false, saturates));
    requestPriority = priority;
}

void PathFollower::receive(const Body &body)
{
    PathComponent *const path = asking ? findPath() : nullptr;
    if (!path || path->isRequestPending())
        return;
    asking = false;
    if (path->requestStatus() == PS_Succeeded && !path->borrowPath().empty() && path->borrowPath().front() == askedCell)
        return takePath(body, path->borrowPath());
    if (wantsPath || askedCell != goalCell)
    {
        wantsPath = true; // what was asked is not where it goes any more
        return;
    }
    if (state == FS_WALKING && way.empty() && body.ways->isFree(body.place, goal, body.walker, false))
        return; // it found the straight way meanwhile
    fail(SCS("there is no way"));
}

void PathFollower::takePath(const Body &body, const HexCont &path)
{
    way.assign(path.rbegin(), path.rend());
    next = findBeginning(body);
    waysSeen = static_cast<std::uint32_t>(body.ways->getChangeCount());
    if (askedCell != goalCell)
        wantsPath = true; // it goes the old way until the new one is there
    if (state == FS_ASKING)
        begin(FS_WALKING);
    frames = 0; // looks ahead at once
}

/// Where a new way is to be taken up: it begins where the creature stood when it asked, which may lie behind it now.
std::size_t PathFollower::findBeginning(const Body &body) const
{
    std::size_t nearest = 0;
    while (nearest + 1 < way.size() &&
           flatDistance(body.place, stationAt(body, nearest + 1)) <= flatDistance(body.place, stationAt(body, nearest)))
        ++nearest;
    for (const std::size_t index : {nearest + 1, nearest})
        if (body.ways->isFree(body.place, stationAt(body, index), body.walker, false))
            return index;
    return 0;
}

void PathFollower::walk(const Body &body)
{
    checkWay(body);
    if (state != FS_WALKING)
        return;
    if (!way.empty() && frames % LOOK_EVERY == 0)
        lookAhead(body);
    if (meetDoor(body))
        return;
    if (backSeconds > 0.0)
        return giveWay(body);
    watchProgress(body);
    if (state != FS_WALKING)
        return;
    drive(body, next < way.size() ? stationAt(body, next) : goal, GO);
}

/// Looks for a place behind or beside it, as seen from where it goes.
bool PathFollower::findAside(const Body &body)
{
    const Vec4 to = flat((next < way.size() ? stationAt(body, next) : goal) - body.place);
    const float distance = to.magnitude();
    if (distance < NO_WAY)
        return false;
    const Vec4 ahead = to * (ASIDE / distance);
    const Vec4 left(-ahead.z, 0.f, ahead.x, 0.f);
    for (const Vec4 &offset : {-ahead - left, -ahead + left, -ahead, left, -left})
    {
        asidePlace = body.place + offset;
        if (body.ways->isFree(body.place, asidePlace, body.walker, false))
            return true;
    }
    return false;
}

/// Goes aside for a while, and stands there; only behind that it may count as stuck again.
void PathFollower::giveWay(const Body &body)
{
    backSeconds -= body.seconds;
    lastPlace = body.place;
    sinceLastPlace = 0.0;
    standstills = 0;
    drive(body, asidePlace, flatDistance(body.place, asidePlace) < arriveRadius ? HALT : GO);
}

/// Takes what speed is left from a body that goes nowhere; then the body is anybody's.
void PathFollower::comeToRest(const Body &body)
{
    if (!isBraking)
        return;
    drive(body, body.place, HALT);
    isBraking = flat(body.physics->getVelocity()).magnitude() > STANDING;
}

/// Asks anew where the way has been blocked since it was found.
void PathFollower::checkWay(const Body &body)
{
    const std::uint32_t now = static_cast<std::uint32_t>(body.ways->getChangeCount());
    if (way.empty())
    {
        if (now == waysSeen && frames % (LOOK_EVERY * 2) != 0)
            return;
        waysSeen = now;
        if (!wantsPath && !asking && !body.ways->isFree(body.place, goal, body.walker, false))
            wantPath(SCS("something came between"));
        return;
    }
    if (now == waysSeen)
        return;
    const bool isTouched = body.ways->hasChangedSince(waysSeen, cellsOfWay());
    waysSeen = now;
    if (isTouched && !wantsPath && !asking && isWayBlocked(body))
    {
        wantPath(SCS("its way was blocked"));
        way.clear();
        begin(FS_ASKING);
    }
}

bool PathFollower::isWayBlocked(const Body &body) const
{
    for (std::size_t i = std::max<std::size_t>(next, 1); i < way.size(); ++i)
        if (!body.ways->isStepFree(way[i - 1], way[i], body.walker))
            return true;
    return false;
}

/// The rectangle around the cells that are left.
CellRect PathFollower::cellsOfWay() const
{
    CellRect rect{goalCell.getX(), goalCell.getZ(), goalCell.getX(), goalCell.getZ()};
    for (std::size_t i = next > 0 ? next - 1 : 0; i < way.size(); ++i)
    {
        rect.minX = std::min(rect.minX, way[i].getX());
        rect.minZ = std::min(rect.minZ, way[i].getZ());
        rect.maxX = std::max(rect.maxX, way[i].getX());
        rect.maxZ = std::max(rect.maxZ, way[i].getZ());
    }
    return rect;
}

Vec4 PathFollower::stationAt(const Body &body, std::size_t index) const
{
    return index < way.size() ? body.ways->getStation(way[index]) : goal;
}

/// Makes for the farthest cell of the way that is in sight.
void PathFollower::lookAhead(const Body &body)
{
    const auto grid = goalCell.getGrid().lookup();
    const float nearStation = NEAR_STATION * (grid ? grid->getCellSize() : 1.f);
    for (int looks = 0; looks < MOST_LOOKS && next < way.size(); ++looks)
    {
        const bool isReached = flatDistance(body.place, stationAt(body, next)) < nearStation;
        const Vec4 farther = stationAt(body, next + 1);
        const bool isSeen = careful == 0 && flatDistance(body.place, farther) < FARTHEST_LOOK &&
                            body.ways->isFree(body.place, farther, body.walker, false);
        if (!isReached && !isSeen)
            return;
        ++next;
        careful = std::max(careful - 1, 0);
    }
}

/// Stands before a closed door on its way, and opens it.
bool PathFollower::meetDoor(const Body &body)
{
    if (!opensDoors || way.empty() || frames % LOOK_EVERY != 0)
        return false;
    const Vec4 ahead = stationAt(body, std::min(next + 1, way.size()));
    const auto leaf = body.ways->findLeaf(body.place, ahead).lookup();
    if (!leaf)
        return false;
    const DoorState found(*leaf);
    if (flatDistance(body.place, found.closedMiddle) > DOOR_REACH + body.walker.radius)
        return false;
    if (!body.walker.canOpen(*leaf))
    {
        wantPath(SCS("a door on its way is locked"));
        way.clear();
        begin(FS_ASKING);
        return true;
    }
    openDoor(body, *leaf);
    return true;
}

void PathFollower::openDoor(const Body &body, PhysicsComponent &leaf)
{
    const DoorState found(leaf);
    door = getHandle(&leaf);
    begin(FS_WAITING);
    atClosedDoor = true;
    if (!(doorDelay > 0.f))
        unlatch(body, leaf);
    const Vec4 across = found.closedTurn.generateRotation().getColumn(2);
    doorSide = across.dot(flat(body.place - found.closedMiddle));
    if (closesDoors)
        doorBehind = door;
    drive(body, body.place, HALT);
}

void PathFollower::unlatch(const Body &body, PhysicsComponent &leaf)
{
    atClosedDoor = false;
    doorSeconds = 0.0;
    if (!body.walker.canOpen(leaf))
        return; // it was locked meanwhile
    if (DoorState(leaf).isLocked)
        setDoorLocked(leaf, false);
    callDoor(leaf.getParent(), getParent(), DoorCall::OPEN);
}

void PathFollower::waitForDoor(const Body &body)
{
    const auto leaf = door.lookup();
    doorSeconds += body.seconds;
    drive(body, body.place, HALT);
    if (leaf && atClosedDoor && doorSeconds >= static_cast<Seconds>(doorDelay))
        unlatch(body, *leaf);
    if (!leaf || DoorState(*leaf).openness >= WIDE_OPEN)
    {
        sinceLastPlace = 0.0;
        lastPlace = body.place;
        return begin(FS_WALKING);
    }
    if (atClosedDoor || doorSeconds < DOOR_PATIENCE)
        return;
    // Something keeps it from opening: somebody may have closed or locked it, or stands behind it.
    if (++standstills > MOST_STANDSTILLS)
        return fail(String::format("the door %s does not open", nameOf(door).toCString()));
    wantPath(String::format("the door %s did not open", nameOf(door).toCString()));
    way.clear();
    begin(FS_ASKING);
}

/// Closes the door that it has opened once it is through.
void PathFollower::closeBehind(const Body &body)
{
    const auto leaf = doorBehind.lookup();
    if (!leaf)
        return;
    const DoorState found(*leaf);
    const Vec4 from = flat(body.place - found.closedMiddle);
    const float side = found.closedTurn.generateRotation().getColumn(2).dot(from);
    const float distance = from.magnitude();
    if (state == FS_WAITING || !found.isOpen || !((side * doorSide < 0.f && distance > BEHIND) || distance > FORGOTTEN))
        return;
    callDoor(leaf->getParent(), getParent(), DoorCall::CLOSE);
    doorBehind = Handle<PhysicsComponent>();
}

/// Whether somebody else stands or goes so near that they are in each other's way.
bool PathFollower::isBesideOther(const Body &body) const
{
    const auto grid = PartitioningGrid::ofMap(body.transform->findMap()).lookup();
    if (!grid)
        return false;
    const float near = CLOSE_ENOUGH + body.walker.radius;
    const Vec4 reach(near, 0.f, near, 0.f);
    const CellRect around =
        CellRect::between(grid->getCellCoords(body.place - reach), grid->getCellCoords(body.place + reach),
                          grid->getColumns(), grid->getRows());
    bool found = false;
    grid->forEachMovingNear(around, body.place, near,
                            [&](int, int, const BoundingVolume &volume)
                            {
                                const auto *const other =
                                    componentOf<PathFollower>(volume.getParent(), ComponentKeys::pathFollower);
                                found = found || (other && other != this);
                            });
    return found;
}

/// Asks anew where it makes no way, and gives up in the end.
void PathFollower::watchProgress(const Body &body)
{
    sinceLastPlace += body.seconds;
    if (sinceLastPlace < STANDSTILL || speed <= 0.f)
        return;
    const Vec4 aim = next < way.size() ? stationAt(body, next) : goal;
    const float made = flatDistance(body.place, lastPlace);
    const float nearer = flatDistance(lastPlace, aim) - flatDistance(body.place, aim);
    const float wanted = speed * static_cast<float>(sinceLastPlace);
    lastPlace = body.place;
    sinceLastPlace = 0.0;
    // Two whose ways lead by the same cell may go round it for ever, slowly, and neither comes there.
    const bool isCircling = next < way.size() && made < UNHINDERED * wanted && nearer < 0.f && isBesideOther(body);
    if (made > LEAST_WAY * wanted && !isCircling)
    {
        standstills = 0;
        return;
    }
    if (flatDistance(body.place, goal) < CLOSE_ENOUGH + body.walker.radius && standstills > 0)
        return arrive(); // somebody stands there
    if (++standstills > MOST_STANDSTILLS)
        return fail(SCS("it makes no way"));
    // Of two who stand before each other one goes aside: whose turn it is differs from one to the next, and over time.
    // Counted from the level's own number, so that a level that is loaded again goes as it did.
    const unsigned born = getHandle(this).getNumber() - getAncestorOfType<Coordinator>().getNumber();
    const unsigned turn = born / 4 + static_cast<unsigned>(standstills);
    if (standstills >= PATIENCE && turn % 3 == 0 && findAside(body))
        backSeconds = ASIDE_TIME;
    careful = CAREFUL_CELLS;
    requestPriority = std::max<int>(priority, RP_High);
    wantPath(SCS("it made no way"));
}

/// Gives the body the speed at which it goes to a place, or takes it from the body.
void PathFollower::drive(const Body &body, const Vec4 &aim, Pace pace)
{
    const Vec4 to = flat(aim - body.place);
    const float distance = to.magnitude();
    Vec4 heading = pace == GO && distance > NO_WAY ? to * (1.f / distance) : Vec4();
    const float left = next < way.size() ? distance + arriveRadius : distance;
    const float top = canSteer(body.steering) ? std::min(speed, body.steering->getMaxSpeed()) : speed;
    const bool isLast = way.empty() || next >= way.size();
    const float pacing = isLast ? std::min(top, left / BRAKING_TIME) : top;
    steer(body, heading * (pacing * paceOf(body, heading)), heading);
}

/// The part of its speed that it goes with: who is held up leans on what stands before him, but does not push.
float PathFollower::paceOf(const Body &body, const Vec4 &heading)
{
    const Vec4 made = flat(body.place - placeBefore);
    placeBefore = body.place;
    if (!(body.seconds > 0.f) || !(speed > 0.f))
        return 1.f;
    const float now = std::clamp(made.dot(heading) / (speed * body.seconds), 0.f, 1.f);
    headway += (now - headway) * std::min(body.seconds / HEADWAY_TIME, 1.f);
    return std::min(LEANING + headway, 1.f);
}

void PathFollower::steer(const Body &body, const Vec4 &velocity, const Vec4 &heading)
{
    const Vec4 now = body.physics->getVelocity();
    Vec4 wanted = velocity;
    wanted.y = now.y;
    if (canSteer(body.steering))
    {
        // What the body has of the frame before would be added up over the frames.
        body.physics->setAcceleration(Vec4());
        body.steering->updateVelocityMatch(wanted);
        body.steering->updateSeparation();
        if (body.steering->getAlignMaxRotSpeed() > 0.f && !(heading == Vec4()))
            return body.steering->updateAlignWithVector(heading, body.seconds);
        return face(body, heading);
    }
    const Vec4 change = wanted - now;
    const float size = change.magnitude(), most = QUICKNESS * body.seconds;
    body.physics->setVelocity(size > most ? now + change * (most / size) : wanted);
    face(body, heading);
}

/// Turns the body towards where it goes.
void PathFollower::face(const Body &body, const Vec4 &heading)
{
    const Vec4 front = body.transform->getOrientation().generateRotation().getColumn(2);
    if (heading == Vec4() || !(turnSpeed > 0.f) || (front.x == 0.f && front.z == 0.f))
        return;
    const float now = std::atan2(front.x, front.z), wanted = std::atan2(heading.x, heading.z);
    const float turn = std::remainder(wanted - now, 2.f * PI), most = turnSpeed * body.seconds;
    if (std::fabs(turn) < 1e-4f)
        return;
    const float angle = now + std::clamp(turn, -most, most);
    body.transform->setOrientation(Quaternion(Vec4(std::sin(angle), 0.f, std::cos(angle), 0.f)));
}

float PathFollower::getDistanceLeft() const
{
    const TransformComponent *const transform = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!getUnderWay() || !transform)
        return 0.f;
    Vec4 from = transform->getPosition();
    float sum = 0.f;
    for (std::size_t i = next; i < way.size(); ++i)
    {
        const Vec4 to = way[i].getWorldCoords();
        sum += flatDistance(from, to);
        from = to;
    }
    return sum + flatDistance(from, goal);
}

void PathFollower::setSpeed(float val)
{
    if (val >= 0.f && std::isfinite(val))
        speed = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s: a speed of %g m/s is none; set it to a number of 0 or more.",
                getParent().toString().toCString(), static_cast<double>(val));
}

void PathFollower::setDoorDelay(float val)
{
    if (val >= 0.f && std::isfinite(val))
        doorDelay = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s: a doorDelay of %g seconds is none; set it to a number of 0 or more.",
                getParent().toString().toCString(), static_cast<double>(val));
}

void PathFollower::setArriveRadius(float val)
{
    if (val >= 0.f && std::isfinite(val))
        arriveRadius = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s: an arriveRadius of %g m is none; set it to a number of 0 or more.",
                getParent().toString().toCString(), static_cast<double>(val));
}

void PathFollower::setTurnSpeed(float val)
{
    if (val >= 0.f && std::isfinite(val))
        turnSpeed = val;
    else
        KV_LOGF(Logger_::I_ERROR, "%s: a turnSpeed of %g radians a second is none; set it to a number of 0 or more.",
                getParent().toString().toCString(), static_cast<double>(val));
}

void PathFollower::addKey(String doorName)
{
    if (!hasKey(doorName))
        keys.push_back(doorName);
}

void PathFollower::dropKey(String doorName)
{
    keys.erase(std::remove(keys.begin(), keys.end(), doorName), keys.end());
}

bool PathFollower::hasKey(String doorName) const
{
    return std::find(keys.begin(), keys.end(), doorName) != keys.end();
}

bool PathFollower::hasKeyOf(const PhysicsComponent &leaf) const
{
    const auto entity = leaf.getParent().lookup();
    return entity && hasKey(entity->getName());
}
