// FloorSurvey: where somebody can stand in a map, at all heights, how far he gets, and how light it is there.
#pragma once

#include "object/tree/Object.h"

#include "tools/views/FloorSolids.h"

#include "foundation/Vector.h"

#include <cstdint>
#include <utility>
#include <vector>

class Entity;
class MapRootEntity;

/// A map's floors as spots, one in the middle of each small square that somebody can stand on, for those who build it.
///
/// Looks at what stands in a map at one moment: floors, stairs and slopes, walls and furniture, the leaves of doors;
/// what can be pushed away and who walks about count as nothing. A spot has room for a body that stoops. Several spots
/// lie above each other where there are storeys. Metres, in the space of the map's transforms. Made by scripts, and owned
/// by what it hangs under; moves nothing, and never looks at a thing again by itself:
///
///     survey = kaVel.make('FloorSurvey', parent=editor)
///     survey.begin(map, 0.25)
///     while survey.work(500): ...
///     survey.flood(feet)
class FloorSurvey : public Object
{
    KV_REFLECTED(FloorSurvey)
public:
    /// The number of a spot or door that there is not.
    static constexpr int NONE = -1;
    /// The most squares that a map is divided into: with more of them they are made larger.
    static constexpr int MOST_SQUARES = 1 << 18;
    /// How far above a floor its light is asked for, metres.
    static constexpr float LIGHT_ABOVE = 0.05f;

    FloorSurvey() = default;

    /// Reads what stands in a map; the spots come with `work`.
    ///
    /// Anything but a live map, or squares of less than 0.05 m, is logged as an error and leaves a survey without spots.
    /// @param edge  of a square, metres
    void begin(Handle<MapRootEntity> map, float edge);
    /// Goes on with so many squares.
    /// @return whether there is more to do
    bool work(int squares);
    /// Goes on with the light of so many spots, as it is at this moment.
    /// @return whether there is more to do
    bool shine(int spots);
    /// Asks for the light of all spots anew, with `shine`; what was found so far holds until then.
    void dim() { lit = 0; }

    /// Edge of a square, metres.
    float getEdge() const { return edge; }
    /// Count of the spots that were found so far, row by row.
    int getSpotCount() const { return static_cast<int>(spots.size()); }
    /// Where a spot is; the zero vector for a number that is none.
    Vec4 getSpot(int spot) const;
    /// The spot nearest to somebody's feet; NONE where there is none within a metre.
    int findSpot(Vec4 feet) const;
    /// Whether something is drawn where a spot is: a floor that somebody has made, and not the plane at height 0.
    bool isShown(int spot) const { return isSpot(spot) && at(spot).shown; }
    /// Luminance of the light on a spot, as `lightAt` gives it LIGHT_ABOVE the floor; below 0 while it is not known.
    float getLight(int spot) const { return isSpot(spot) ? at(spot).light : -1.f; }
    /// Whether the spots around a spot, on all sides, are on its level: no ledge and no corner.
    bool isInner(int spot) const;
    /// How steeply the floor goes up or down around a spot, metres for a metre.
    float getSlope(int spot) const;

    /// Count of the doors.
    int getDoorCount() const { return solids.getDoorCount(); }
    /// The entity of a door's leaf; invalid for a number that is none.
    Handle<Entity> getDoor(int door) const { return solids.getDoor(door); }
    /// Keeps `flood` from going through a door, or lets it: at first the ones that are shut and locked are barred.
    void setBarred(int door, bool barred);
    bool getBarred(int door) const;

    /// Finds how far somebody gets on foot, and how long his ways are; he steps over what is low and down from ledges.
    /// @param feet  where he stands
    /// @return count of the spots that he reaches, 0 where he stands on none
    int flood(Vec4 feet);
    /// Metres of the way to a spot from where the last flood began; below 0 where none leads there.
    float getWay(int spot) const { return isSpot(spot) ? at(spot).way : -1.f; }
    /// The door in whose opening a spot lies; NONE for another one.
    int getDoorAt(int spot) const { return isSpot(spot) ? at(spot).door : NONE; }

    /// Divides the spots that are drawn and were not reached by the last flood into places that hang together.
    /// @param least  square metres, of those that count
    /// @return their count, the largest first
    int findIslands(float least);
    /// Finds the stretches of spots that were reached and are darker than some luminance.
    ///
    /// The light has to be known. How long one is, is the longest of the shortest ways within it, near enough.
    /// @return their count, the longest first
    int findStretches(float darkest);
    /// A spot of a place or stretch, by `findIslands` or `findStretches`, whichever was called last: where it begins.
    int getAreaBegin(int area) const { return isArea(area) ? areas[static_cast<std::size_t>(area)].begin : NONE; }
    /// The other end of a stretch; the same as the begin for a place.
    int getAreaEnd(int area) const { return isArea(area) ? areas[static_cast<std::size_t>(area)].end : NONE; }
    /// Metres of a stretch, or square metres of a place.
    float getAreaSize(int area) const { return isArea(area) ? areas[static_cast<std::size_t>(area)].size : 0.f; }
    /// The place or stretch that a spot belongs to; NONE for none.
    int getAreaOf(int spot) const { return isSpot(spot) ? at(spot).area : NONE; }

private:
    struct Spot
    {
        float height;
        std::int32_t square;
        std::int32_t door = NONE;
        std::int32_t area = NONE;
        float light = -1.f;
        float way = -1.f;
        bool shown = false;
    };
    struct Area
    {
        std::int32_t begin;
        std::int32_t end;
        float size;
    };
    typedef std::pair<float, std::int32_t> Open; ///< way and spot

    bool isSpot(int spot) const { return spot >= 0 && spot < getSpotCount(); }
    bool isArea(int area) const { return area >= 0 && area < static_cast<int>(areas.size()); }
    const Spot &at(int spot) const { return spots[static_cast<std::size_t>(spot)]; }
    Spot &at(int spot) { return spots[static_cast<std::size_t>(spot)]; }
    void lookAtSquare();
    template <class Function>
    void forEachBeside(int spot, Function function) const;
    template <class Allowed>
    int walk(int from, std::vector<float> &ways, Allowed allowed) const;
    template <class Member>
    void gather(Member isMember);
    void rank(float least);
    void measureStretch(Area &area);

    Handle<MapRootEntity> map;
    FloorSolids solids;
    float edge = 0.25f;
    float west = 0.f;  ///< x of the first column's middle
    float south = 0.f; ///< z of the first row's middle
    int columns = 0;
    int rows = 0;
    int looked = 0;                       ///< squares so far
    int lit = 0;                          ///< spots whose light is as new as the last `dim`
    std::vector<Spot> spots;              ///< row by row, in a square from below
    std::vector<std::int32_t> firstSpots; ///< of each square, and behind the last one their count
    std::vector<bool> barred;             ///< by door
    std::vector<Area> areas;
    std::vector<float> scratch;  ///< ways of a walk, by spot
    std::vector<float> standing; ///< heights of a square
};
