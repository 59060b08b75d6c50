// SoundMap: the walls, doors and ways of one map, and who listens and sounds in it.
#pragma once

#include "physics/acoustics/DoorPlan.h"
#include "physics/acoustics/HeardWay.h"
#include "physics/acoustics/MapSurvey.h"
#include "physics/acoustics/TurnGraph.h"
#include "physics/acoustics/WallPlan.h"
#include "physics/acoustics/WayFlood.h"

#include <cstdint>
#include <limits>
#include <vector>

class MapRootEntity;

/// How a place is joined to the ways from another one: the last turn of the nearest way, for each flood.
struct WayEnds
{
    static constexpr std::uint32_t DIRECT = Turn::NONE - 1; ///< in sight

    std::uint32_t turns[WaysFrom::FLOODS] = {Turn::NONE, Turn::NONE};
};

/// Who sounds.
struct SoundSource
{
    Vec4 place;
    HeardWay heard;
    WayEnds ends;
    bool isUsed = false;
};

/// What `SoundWays` knows of its map.
///
/// Keeps all ways from the listener, made anew in the background while he or a door moves, and those from some places
/// that were asked for. Places are in the space of the map's transforms, metres.
class SoundMap
{
public:
    /// A question that was answered, for developers to see.
    struct Question
    {
        Vec4 from;
        Vec4 at;
        HeardWay heard;
        int framesLeft = 0; ///< that it is shown
    };

    /// Lines of sight that a frame may spend on ways, and on sources, each.
    static constexpr int LINES_A_FRAME = 96;
    /// Those that one source may spend.
    static constexpr int LINES_A_SOURCE = 256;
    /// Those that a change of walls may take at once.
    static constexpr int LINES_AHEAD = 200000;
    static constexpr int QUESTIONS = 16;

    /// Follows the map and brings ways up to date.
    void doFrame(const Handle<MapRootEntity> &map);
    /// Answers a question at once; for ways up to a length, metres.
    HeardWay hear(const Vec4 &from, const Vec4 &at, const Handle<MapRootEntity> &map,
                  float farthest = WayFlood::FARTHEST);
    /// Finds a source's way at once.
    void refresh(SoundSource &source, const Handle<MapRootEntity> &map);

    /// The corners of the way by which one of a map's sources is heard, from the listener on; for developers.
    void traceWay(const SoundSource &source, std::vector<Vec4> &corners) const;

    MapSurvey survey;
    std::vector<TurnGraph::Passage> passages;
    Vec4 listener = Vec4(0.f, 0.f, 0.f, 1.f);
    std::vector<SoundSource> sources; ///< by number; those that are not used may be given again
    Question questions[QUESTIONS];
    int frameWork = 0; ///< lines of sight in the last frame

private:
    /// The ways from a place that somebody asked for.
    struct Answer
    {
        WaysFrom ways;
        std::uint32_t state = 0; ///< of the map when they were found; 0 for none
    };
    static constexpr int ANSWERS = 4;

    /// A search for the last turn before a place.
    struct EndSearch
    {
        typedef float Costs[WaysFrom::FLOODS];

        const WaysFrom &ways;
        PlanPoint there;
        int floor;
        WorkBudget &budget;
        WayEnds ends = WayEnds();
        Costs best = {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity()};
    };

    SoundSpace space() { return SoundSpace{graph, walls, doors}; }
    void catchUp(const Handle<MapRootEntity> &map);
    void rebuild(const Handle<MapRootEntity> &map);
    void exploreAhead();
    void spreadFromListener(bool onlyIfNone);
    void refreshSources();
    int refresh(SoundSource &source, bool everywhere, WorkBudget budget);
    PlanPoint placeInPlan(const Vec4 &place) const;
    const WaysFrom &waysFor(const Vec4 &from, const Vec4 &at, float farthest, bool &listenerIsRoot);

    WayLoss lossOfDoors(const WaysFrom &ways, const PlanPoint &from, const PlanPoint &there, int floor) const;
    void findEnds(const WaysFrom &ways, const Vec4 &root, const Vec4 &end, WayEnds &ends, bool everywhere,
                  WorkBudget &budget);
    void offer(EndSearch &search, std::uint32_t turn, const PlanPoint &from, const EndSearch::Costs &costs) const;
    void offerTurn(EndSearch &search, std::uint32_t turn) const;
    void offerAround(EndSearch &search, std::uint32_t turn, std::uint32_t before) const;
    void offerBlock(EndSearch &search, const TurnGraph::Block &block, bool isNear) const;
    HeardWay describe(const WaysFrom &ways, const Vec4 &root, const Vec4 &end, bool listenerIsRoot,
                      const WayEnds &ends);

    WallPlan walls;
    DoorPlan doors;
    TurnGraph graph;
    std::uint32_t state = 1; ///< counts changes of walls and doors
    WaysFrom known;          ///< from the listener, whole
    std::uint32_t knownState = 0;
    WaysFrom next;                ///< from the listener, as they are being found
    std::uint32_t nextState = 0;  ///< of the map when that began; 0 while nothing is under way
    std::size_t nextSource = 0;   ///< to be brought up to date
    std::size_t nextThorough = 0; ///< the same, from the ground up
    Answer answers[ANSWERS];
    int nextAnswer = 0;   ///< to be replaced
    int nextQuestion = 0; ///< to be replaced
};
