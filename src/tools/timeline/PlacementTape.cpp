#include "tools/timeline/PlacementTape.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace
{
constexpr float STEPS = 32767;

std::int16_t rounded(float part)
{
    return static_cast<std::int16_t>(std::lround(std::clamp(part, -1.0f, 1.0f) * STEPS));
}

bool isSame(const Vec4 &a, const Vec4 &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

bool isSame(const Quaternion &a, const Quaternion &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class List>
auto &at(List &list, std::uint32_t thing)
{
    if (list.size() <= thing)
        list.resize(thing + 1);
    return list[thing];
}
} // namespace

void PlacementTape::clear()
{
    moments.clear();
    before.clear();
    latest.clear();
    bytes = 0;
    hasSought = false;
}

void PlacementTape::begin(double seconds)
{
    if (!moments.empty())
        bytes += sizeOf(moments.back());
    while (bytes > mostBytes && moments.size() > 1)
        dropOldest();
    moments.push_back({seconds, {}, {}});
}

void PlacementTape::add(std::uint32_t thing, const Placement &placement)
{
    Place &last = at(latest, thing);
    const bool isNew = !last.known;
    Moment &moment = moments.back();
    const Quaternion &turn = placement.orientation;
    if (isNew || !isSame(last.placement.position, placement.position) || !isSame(last.placement.orientation, turn))
        moment.changes.push_back({thing,
                                  {placement.position.x, placement.position.y, placement.position.z},
                                  {rounded(turn.r), rounded(turn.i), rounded(turn.j), rounded(turn.k)}});
    if (isNew || !isSame(last.placement.scale, placement.scale))
        moment.scales.push_back({thing, {placement.scale.x, placement.scale.y, placement.scale.z}});
    last = {true, placement};
}

const PlacementTape::Moment *PlacementTape::find(std::int64_t moment) const
{
    const std::int64_t index = moment - oldest;
    const bool isKept = index >= 0 && index < static_cast<std::int64_t>(moments.size());
    return isKept ? &moments[static_cast<std::size_t>(index)] : nullptr;
}

double PlacementTape::getSeconds(std::int64_t moment) const
{
    const Moment *const kept = find(moment);
    return kept ? kept->seconds : 0.0;
}

int PlacementTape::getChanges(std::int64_t moment) const
{
    const Moment *const kept = find(moment);
    return kept ? static_cast<int>(kept->changes.size()) : 0;
}

const std::vector<PlacementTape::Place> &PlacementTape::seek(std::int64_t moment)
{
    const std::int64_t wanted = std::clamp(moment, getOldest(), std::max(getOldest(), getNewest()));
    if (!hasSought || soughtMoment > wanted || soughtMoment < oldest)
    {
        sought = before;
        soughtMoment = oldest - 1;
        hasSought = true;
    }
    while (soughtMoment < wanted && !moments.empty())
        apply(moments[static_cast<std::size_t>(++soughtMoment - oldest)], sought);
    return sought;
}

std::size_t PlacementTape::sizeOf(const Moment &moment)
{
    return sizeof(Moment) + moment.changes.capacity() * sizeof(Change) + moment.scales.capacity() * sizeof(ScaleChange);
}

void PlacementTape::apply(const Moment &moment, std::vector<Place> &places)
{
    for (const Change &change : moment.changes)
    {
        Place &place = at(places, change.thing);
        place.known = true;
        place.placement.position = Vec4(change.position[0], change.position[1], change.position[2], 1);
        Quaternion turn(
            static_cast<float>(change.orientation[0]) / STEPS, static_cast<float>(change.orientation[1]) / STEPS,
            static_cast<float>(change.orientation[2]) / STEPS, static_cast<float>(change.orientation[3]) / STEPS);
        place.placement.orientation = turn;
    }
    for (const ScaleChange &change : moment.scales)
        at(places, change.thing).placement.scale = Vec4(change.scale[0], change.scale[1], change.scale[2], 0);
}

void PlacementTape::dropOldest()
{
    apply(moments.front(), before);
    bytes -= std::min(bytes, sizeOf(moments.front()));
    moments.pop_front();
    ++oldest;
}
