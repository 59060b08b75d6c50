#include "physics/acoustics/SoundMap.h"

#include "physics/acoustics/WayMix.h"

#include "engine/levels/MapRootEntity.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr float FARTHEST_PLACE = 1e5f;  ///< metres from the origin: what lies beyond is no place of a map
constexpr float NEAR_PLACE = 1e-3f;     ///< metres within which two places are one
constexpr float LISTENER_LEAPT = 4.f;   ///< metres that nobody walks while his ways are found
constexpr float LISTENER_MOVED = 0.05f; ///< metres after which his ways are found anew
constexpr int SHOWN_FRAMES = 30;        ///< that developers see a question

bool isPlace(const Vec4 &place)
{
    // In this form a number that is none is no place either.
    return std::fabs(place.x) < FARTHEST_PLACE && std::fabs(place.y) < FARTHEST_PLACE &&
           std::fabs(place.z) < FARTHEST_PLACE;
}

bool isNear(const PlanPoint &one, const PlanPoint &other)
{
    return (one - other).length() < NEAR_PLACE;
}

/// How far a way was still to be counted from, now that its listener has moved on.
float lengthSinceMoved(const WaysFrom &ways, const PlanPoint &root, const PlanPoint &first)
{
    return (first - root).length() - (first - ways.getRoot()).length();
}

} // namespace

void SoundMap::doFrame(const Handle<MapRootEntity> &map)
{
    frameWork = 0;
    for (Question &question : questions)
        question.framesLeft = std::max(0, question.framesLeft - 1);
    if (survey.hasChanged(map))
        survey.forget();
    catchUp(map);
    if (sources.empty())
        return;
    spreadFromListener(false);
    refreshSources();
}

/// Reads walls that have changed, and how far the doors stand open.
void SoundMap::catchUp(const Handle<MapRootEntity> &map)
{
    if (!survey.isCurrent())
        rebuild(map);
    if (doors.readLeaves())
        ++state;
}

void SoundMap::rebuild(const Handle<MapRootEntity> &map)
{
    survey.read(map, walls, doors);
    for (TurnGraph::Passage &passage : passages)
        for (const int end : {0, 1})
            passage.floors[end] = survey.floorAt(passage.ends[end].y);
    graph.build(walls, passages);
    exploreAhead();
    ++state;
    nextState = 0;
    knownState = 0;
    for (Answer &answer : answers)
        answer.state = 0;
    for (SoundSource &source : sources)
        source.ends = WayEnds();
}

/// Finds what the corners see before anybody asks, but for very large maps, where it costs a frame too much.
void SoundMap::exploreAhead()
{
    WorkBudget budget(LINES_AHEAD);
    for (std::uint32_t turn = 0; turn < graph.getCount() && !budget.isSpent(); ++turn)
        graph.explore(turn, walls, doors, budget);
}

/// Goes on finding the listener's ways: all at once where none are known, or he is suddenly elsewhere.
/// @param onlyIfNone  leaves ways that are known as they are
void SoundMap::spreadFromListener(bool onlyIfNone)
{
    if (!isPlace(listener))
        return;
    const PlanPoint root = placeInPlan(listener);
    const int floor = survey.floorAt(listener.y);
    const float moved = (root - known.getRoot()).length();
    const bool isUnknown = knownState == 0 || moved > LISTENER_LEAPT || floor != known.getFloor();
    if (onlyIfNone && !isUnknown)
        return;
    if (isUnknown || (nextState == 0 && (knownState != state || moved > LISTENER_MOVED)))
    {
        next.begin(root, floor, space());
        nextState = state;
    }
    if (nextState == 0)
        return;
    WorkBudget budget = isUnknown ? WorkBudget::unlimited() : WorkBudget(LINES_A_FRAME);
    const bool isWhole = next.spread(space(), budget);
    frameWork += budget.getSpent();
    if (!isWhole)
        return;
    std::swap(known, next);
    knownState = nextState;
    nextState = 0;
}

/// Brings sources up to date, one after the other, as many as the frame may, and another one from the ground up.
void SoundMap::refreshSources()
{
    int spent = 0;
    for (std::size_t count = 0; count < sources.size() && spent < LINES_A_FRAME; ++count)
    {
        nextSource = nextSource + 1 < sources.size() ? nextSource + 1 : 0;
        spent += refresh(sources[nextSource], false, WorkBudget(LINES_A_SOURCE));
    }
    nextThorough = nextThorough + 1 < sources.size() ? nextThorough + 1 : 0;
    frameWork += spent + refresh(sources[nextThorough], true, WorkBudget(LINES_A_SOURCE));
}

/// Finds a source's way.
/// @return the lines of sight that were spent
int SoundMap::refresh(SoundSource &source, bool everywhere, WorkBudget budget)
{
    constexpr int leastCost = 1;
    if (!source.isUsed)
        return 0;
    const bool canBeHeard = isPlace(source.place) && isPlace(listener);
    if (canBeHeard)
        findEnds(known, listener, source.place, source.ends, everywhere, budget);
    source.heard = canBeHeard ? describe(known, listener, source.place, true, source.ends)
                              : HeardWay::nothingAt(isPlace(listener) ? listener : Vec4());
    return leastCost + budget.getSpent();
}

void SoundMap::refresh(SoundSource &source, const Handle<MapRootEntity> &map)
{
    catchUp(map);
    source.ends = WayEnds();
    spreadFromListener(true);
    refresh(source, true, WorkBudget::unlimited());
}

HeardWay SoundMap::hear(const Vec4 &from, const Vec4 &at, const Handle<MapRootEntity> &map, float farthest)
{
    if (!isPlace(from) || !isPlace(at))
        return HeardWay::nothingAt(isPlace(at) ? at : Vec4());
    catchUp(map);
    bool listenerIsRoot = false;
    const WaysFrom &ways = waysFor(from, at, farthest, listenerIsRoot);
    const Vec4 &root = listenerIsRoot ? at : from, &end = listenerIsRoot ? from : at;
    WorkBudget budget = WorkBudget::unlimited();
    WayEnds ends;
    findEnds(ways, root, end, ends, true, budget);
    const HeardWay heard = describe(ways, root, end, listenerIsRoot, ends);
    questions[nextQuestion] = Question{from, at, heard, SHOWN_FRAMES};
    nextQuestion = (nextQuestion + 1) % QUESTIONS;
    return heard;
}

/// The ways from one of two places; those from the sound, which others may hear too, where neither are known.
const WaysFrom &SoundMap::waysFor(const Vec4 &from, const Vec4 &at, float farthest, bool &listenerIsRoot)
{
    const PlanPoint sound = placeInPlan(from), ear = placeInPlan(at);
    const int soundFloor = survey.floorAt(from.y), earFloor = survey.floorAt(at.y);
    for (const Answer &answer : answers)
    {
        if (answer.state != state || answer.ways.getFarthest() < farthest)
            continue;
        listenerIsRoot = isNear(answer.ways.getRoot(), ear) && answer.ways.getFloor() == earFloor;
        if (listenerIsRoot || (isNear(answer.ways.getRoot(), sound) && answer.ways.getFloor() == soundFloor))
            return answer.ways;
    }
    Answer &answer = answers[nextAnswer];
    nextAnswer = (nextAnswer + 1) % ANSWERS;
    answer.ways.begin(sound, soundFloor, space(), farthest);
    WorkBudget budget = WorkBudget::unlimited();
    answer.ways.spread(space(), budget);
    answer.state = state;
    listenerIsRoot = false;
    return answer.ways;
}

/// Where a place counts as standing: not in a wall.
PlanPoint SoundMap::placeInPlan(const Vec4 &place) const
{
    return walls.broughtOut(PlanPoint(place), survey.floorAt(place.y));
}

/// What the doors on the last part of a way take, from its last turn, or its root, to its end.
WayLoss SoundMap::lossOfDoors(const WaysFrom &ways, const PlanPoint &from, const PlanPoint &there, int floor) const
{
    WayLoss loss;
    doors.forEachPassed(from, there, floor,
                        [&](std::size_t door) { loss += ways.lossOfDoor(door) * doors.shareAt(door, there); });
    return loss;
}

/// Joins a place to the ways from another one.
///
/// While somebody walks, his way changes at its end: a turn more, or one less. So what is near the turns of the last
/// time is tried first, and all others only where that is asked for or finds nothing.
/// @param ends  those of the last time
void SoundMap::findEnds(const WaysFrom &ways, const Vec4 &root, const Vec4 &end, WayEnds &ends, bool everywhere,
                        WorkBudget &budget)
{
    EndSearch search{ways, placeInPlan(end), survey.floorAt(end.y), budget};
    if (search.floor == survey.floorAt(root.y))
        offer(search, WayEnds::DIRECT, placeInPlan(root), {0.f, 0.f});
    for (int flood = 0; flood < WaysFrom::FLOODS; ++flood)
        if (ends.turns[flood] < graph.getCount())
            offerAround(search, ends.turns[flood], ways.getFlood(flood).wayTo(ends.turns[flood]).before);
    const bool isLost = search.ends.turns[0] == Turn::NONE && ends.turns[0] != Turn::NONE;
    if (everywhere || isLost)
        for (const bool isNear : {true, false}) // the near ones spare looks at the others
            for (const TurnGraph::Block &block : graph.getBlocks())
                offerBlock(search, block, isNear);
    ends = search.ends;
}

/// Takes a turn, or the root itself, as the last one before a place where the way is nearer than the best one so far.
void SoundMap::offer(EndSearch &search, std::uint32_t turn, const PlanPoint &from, const EndSearch::Costs &costs) const
{
    search.budget.spendLine();
    if (!walls.isFree(from, search.there, search.floor))
        return;
    const float length = (search.there - from).length();
    const float decibels = lossOfDoors(search.ways, from, search.there, search.floor).decibels;
    for (int flood = 0; flood < WaysFrom::FLOODS; ++flood)
    {
        const float cost = costs[flood] + length + decibels * search.ways.getFlood(flood).getMetresADecibel();
        if (cost >= search.best[flood])
            continue;
        search.best[flood] = cost;
        search.ends.turns[flood] = turn;
    }
}

void SoundMap::offerTurn(EndSearch &search, std::uint32_t turn) const
{
    search.budget.spendLook();
    if (search.budget.isSpent())
        return;
    const Turn &corner = graph.getTurn(turn);
    const EndSearch::Costs costs = {search.ways.getFlood(0).costOf(turn), search.ways.getFlood(1).costOf(turn)};
    const float length = (search.there - corner.place).length();
    const bool isNearer = costs[0] + length < search.best[0] || costs[1] + length < search.best[1];
    if (isNearer && corner.floor == search.floor && corner.mayBendTo(search.there))
        offer(search, turn, corner.place, costs);
}

/// Offers a turn, the one before it and all that it sees.
void SoundMap::offerAround(EndSearch &search, std::uint32_t turn, std::uint32_t before) const
{
    offerTurn(search, turn);
    if (before != Turn::NONE)
        offerTurn(search, before);
    if (graph.isExplored(turn))
        for (const TurnEdge &edge : graph.edgesOf(turn))
            offerTurn(search, edge.to);
}

/// Offers the turns of a block that lies near the place, or of one that does not, unless all ways over it are too long.
void SoundMap::offerBlock(EndSearch &search, const TurnGraph::Block &block, bool isNear) const
{
    constexpr float near = 8.f; // metres
    search.budget.spendLook();
    const float least = (block.middle - search.there).length() - block.radius;
    if ((least < near) != isNear)
        return;
    // By a passage a turn is nearer than it lies.
    const float fromRoot = passages.empty() ? (block.middle - search.ways.getRoot()).length() - block.radius : 0.f;
    const bool isReached = fromRoot < 2.f * search.ways.getFarthest(); // its last part may lead far beyond
    if (isReached && least + fromRoot < std::max(search.best[0], search.best[1]))
        for (std::uint32_t turn = block.first; turn < block.last; ++turn)
            offerTurn(search, turn);
}

/// Puts together what comes by the ways that were found, and through the walls.
HeardWay SoundMap::describe(const WaysFrom &ways, const Vec4 &root, const Vec4 &end, bool listenerIsRoot,
                            const WayEnds &ends)
{
    const PlanPoint here = placeInPlan(root), there = placeInPlan(end);
    const int floor = survey.floorAt(end.y);
    const Vec4 &ear = listenerIsRoot ? root : end, &sound = listenerIsRoot ? end : root;
    WayMix mix(ear, sound);
    bool inSight = false;
    for (int number = 0; number < WaysFrom::FLOODS; ++number)
    {
        const std::uint32_t turn = ends.turns[number];
        if (turn == Turn::NONE)
            continue;
        if (turn == WayEnds::DIRECT)
        {
            const WayLoss loss = lossOfDoors(ways, here, there, floor);
            inSight = inSight || loss.decibels == 0.f;
            mix.addWay((there - here).length(), loss, PlanPoint(sound) - PlanPoint(ear));
            continue;
        }
        const WayTo &way = ways.getFlood(number).wayTo(turn);
        const PlanPoint corner = graph.getTurn(turn).place, first = graph.getTurn(way.first).place;
        const PlanPoint last = there - corner;
        WayLoss loss = way.loss;
        loss += lossOfDoors(ways, corner, there, floor);
        if (way.door != SeenTurn::NO_DOOR)
            loss += ways.lossOfDoor(way.door) * (doors.shareAt(way.door, there) - 1.f);
        loss += WayFlood::lossOfTurn(way.direction, last.unit());
        mix.addWay(way.length + lengthSinceMoved(ways, here, first) + last.length(), loss,
                   (listenerIsRoot ? first : corner) - PlanPoint(ear));
    }
    if (!inSight)
        mix.addWalls(walls.thicknessBetween(root, end));
    HeardWay heard = mix.getHeard();
    heard.inSight = inSight;
    return heard;
}

void SoundMap::traceWay(const SoundSource &source, std::vector<Vec4> &corners) const
{
    corners.clear();
    corners.push_back(source.place);
    const std::uint32_t end = source.ends.turns[WaysFrom::FLOODS - 1];
    if (end < graph.getCount())
        for (std::uint32_t turn = end; turn != Turn::NONE;
             turn = known.getFlood(WaysFrom::FLOODS - 1).wayTo(turn).before)
        {
            const PlanPoint place = graph.getTurn(turn).place;
            corners.push_back(Vec4(place.x, listener.y, place.z, 1.f));
        }
    if (end != Turn::NONE)
        corners.push_back(listener);
    std::reverse(corners.begin(), corners.end());
}
