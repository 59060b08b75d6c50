// PerceptionComponent: what a creature sees and hears of the one that it is after, and what it makes of that.
#pragma once

#include "ai/perception/Belief.h"

#include "engine/entities/Entity.h"
#include "engine/entities/SimpleComponent.h"

#include "foundation/Matrix4.h"
#include "foundation/TimeTypes.h"
#include "object/tree/ReflectorPtr.h"

#include <array>

class DebugCollectorComponent;
class MapRootEntity;
class PartitioningGrid;
class PerceptionManager;
class SeenBody;
class TransformComponent;
struct HeardWay;

/// The senses of a creature, under the component key "perception".
///
///     senses = kaVel.addComponent(creature, 'perception', 'PerceptionComponent')
///     ...
///     if senses.knows: follower.goTo(senses.place)
///
/// Eyes need light on the target, at several points of its body, a distance within `sightRange`, an angle within the
/// view, which fades towards its rim, and a line that neither walls nor leaves of doors cut. Ears hear what the level's
/// sounds leave of themselves on their way around corners, through doors and walls. Both fill a suspicion from 0 to 1,
/// which drains again while nothing is perceived. From `noticeLevel` on the creature knows; the place where it takes
/// the target for grows vaguer, and is forgotten at last. It never learns more than it perceived.
///
/// The target is the player unless another is set. Metres and seconds of the level's time, places in the space of the
/// creature's map; luminances as `lightAt` gives them, loudness linear. Looks are spread over `lookInterval`; what was
/// seen counts until the next look. Switches make others of it: `hasEyes` off for what only hears, `hasEars` off for
/// what only sees, `seesInDark` for what needs no light, `seesLightOnly` for what perceives nothing but light, from all
/// sides, and `watched` for what must not be looked at.
class PerceptionComponent : public SimpleComponent
{
    KV_REFLECTED(PerceptionComponent)
public:
    PerceptionComponent() = default;

    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    /// Looks when its turn has come, and lets time pass.
    void doFrame() override;
    /// Draws view, hearing, lines of sight, the remembered place and what it thinks, while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// How sure it is that the target is about, 0 to 1.
    float getSuspicion() const { return belief.getSuspicion(); }
    /// Sets the suspicion; cut to 0..1.
    void setSuspicion(float val);
    /// Whether it saw the target, or its light, when it looked last.
    bool getSeen() const { return belief.getSees(); }
    /// How well it saw the target then, 0 to 1: its light, distance, angle, and how much of it was in sight.
    float getClarity() const { return belief.getClarity(); }
    /// Whether it heard something within the last second.
    bool getHeard() const { return belief.getSinceHeard() < 1.f; }
    /// Name of the sound that it took the target's place from; empty where it did not.
    String getHeardName() const { return belief.getHeardName(); }
    /// Where it believes the target is; where it stood itself at first.
    Vec4 getPlace() const;
    /// How far from there the target may be by now, metres; `mostVagueness` where it knows of no place.
    float getVagueness() const;
    /// Whether it knows that the target is about, and where it was: from `noticeLevel` on until it has forgotten.
    bool getKnows() const { return belief.getKnows(); }
    /// Whether it remembers a place at all, known or only suspected.
    bool getRemembers() const { return belief.hasPlace(); }
    /// Seconds since it saw the target; very many where it never did.
    float getSinceSeen() const { return belief.getSinceSeen(); }
    /// Seconds since it heard something; very many where it never did.
    float getSinceHeard() const { return belief.getSinceHeard(); }
    /// Whether the player sees it: in the picture, in light of `watchedLight` or more, and with nothing between.
    /// @cost once a frame up to five segments and five questions for the light
    bool getWatched();
    /// Whether the player would see it at another place of its map, turned as it is; see `getWatched`.
    /// @cost as that, each time
    bool wouldBeWatched(Vec4 where);
    /// How clearly it would see its target from a place, 0 to 1, if its eyes were there and looked some way.
    ///
    /// By the target's light, distance and angle, and by what stands between, as it sees at any time; it learns nothing
    /// by that. 0 where it has no eyes, no target, or the numbers are none.
    /// @param ahead  of any length but 0
    /// @cost up to nine segments and questions for the light
    float clarityFrom(Vec4 eye, Vec4 ahead);
    /// What it perceives, as a part of a sentence: `heard "Steps on stone" 4 m to the north-east, fairly sure`.
    ///
    /// Empty where it perceives and remembers nothing. North is +z.
    String tell();

    /// Forgets all at once, without a call of `lostFunc`.
    void forget() { belief.forget(); }
    /// Makes it know of a place, as if somebody had told it.
    /// @param howVague  metres
    void alarm(Vec4 where, float howVague);
    /// What it is after.
    Handle<Entity> getTarget();
    /// Sets what it is after; an invalid handle for the player.
    void setTarget(Handle<Entity> val);

    /// Called with the creature's entity when it begins to know; null for nothing.
    ReflectorPtr getNoticedFunc() const { return noticedFunc; }
    void setNoticedFunc(ReflectorPtr val) { noticedFunc = val; }
    /// Called with the creature's entity when it has forgotten what it knew; null for nothing.
    ReflectorPtr getLostFunc() const { return lostFunc; }
    void setLostFunc(ReflectorPtr val) { lostFunc = val; }

    // What it perceives with.

    bool getHasEyes() const { return hasEyes; }
    void setHasEyes(bool val) { hasEyes = val; }
    bool getHasEars() const { return hasEars; }
    void setHasEars(bool val) { hasEars = val; }
    /// Whether it sees without light.
    bool getSeesInDark() const { return seesInDark; }
    void setSeesInDark(bool val) { seesInDark = val; }
    /// Whether it perceives nothing but light, from all sides: what of the target is lit, its lamps, and where they shine.
    bool getSeesLightOnly() const { return seesLightOnly; }
    void setSeesLightOnly(bool val) { seesLightOnly = val; }
    /// Whether it sees the lamps that the target carries, and where they shine, though the target be dark.
    bool getNoticesLamps() const { return noticesLamps; }
    void setNoticesLamps(bool val) { noticesLamps = val; }
    /// Whether sounds of other creatures that perceive matter to it.
    bool getHearsCreatures() const { return hearsCreatures; }
    void setHearsCreatures(bool val) { hearsCreatures = val; }
    /// Where its eyes and ears are, in its own axes from its transform, metres.
    Vec4 getEyeOffset() const { return eyeOffset; }
    void setEyeOffset(Vec4 val);

    // How far it perceives. What is no number, or below 0, is logged as an error and changes nothing.

    /// How far it sees, metres.
    float getSightRange() const { return sightRange; }
    void setSightRange(float val);
    /// Half angle of its full view, radians.
    float getSightAngle() const { return sightAngle; }
    void setSightAngle(float val);
    /// Half angle at which its view ends, radians; half a turn sees all around.
    float getPeripheralAngle() const { return peripheralAngle; }
    void setPeripheralAngle(float val);
    /// How near, metres, it perceives the target without light and without looking at it.
    float getNearRange() const { return nearRange; }
    void setNearRange(float val);
    /// Luminance below which it sees nothing.
    float getDarkest() const { return darkest; }
    void setDarkest(float val);
    /// Luminance from which on it sees as well as it can.
    float getBrightest() const { return brightest; }
    void setBrightest(float val);
    /// Luminance on itself from which on it can be watched.
    float getWatchedLight() const { return watchedLight; }
    void setWatchedLight(float val);
    /// The softest sound that it hears, linear: a step of 0.04 is heard 10 m away at 0.004.
    float getHearingThreshold() const { return hearingThreshold; }
    void setHearingThreshold(float val);
    /// How near to itself, metres, it takes what is not the target's for its own noise.
    float getOwnNoiseRange() const { return ownNoiseRange; }
    void setOwnNoiseRange(float val);
    /// Seconds from look to look.
    float getLookInterval() const { return lookInterval; }
    void setLookInterval(float val);

    // How it comes to believe. What is no number, or below 0, is logged as an error and changes nothing.

    /// Suspicion a second from a target in full light and full view.
    float getSightGain() const { return temper.sightGain; }
    void setSightGain(float val);
    /// Suspicion from one sound, 24 dB or more above the softest one.
    float getHearingGain() const { return temper.hearingGain; }
    void setHearingGain(float val);
    /// Suspicion that it loses a second while it perceives nothing.
    float getDrainRate() const { return temper.drainRate; }
    void setDrainRate(float val);
    /// Seconds that it waits before it loses any.
    float getPatience() const { return temper.patience; }
    void setPatience(float val);
    /// Suspicion from which on it knows, 0 to 1.
    float getNoticeLevel() const { return temper.noticeLevel; }
    void setNoticeLevel(float val);
    /// Seconds after the last perception until it has forgotten.
    float getMemoryTime() const { return temper.memoryTime; }
    void setMemoryTime(float val);
    /// Metres a second by which the place of the target grows vaguer.
    float getVaguenessGrowth() const { return temper.vaguenessGrowth; }
    void setVaguenessGrowth(float val);
    /// The vaguest that a place becomes, metres.
    float getMostVagueness() const { return temper.mostVagueness; }
    void setMostVagueness(float val);

private:
    friend class PerceptionManager;

    /// A line of sight to a point of the target's body, as it was found.
    struct SightLine
    {
        Vec4 from;
        Vec4 to;
        Seconds foundAt = 0; ///< by the age of the component
        bool isKnown = false;
        bool isFree = false;
    };
    static constexpr int LINES = 9; ///< to five points of a body, two lamps, and where they shine

    /// What stands around the component, until that dies or it is taken elsewhere in the tree.
    struct Surroundings
    {
        Handle<TransformComponent> transform;
        Handle<MapRootEntity> map; ///< that it lies in as long as it is not taken elsewhere
        bool isSettled = false;    ///< the map stands above it
    };
    /// One look: from where, at whom, and what it makes out.
    struct Gaze
    {
        PerceptionManager &manager;
        SeenBody &body;
        Vec4 eye;
        Vec4 ahead; ///< length 1
        float clarity = 0.f;
        Vec4 place = Vec4(); ///< of what is clearest
    };

    PerceptionManager *findManager() const;
    const Surroundings &findSurroundings();
    bool findEye(Vec4 &eye, Vec4 &ahead);
    void look(PerceptionManager &manager);
    void lookAtBody(Gaze &gaze);
    void lookAtLamps(Gaze &gaze);
    void lookAtLight(Gaze &gaze, int line, const Vec4 &shining, float luminance, const Vec4 &means);
    float clarityOf(const Vec4 &way, const Vec4 &ahead, float light) const;
    float lightShare(float luminance) const;
    bool isLineFree(Gaze &gaze, int number, const Vec4 &to);
    bool isOfInterest(const Vec4 &place, const Handle<Object> &maker, const Vec4 &ear);
    void takeIn(const HeardWay &way, float level, const Vec4 &place, const String &name);
    void tellChange(Belief::Change change);
    void setMeasure(float &field, const char *property, float val);
    String describeHeard() const;
    void drawSenses(DebugCollectorComponent &collector);

    Belief belief;
    Temper temper;
    Handle<Entity> target; ///< invalid: the player
    ReflectorPtr noticedFunc;
    ReflectorPtr lostFunc;
    bool hasEyes = true;
    bool hasEars = true;
    bool seesInDark = false;
    bool seesLightOnly = false;
    bool noticesLamps = true;
    bool hearsCreatures = false;
    Vec4 eyeOffset = Vec4(0.f, 0.6f, 0.f, 0.f); ///< metres
    float sightRange = 18.f;                    ///< metres
    float sightAngle = 0.6f;                    ///< radians
    float peripheralAngle = 1.3f;               ///< radians
    float nearRange = 0.8f;                     ///< metres
    float darkest = 0.008f;                     ///< luminance
    float brightest = 0.12f;                    ///< luminance
    float watchedLight = 0.006f;                ///< luminance
    float hearingThreshold = 0.004f;            ///< linear
    float ownNoiseRange = 1.5f;                 ///< metres
    float lookInterval = 0.1f;                  ///< seconds

    float untilLook = -1.f; ///< seconds; below 0 while it has no turn yet
    Seconds age = 0;        ///< of the level's time that it has lived
    std::array<SightLine, LINES> lines;
    Surroundings surroundings;
    bool watched = false;
    int watchedFrame = -1; ///< in which that was found
};
