// SoundWays: how sound goes through a map, around its corners, through its doors and its walls.
#pragma once

#include "physics/acoustics/HeardWay.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/Vector.h"

#include <memory>

class MapRootEntity;
class SoundMap;
struct SoundSource;

/// Answers how loud, how dull and from where a sound of one place is heard at another, under the component key
/// "soundWays" of a map's root.
///
/// Sound takes the shortest way through the air: around the corners of walls, through doorways, and past doors by how
/// far they stand open; it is heard from the last corner that it turns around. A closed door takes 22 dB and all above
/// 900 Hz, each corner a little by how sharp the turn is. Besides, a dull rest comes straight through walls, 34 dB less
/// and more by their thickness. Both are summed; a way of more than 72 m is none. Neither gain nor distance jumps while
/// something moves.
///
/// Walls are what stops others, volumes of type BV_WALL with a body beside them, where they reach through the height of
/// an ear, 1.5 m above the map's floor; and cells of ".MapData_mainPathGrid/grid" with a value of 1 or more. What is
/// lower lets sound pass. A map without a partitioning grid has neither walls nor doors. Metres, in the space in which
/// the map's transforms hold their numbers. Plays nothing itself.
class SoundWays : public SimpleComponent
{
    KV_REFLECTED(SoundWays)
public:
    /// The number of a source that there is not.
    static constexpr int NO_SOURCE = -1;

    SoundWays();
    ~SoundWays() override;

    /// The ways of a map; invalid where its root has none.
    static Handle<SoundWays> ofMap(const Handle<MapRootEntity> &map);

    /// Notes walls and doors that have changed, and brings the listener's ways and some of the sources up to date.
    ///
    /// Bounded: so many lines of sight and corners a frame, however large the map is; see `getFrameWork`.
    void doFrame() override;
    /// Draws the ways of the sources and of the last questions while the debug switches ask for them: lines from green,
    /// loud, to red, each with its loss in decibels.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// How a sound of one place is heard at another, at this moment.
    ///
    /// Either way round is the same. A place that is no number, or in no map, hears nothing: gain 0.
    /// @cost the first question from or to a place looks for the ways from there through the whole map; further ones
    ///       with the same end, such as a step that fifty creatures may hear, some lines of sight each
    HeardWay hear(Vec4 from, Vec4 at);
    /// As `hear`, for a sound that nobody hears farther away: longer ways are not looked for, which costs less.
    /// @param farthest  metres
    HeardWay hearWithin(Vec4 from, Vec4 at, float farthest);
    /// How loud a sound of one place is at another: its loudness a metre away, less what the way takes.
    ///
    /// Linear, in the unit of `loudness`; by distance it falls to a half with each doubling.
    float loudnessAt(Vec4 from, float loudness, Vec4 at);

    /// Sets where the sources are heard; their ways follow within some frames.
    void setListener(Vec4 place);
    /// Takes a sound that plays among those whose ways are kept up to date, and finds its way at once.
    /// @return its number, for the functions beside this one, until it is dropped
    int addSource(Vec4 place);
    /// Moves a source; a number that is none is passed over.
    void moveSource(int source, Vec4 place);
    /// Lets go of a source; its number may be given again.
    void dropSource(int source);
    /// How a source was heard when its way was last found, at most some frames ago; unheard for a number that is none.
    ///
    /// Borrowed until the next source is added.
    const HeardWay &getHeard(int source) const;
    /// Count of the sources.
    int getSourceCount() const;

    /// Adds a further floor at a height, metres: a storey with walls of its own at the height of an ear above it.
    ///
    /// A place belongs to the highest floor that is not above it. From floor to floor sound comes through passages and,
    /// dull, through slabs. At most 8 floors.
    void addFloor(float height);
    /// Adds a way between two places that the walls do not show, as stairs, a shaft or a pipe, of their distance.
    /// @param gain  linear, what it leaves of a sound, above 0 up to 1
    void addPassage(Vec4 oneEnd, Vec4 otherEnd, float gain);
    /// Has walls and doors read anew in the next frame; they are watched, so that nobody needs to ask.
    void wallsChanged();

    /// Lines of sight and corners that the last frame step went through: what its cost is made of.
    int getFrameWork() const;

private:
    Handle<MapRootEntity> findMap();
    SoundSource *findSource(int number) const;

    std::unique_ptr<SoundMap> sounds;
};
