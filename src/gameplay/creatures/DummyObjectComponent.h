// DummyObjectComponent: walks a list of points and leaves prints that fade.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"
#include "object/tree/PythonObject.h"
#include "object/tree/ReflectorPtr.h"

#include <vector>

class TransformComponent;

/// Walks from point to point of a list, the first one again after the last, under the component key "dummy".
///
/// Walks by the "pathFollower" beside it, or straight ahead at `walkSpeed` where there is none. However it is moved, a
/// print is left for each `footstepLength` over the ground, the event "Footstep" of the "sound" beside it is played, and
/// `stepFunc` is called; a print is forgotten after `footstepFadeTime`. Metres and seconds, in the space of the entity's
/// transform. Draws nothing but for developers.
class DummyObjectComponent : public SimpleComponent
{
    KV_REFLECTED(DummyObjectComponent)
public:
    /// Which foot comes next.
    enum Footfall
    {
        LEFT_FOOT = 0,
        RIGHT_FOOT = 1
    };
    /// A print.
    struct Footstep
    {
        Vec4 position;
        Seconds time = 0.0; ///< since it was left
    };
    using DummyPointCont = std::vector<Vec4>;
    using FootstepCont = std::vector<Footstep>;

    /// The most prints that are remembered; older ones are forgotten early.
    static constexpr std::size_t MOST_FOOTSTEPS = 128;
    /// The most points of a list.
    static constexpr unsigned MOST_POINTS = 4096;

    DummyObjectComponent() = default;

    /// Notes where it stands.
    void onLoadComplete() override;
    /// Walks on, leaves prints and lets them fade.
    void doFrame() override;
    /// Draws points and prints, with the switch of path information.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Stands still from now on, with both feet down.
    void stopWalking();
    /// Leaves a print where it stands, heard, and takes the other foot next.
    void placeFootstep();
    /// Plays the event "Footstep" of the "sound" beside it.
    void playFootstepSound();
    /// Notes where the feet of who stands here are: a little to both sides.
    void updateStationaryFootPositions();

    /// Has the level's persistent state set the points again when the map is loaded the next time.
    void markPointsForSaving();
    /// The points as a script's list.
    PythonObject getSavedPoints() const;
    /// Sets the points from a sequence of vectors, or of three numbers each; TypeError or ValueError for anything else.
    void setSavedPoints(const PythonObject &points);

    /// Whether it walks from point to point.
    bool getFollowPoints() const { return followPoints; }
    void setFollowPoints(bool val) { followPoints = val; }
    /// Number of the point that it walks to.
    unsigned getCurrFollowIndex() const { return currFollowIndex; }
    /// Number of the point that `currDummyPoint` reads and writes.
    unsigned getCurrDummyPointIndex() const { return currDummyPointIndex; }
    /// Chooses that point; a number beyond the list chooses the last one.
    void setCurrDummyPointIndex(unsigned val);
    /// The chosen point; the origin where the list is empty.
    Vec4 getCurrDummyPoint() const;
    /// Moves the chosen point; nothing where the list is empty.
    void setCurrDummyPoint(Vec4 val);
    unsigned getNumDummyPoints() const { return static_cast<unsigned>(dummyPoints.size()); }
    /// Shortens the list, or adds points where it stands; more than MOST_POINTS are logged as an error and refused.
    void setNumDummyPoints(unsigned val);
    /// Way from print to print, metres.
    float getFootstepLength() const { return footstepLength; }
    void setFootstepLength(float val);
    /// Time after which a print is gone, seconds.
    double getFootstepFadeTime() const { return footstepFadeTime; }
    void setFootstepFadeTime(double val);
    /// How fast it walks without a "pathFollower", metres a second.
    float getWalkSpeed() const { return walkSpeed; }
    void setWalkSpeed(float val);
    /// Which foot comes next.
    Footfall getCurrFootfall() const { return currFootfall; }
    Vec4 getLeftStationaryFoot() const { return leftStationaryFoot; }
    Vec4 getRightStationaryFoot() const { return rightStationaryFoot; }
    /// Count of the prints that have not faded.
    unsigned getFootstepCount() const { return static_cast<unsigned>(footsteps.size()); }
    /// Strength of a print, the oldest first: 1 as it is left, 0 once it is gone, and for a print that there is not.
    float getFootstepStrength(unsigned number) const;
    /// Called with the entity for each print, before the feet change; null for nothing.
    ReflectorPtr getStepFunc() const { return stepFunc; }
    void setStepFunc(ReflectorPtr val) { stepFunc = val; }
    /// What it does, as a part of a sentence; empty while it stands.
    String tell();

private:
    TransformComponent *transform() const;
    void walk(TransformComponent &place, float seconds);
    bool walkTo(TransformComponent &place, const Vec4 &point, float seconds);
    void fadeFootsteps(Seconds frameTime);
    void tellStep();

    bool followPoints = false;
    unsigned currFollowIndex = 0;
    unsigned currDummyPointIndex = 0;
    Footfall currFootfall = LEFT_FOOT;
    float footstepLength = 0.7f;    ///< metres
    Seconds footstepFadeTime = 8.0; ///< seconds
    Vec4 prevFootstepPos;           ///< where the last print was left
    Vec4 leftStationaryFoot;
    Vec4 rightStationaryFoot;
    DummyPointCont dummyPoints;
    FootstepCont footsteps; ///< the oldest first
    float walkSpeed = 0.8f; ///< metres a second
    ReflectorPtr stepFunc;
};
