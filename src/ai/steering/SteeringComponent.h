// SteeringComponent: the sum of what a creature's behaviours ask of its body.
#pragma once

#include "ai/steering/SteeringOutput.h"

#include "physics/grid/RayCollision.h"

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

#include <cstdint>

class Entity;
class Quaternion;
class RigidBody;
class TransformComponent;

/// Gathers what behaviours ask for in a frame and gives the sum to the rigid body beside it, under the component key
/// "steering".
///
/// Metres, seconds, radians, in the space of the entity's transform. Behaviours are the methods `update...`, called by
/// whoever leads the creature, each in every frame in which it is wanted: each adds its request, times its weight, to
/// the sum. `doFrame` applies the sum and forgets it; the body is moved by its own manager. Every number is 0 until it
/// is set, and what is needed for a behaviour must be set: `maxSpeed` and `maxAccel` for any motion, `timeToTarget` for
/// arriving and matching, the three align settings for turning. Requests that are no numbers are named in the log, once,
/// and passed over.
///
/// What seeks faces where it goes at once. Who shall turn like a head seeks with a `lookAt` of the direction that it has
/// and calls `updateAlignWithVector` with the one that it wants:
///
///     steering.updateSeek(place, 1.0, transform.getDirection(), False)
///     steering.updateAlignWithVector(place - transform.position, seconds)
class SteeringComponent : public SimpleComponent
{
    KV_REFLECTED(SteeringComponent)
public:
    /// A ray that looks for what stands in the way.
    struct AvoidRay
    {
        RayCollision collision; ///< what it has met
        Vec4 ray;               ///< whole extent from the body's place
    };

    SteeringComponent() = default;

    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent) override;
    /// Draws the final acceleration yellow, the velocity green, the orientation blue, whiskers cyan, and lines to what
    /// is wandered to; while the debug switches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    /// Gives the sum of the frame's requests to the body, and begins the next one.
    void doFrame() override;

    /// Gives a request to the body beside the component: turns the transform, sets velocity and acceleration.
    ///
    /// Changes the request into what was given: on top of the body's own, and clipped. A request without acceleration
    /// leaves the velocity and ends the acceleration; one whose orientation has no heading turns nobody.
    void applySteering(SteeringOutput &sOutput);
    /// Limits the acceleration of a request to maxAccel.
    void clipAcceleration(SteeringOutput &sOutput) const;
    /// Limits the velocity of a request to maxSpeed.
    void clipVelocity(SteeringOutput &sOutput) const;

    /// Accelerates fully towards a place, and faces it.
    /// @param lookAt  direction to face instead; zero for the one of the motion
    /// @param leave   flee from the place
    void updateSeek(Vec4 targetPos, float weight = 1.0F, Vec4 lookAt = Vec4(), bool leave = false);
    /// Pushes away from others that steer, so that nobody stands in anybody.
    ///
    /// From whose middle is less than sepThreshold away, the harder the nearer: by maxAccel times sepWeight at half the
    /// threshold, and four times as much at most. Who wants to go, by the requests of this frame so far, or else goes
    /// towards somebody is pushed to his own right as well, so that two pass each other: to be called after the
    /// behaviours that say where to go. Others need a volume to be found in the map's grid.
    /// @cost the volumes in the cells around
    void updateSeparation(float weight = 1.0F);
    /// Seeks where a moving target will be by the time of meeting it, maxPrediction seconds ahead at most.
    void updatePursue(Vec4 targetPos, Vec4 targetVel, float weight = 1.0F);
    /// Approaches a place, slows down within arriveSlowRadius and asks for nothing within arriveTargetRadius.
    ///
    /// Faces where the last applied velocity led.
    void updateArrive(Vec4 targetPos, float weight = 1.0F);
    /// Strolls: twice a second picks a new place around one before it, and seeks that.
    void updateWander(Seconds frameTime, float weight = 1.0F);
    /// Comes to a velocity within timeToTarget seconds.
    void updateVelocityMatch(Vec4 targetVelocity, float weight = 1.0F);
    /// Turns the transform as another entity's stands, as a head turns: it starts and ends slowly.
    ///
    /// At alignMaxRotSpeed at most; over the last alignSlowRadius it slows down, as it gained speed, and rests within
    /// alignTargetRadius. It never passes its end, and the length of frames makes no difference.
    void updateAlign(Handle<Entity> hTarget, Seconds frameTime);
    /// Turns the transform to face along a direction; see `updateAlign`. A direction straight up or down turns nobody.
    void updateAlignWithVector(Vec4 targetOrientationVec, Seconds frameTime);
    /// Lays the three rays before the body, where there is a player; nothing casts them.
    void updateObstacleAvoidance(float weight = 1.0F);

    /// Whether the last `updateArrive` found the body at its place.
    bool hasArrived() const { return arrived; }
    /// Whether the body is nearer to a place than arriveTargetRadius, seen from above.
    bool hasArrived(Vec4 pos);

    /// Place that a script may keep here; nothing reads it but the debug drawing.
    Vec4 getSteeringTarget() const { return steeringTarget; }
    void setSteeringTarget(Vec4 val) { setPart(steeringTarget, "steeringTarget", val); }
    /// The sum of this frame's requests so far.
    SteeringOutput getFinalOutput() const { return finalOutput; }
    /// Sets the sum; one that is no number is logged as an error and changes nothing.
    void setFinalOutput(const SteeringOutput &val);
    /// Metres a second; 0 lets nothing move.
    float getMaxSpeed() const { return maxSpeed; }
    void setMaxSpeed(float val) { setPart(maxSpeed, "maxSpeed", val); }
    /// Metres a second squared; 0 lets nothing gain speed.
    float getMaxAccel() const { return maxAccel; }
    void setMaxAccel(float val) { setPart(maxAccel, "maxAccel", val); }
    /// What was last applied, metres a second squared.
    Vec4 getFinalAccel() const { return finalAccel; }
    void setFinalAccel(Vec4 val) { setPart(finalAccel, "finalAccel", val); }
    /// What was last applied with an acceleration, metres a second.
    Vec4 getFinalVel() const { return finalVel; }
    void setFinalVel(Vec4 val) { setPart(finalVel, "finalVel", val); }
    /// The direction that was last asked for; zero for none.
    Vec4 getFinalOrientation() const { return finalOrientation; }
    void setFinalOrientation(Vec4 val) { setPart(finalOrientation, "finalOrientation", val); }
    /// Weight for whoever calls `updateSeek`.
    float getSeekWeight() const { return seekWeight; }
    void setSeekWeight(float val) { setPart(seekWeight, "seekWeight", val); }
    /// Weight for whoever calls `updatePursue`.
    float getPursueWeight() const { return pursueWeight; }
    void setPursueWeight(float val) { setPart(pursueWeight, "pursueWeight", val); }
    /// How hard `updateSeparation` pushes; 0 for not at all.
    float getSepWeight() const { return sepWeight; }
    void setSepWeight(float val) { setPart(sepWeight, "sepWeight", val); }
    /// Weight for whoever calls `updateArrive`.
    float getArriveWeight() const { return arriveWeight; }
    void setArriveWeight(float val) { setPart(arriveWeight, "arriveWeight", val); }
    /// Weight for whoever calls an align behaviour.
    float getAlignWeight() const { return alignWeight; }
    void setAlignWeight(float val) { setPart(alignWeight, "alignWeight", val); }
    /// Weight for whoever calls `updateWander`.
    float getWanderWeight() const { return wanderWeight; }
    void setWanderWeight(float val) { setPart(wanderWeight, "wanderWeight", val); }
    /// A vector that a script may keep here; nothing reads it.
    Vec4 getLinear() const { return linear; }
    void setLinear(Vec4 val) { setPart(linear, "linear", val); }
    /// Distance of the middles within which `updateSeparation` pushes, metres.
    float getSepThreshold() const { return sepThreshold; }
    void setSepThreshold(float val) { setPart(sepThreshold, "sepThreshold", val); }
    /// Distance within which a place is reached, metres.
    float getArriveTargetRadius() const { return arriveTargetRadius; }
    void setArriveTargetRadius(float val) { setPart(arriveTargetRadius, "arriveTargetRadius", val); }
    /// Distance within which arriving slows down, metres.
    float getArriveSlowRadius() const { return arriveSlowRadius; }
    void setArriveSlowRadius(float val) { setPart(arriveSlowRadius, "arriveSlowRadius", val); }
    /// Seconds in which arriving and matching come to their velocity; at 0 they are passed over, with an error.
    float getTimeToTarget() const { return timeToTarget; }
    void setTimeToTarget(float val) { setPart(timeToTarget, "timeToTarget", val); }
    /// Whether the last `updateArrive` found the body at its place.
    bool getArrived() const { return arrived; }
    void setArrived(bool val) { arrived = val; }
    /// How far before the body the circle of places to wander to lies, metres.
    float getWanderOffset() const { return wanderOffset; }
    void setWanderOffset(float val) { setPart(wanderOffset, "wanderOffset", val); }
    /// Radius of that circle, metres.
    float getWanderRadius() const { return wanderRadius; }
    void setWanderRadius(float val) { setPart(wanderRadius, "wanderRadius", val); }
    /// The last place's angle on that circle, radians.
    float getWanderOrientation() const { return wanderOrientation; }
    void setWanderOrientation(float val) { setPart(wanderOrientation, "wanderOrientation", val); }
    /// The largest such angle, radians; small ones are the likelier.
    float getWanderRate() const { return wanderRate; }
    void setWanderRate(float val) { setPart(wanderRate, "wanderRate", val); }
    /// Seconds since a place to wander to was picked.
    double getWanderTime() const { return wanderTime; }
    void setWanderTime(double val);
    /// Where it wanders to; zero for nowhere yet.
    Vec4 getWanderTarget() const { return wanderTarget; }
    void setWanderTarget(Vec4 val) { setPart(wanderTarget, "wanderTarget", val); }
    /// How far ahead of itself `updatePursue` thinks, seconds.
    float getMaxPrediction() const { return maxPrediction; }
    void setMaxPrediction(float val) { setPart(maxPrediction, "maxPrediction", val); }
    /// A distance that a script may keep here; nothing reads it.
    float getAvoidDistance() const { return avoidDistance; }
    void setAvoidDistance(float val) { setPart(avoidDistance, "avoidDistance", val); }
    /// Length of the ray straight ahead, metres; the others are half as long.
    float getLookAhead() const { return lookAhead; }
    void setLookAhead(float val) { setPart(lookAhead, "lookAhead", val); }
    /// The ray straight ahead.
    AvoidRay getCentralRay() const { return centralRay; }
    void setCentralRay(const AvoidRay &val) { centralRay = val; }
    /// The ray 30 degrees to the right.
    AvoidRay getWhisker1() const { return whisker1; }
    void setWhisker1(const AvoidRay &val) { whisker1 = val; }
    /// The ray 30 degrees to the left.
    AvoidRay getWhisker2() const { return whisker2; }
    void setWhisker2(const AvoidRay &val) { whisker2 = val; }
    /// The fastest turn of an align behaviour, radians a second.
    float getAlignMaxRotSpeed() const { return alignMaxRotSpeed; }
    void setAlignMaxRotSpeed(float val) { setPart(alignMaxRotSpeed, "alignMaxRotSpeed", val); }
    /// Angle within which an align behaviour rests, radians.
    float getAlignTargetRadius() const { return alignTargetRadius; }
    void setAlignTargetRadius(float val) { setPart(alignTargetRadius, "alignTargetRadius", val); }
    /// Angle within which a turn slows down, and over which it gains its full speed, radians; 0 for at once.
    float getAlignSlowRadius() const { return alignSlowRadius; }
    void setAlignSlowRadius(float val) { setPart(alignSlowRadius, "alignSlowRadius", val); }

private:
    /// What a behaviour moves; null parts for what the entity does not have.
    struct Moved
    {
        TransformComponent *transform = nullptr;
        RigidBody *body = nullptr;
        std::uint64_t objectChanges = 0; ///< births and deaths that these take account of

        explicit operator bool() const { return transform && body; }
    };

    const Moved &findMoved();
    void setPart(float &part, const char *name, float val);
    void setPart(Vec4 &part, const char *name, const Vec4 &val);
    void request(const SteeringOutput &output, float weight);
    void passOver(SteeringOutput &sOutput);
    void tellOfNoNumber();
    void tellOfNoTime();
    SteeringOutput seek(const TransformComponent &transform, const Vec4 &targetPos, const Vec4 &lookAt,
                        bool leave) const;
    Vec4 findSeparation(const Moved &mine);
    Vec4 pushFrom(const Moved &mine, const Vec4 &other, bool isAhead) const;
    void turnTowards(const Quaternion &target, Seconds frameTime);

    Vec4 steeringTarget;
    SteeringOutput finalOutput; ///< the sum of this frame
    float maxSpeed = 0.f;
    float maxAccel = 0.f;
    Vec4 finalAccel;
    Vec4 finalVel;
    Vec4 finalOrientation;
    float seekWeight = 0.f;
    float pursueWeight = 0.f;
    float sepWeight = 0.f;
    float arriveWeight = 0.f;
    float alignWeight = 0.f;
    float wanderWeight = 0.f;
    Vec4 linear;
    float sepThreshold = 0.f;
    float arriveTargetRadius = 0.f;
    float arriveSlowRadius = 0.f;
    float timeToTarget = 0.f;
    bool arrived = false;
    float wanderOffset = 0.f;
    float wanderRadius = 0.f;
    float wanderOrientation = 0.f;
    float wanderRate = 0.f;
    double wanderTime = 0;
    Vec4 wanderTarget;
    float maxPrediction = 0.f;
    float avoidDistance = 0.f;
    float lookAhead = 0.f;
    AvoidRay centralRay;
    AvoidRay whisker1;
    AvoidRay whisker2;
    float alignMaxRotSpeed = 0.f;
    float alignTargetRadius = 0.f;
    float alignSlowRadius = 0.f;

    Vec4 turnVelocity;         ///< of the align behaviours, radians a second about its direction
    bool turned = false;       ///< an align behaviour ran since the last frame step
    bool noNumberTold = false; ///< the log knows of a request that was no number
    bool noTimeTold = false;   ///< the log knows that timeToTarget is 0
    Moved moved;
};

/// How it crosses the reflection layer: as the script class `AvoidRay`.
/// @{
void SetToVariant(Variant &v, const SteeringComponent::AvoidRay &ray);
bool fromVariant(const Variant &v, SteeringComponent::AvoidRay &ray);
/// @}
