#include "physics/acoustics/DoorPlan.h"

#include "physics/acoustics/WallPlan.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float CLOSED_LOSS = 22.f;   ///< decibels that a closed leaf takes
constexpr float CLOSED_CUTOFF = 0.9f; ///< kHz
constexpr float OPEN_CUTOFF = 22.f;   ///< kHz
constexpr float HAND = 0.1f;          ///< metres
constexpr float BESIDE = 0.3f;        ///< metres between a leaf and the wall that it slides before
constexpr float THRESHOLD = 1.6f;     ///< metres within which one is about to walk through
constexpr float PASSABLE = 0.4f;      ///< openness from which on one can
constexpr float HEARD_CHANGE = 0.1f;  ///< decibels

/// The loss of a leaf by how far it is open, 0..1: even in decibels, as evenly as the leaf moves.
WayLoss lossAt(float openness)
{
    const float cutoff = CLOSED_CUTOFF * std::pow(OPEN_CUTOFF / CLOSED_CUTOFF, openness);
    return WayLoss{CLOSED_LOSS * (1.f - openness), 1.f / (cutoff * cutoff) - 1.f / (OPEN_CUTOFF * OPEN_CUTOFF)};
}

float opennessOf(const Handle<PhysicsComponent> &leaf)
{
    if (const auto hinged = handle_cast<DoorPhysics>(leaf).lookup())
        return hinged->getOpenness();
    if (const auto sliding = handle_cast<SlidingDoorPhysics>(leaf).lookup())
        return sliding->getOpenness();
    return 1.f;
}

} // namespace

SoundDoor SoundDoor::closedBy(const PlanPoint &middle, const PlanPoint &along, float width)
{
    SoundDoor door;
    const PlanPoint half = along * (width * 0.5f + HAND);
    door.lines[0] = Line{middle - half, middle + half};
    return door;
}

float SoundDoor::distanceTo(const PlanPoint &place) const
{
    const PlanPoint along = lines[0].to - lines[0].from, away = place - lines[0].from;
    const float part = std::clamp(away.dot(along) / along.dot(along), 0.f, 1.f);
    return (away - along * part).length();
}

bool SoundDoor::isPassed(const PlanPoint &start, const PlanPoint &end) const
{
    const PlanPoint way = end - start;
    return std::any_of(lines, lines + lineCount,
                       [&](const Line &line)
                       {
                           const PlanPoint across = line.to - line.from;
                           const float one = way.cross(line.from - start), other = way.cross(line.to - start);
                           const float before = across.cross(start - line.from), after = across.cross(end - line.from);
                           return one * other < 0.f && before * after <= 0.f && before != after;
                       });
}

void DoorPlan::add(SoundDoor door, const WallPlan &walls)
{
    const SoundDoor::Line leaf = door.lines[0];
    const PlanPoint aside = (leaf.to - leaf.from).unit().turned() * BESIDE;
    const int floor = std::max(0, static_cast<int>(std::log2(static_cast<float>(door.floors & -door.floors))));
    for (const PlanPoint &end : {leaf.from, leaf.to})
        for (const PlanPoint &wing : {aside, aside * -1.f})
            if (door.lineCount < 3 && walls.isInside(end + wing, floor) && !walls.isInside(end, floor))
                door.lines[door.lineCount++] = SoundDoor::Line{end, end + wing};
    doors.push_back(door);
}

bool DoorPlan::readLeaves()
{
    bool moved = false;
    for (SoundDoor &door : doors)
    {
        const float openness = opennessOf(door.leaf);
        const WayLoss now = lossAt(openness);
        moved = moved || std::fabs(now.decibels - door.loss.decibels) > HEARD_CHANGE;
        door.loss = now;
        door.passable = std::min(openness / PASSABLE, 1.f);
    }
    return moved;
}

float DoorPlan::shareAt(std::size_t number, const PlanPoint &place) const
{
    const SoundDoor &door = doors[number];
    const float away = std::min(door.distanceTo(place) / THRESHOLD, 1.f);
    return 1.f - door.passable * (1.f - away);
}

void DoorPlan::lossesAt(const PlanPoint &place, std::vector<WayLoss> &losses) const
{
    losses.clear();
    for (std::size_t number = 0; number < doors.size(); ++number)
        losses.push_back(doors[number].loss * shareAt(number, place));
}
