// PathFollower: takes a creature to a place.
#pragma once

#include "ai/paths/PathRequest.h"
#include "ai/paths/Walker.h"
#include "physics/grid/CellRect.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <cstdint>
#include <vector>

class PathComponent;
class PhysicsComponent;
class SteeringComponent;
class TransformComponent;
class Walkways;

/// Takes its creature to a place, around what stands in the way and through doors, under the component key
/// "pathFollower".
///
///     follower = kaVel.addComponent(creature, 'pathFollower', 'PathFollower', speed=1.4, opensDoors=True)
///     follower.goTo(kaVel.Vec4(3, 0, 4, 1))
///
/// Metres, seconds, in the space of the creature's transform. Goes straight where nothing stands between, and asks the
/// path manager else, by the "path" beside it, which it makes where it is missing; follows the path as far ahead as it
/// is in sight. A body goes by the "steering" beside it where that has its limits and a time to its target, else by its
/// velocity. Who makes no way for a second asks anew, and so does who has something put on his way. Its creature opens
/// doors only if told, waits until they stand open, and closes them behind itself only if told. Asking for the same
/// place in every frame costs nothing.
class PathFollower : public SimpleComponent
{
    KV_REFLECTED(PathFollower)
public:
    /// What a follower is about.
    enum State
    {
        FS_IDLE = 0,    ///< nothing was asked of it, or it was stopped
        FS_ASKING = 1,  ///< stands until its path is found
        FS_WALKING = 2, ///< is on its way
        FS_WAITING = 3, ///< stands before a door that opens
        FS_ARRIVED = 4,
        FS_FAILED = 5 ///< there is no way, or it could not be gone
    };

    PathFollower() = default;

    /// Goes on.
    void doFrame() override;
    /// Draws the way that is left, the place that it makes for and what it is about, with the switch of path
    /// information.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Goes to a place, or to the nearest one where the creature has room.
    ///
    /// A place that is no number, or on a map without a path grid, fails, and the log says so. May be called in every
    /// frame, for what moves.
    void goTo(Vec4 place);
    /// Stands still, and forgets where it was to go.
    void stop();

    State getState() const { return state; }
    /// Whether it is on its way, or is about to be.
    bool getUnderWay() const { return state == FS_ASKING || state == FS_WALKING || state == FS_WAITING; }
    /// Whether it has come to where it was to go.
    bool getArrived() const { return state == FS_ARRIVED; }
    /// Whether it has given up.
    bool getFailed() const { return state == FS_FAILED; }
    /// Where it goes, or went last.
    Vec4 getGoal() const { return goal; }
    /// Metres that are left, along its way.
    float getDistanceLeft() const;
    /// What it is about and why, as a part of a sentence: "on its way to (3, 4)"; empty where it is idle.
    String tell();

    /// Metres a second.
    float getSpeed() const { return speed; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setSpeed(float val);
    /// Metres from the place within which the creature has arrived.
    float getArriveRadius() const { return arriveRadius; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setArriveRadius(float val);
    /// Radians a second by which the creature turns to where it goes, where no "steering" turns it; 0 for not at all.
    float getTurnSpeed() const { return turnSpeed; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setTurnSpeed(float val);
    /// How urgent its requests for paths are; see `RequestPriority`.
    int getPriority() const { return priority; }
    void setPriority(int val) { priority = val; }
    /// Whether its paths leave a trace in the saturation grid, so that others take other ways.
    ///
    /// Off by default: traces never fade, and after some minutes everything is crowded.
    bool getSaturates() const { return saturates; }
    void setSaturates(bool val) { saturates = val; }
    /// Whether the creature opens doors on its way.
    bool getOpensDoors() const { return opensDoors; }
    void setOpensDoors(bool val) { opensDoors = val; }
    /// Whether it closes behind itself the doors that it has opened.
    bool getClosesDoors() const { return closesDoors; }
    void setClosesDoors(bool val) { closesDoors = val; }
    /// Seconds that the creature stands at a closed door before it opens it; 0 for at once.
    float getDoorDelay() const { return doorDelay; }
    /// Sets it; what is negative or no number is logged as an error and changes nothing.
    void setDoorDelay(float val);
    /// Whether it stands at a closed door and has not opened it yet.
    bool getAtDoor() const { return state == FS_WAITING && atClosedDoor; }
    /// Gives it the key to the locked doors whose entity has this name; it unlocks them.
    void addKey(String doorName);
    /// Takes a key from it.
    void dropKey(String doorName);
    /// Whether it has the key to doors of this name.
    bool hasKey(String doorName) const;
    /// Whether it has the key to the door that a leaf belongs to.
    bool hasKeyOf(const PhysicsComponent &leaf) const;

private:
    /// What a follower needs beside it, for one frame.
    struct Body
    {
        TransformComponent *transform = nullptr;
        PhysicsComponent *physics = nullptr;
        SteeringComponent *steering = nullptr;
        Walkways *ways = nullptr;
        Walker walker;
        Vec4 place;
        float seconds = 0.f;

        explicit operator bool() const { return transform && physics && ways; }
    };
    enum Pace
    {
        HALT,
        GO
    };

    Body findBody();
    PathComponent *findPath();
    Seconds frameSeconds();
    void fail(const String &why);
    void arrive();
    void begin(State next);
    void wantPath(const String &why);
    void ask(const Body &body);
    void receive(const Body &body);
    void takePath(const Body &body, const HexCont &path);
    std::size_t findBeginning(const Body &body) const;
    void checkWay(const Body &body);
    bool isWayBlocked(const Body &body) const;
    CellRect cellsOfWay() const;
    void lookAhead(const Body &body);
    Vec4 stationAt(const Body &body, std::size_t index) const;
    void walk(const Body &body);
    bool meetDoor(const Body &body);
    void openDoor(const Body &body, PhysicsComponent &leaf);
    void waitForDoor(const Body &body);
    void unlatch(const Body &body, PhysicsComponent &leaf);
    void closeBehind(const Body &body);
    bool isBesideOther(const Body &body) const;
    void watchProgress(const Body &body);
    bool findAside(const Body &body);
    void giveWay(const Body &body);
    void comeToRest(const Body &body);
    void drive(const Body &body, const Vec4 &aim, Pace pace);
    float paceOf(const Body &body, const Vec4 &heading);
    void steer(const Body &body, const Vec4 &velocity, const Vec4 &heading);
    void face(const Body &body, const Vec4 &heading);
    String tellDoor() const;

    State state = FS_IDLE;
    Vec4 goal; ///< where it goes
    GridCell goalCell;
    String reason;              ///< of its present way, or of its failure
    HexCont way;                ///< cells from the first to the last; empty where it goes straight
    std::size_t next = 0;       ///< index of the cell that it makes for; that of the end for the place itself
    int careful = 0;            ///< cells that it still goes one by one
    std::uint32_t waysSeen = 0; ///< changes of the map that its way takes account of
    bool asking = false;        ///< a request is under way
    bool wantsPath = false;     ///< as soon as no request is under way
    GridCell askedCell;
    int requestPriority = RP_Normal;
    int frames = 0;

    Handle<PhysicsComponent> door; ///< that it waits for
    bool atClosedDoor = false;     ///< it has not opened it yet
    float doorDelay = 0.f;         ///< seconds
    Seconds doorSeconds = 0.0;
    Handle<PhysicsComponent> doorBehind; ///< that it opened and is to close
    float doorSide = 0.f;                ///< on which it stood then

    bool isBraking = false;    ///< it goes nowhere, and does not stand yet
    Vec4 placeBefore;          ///< in the frame before
    float headway = 0.f;       ///< of late, part of what its speed would give
    Seconds backSeconds = 0.0; ///< for which it still goes aside, to let others pass
    Vec4 asidePlace;           ///< where it does

    Vec4 lastPlace; ///< a second ago
    Seconds sinceLastPlace = 0.0;
    int standstills = 0; ///< seconds without way, one after the other

    float speed = 1.5f;        ///< metres a second
    float arriveRadius = 0.3f; ///< metres
    float turnSpeed = 5.f;     ///< radians a second
    int priority = RP_Normal;
    bool saturates = false;
    bool opensDoors = false;
    bool closesDoors = false;
    std::vector<String> keys; ///< names of doors
};
