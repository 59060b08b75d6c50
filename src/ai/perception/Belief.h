// Belief: how suspicious a mind is, and where it takes the thing for that made it so.
#pragma once

#include "object/tree/KvFields.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

/// How quickly a mind comes to believe, and how long it does.
struct Temper
{
    float sightGain = 1.5f;       ///< suspicion a second from what is in full view, in full light
    float hearingGain = 0.6f;     ///< suspicion from one sound as loud as can be told apart
    float drainRate = 0.08f;      ///< suspicion a second that is lost while nothing is perceived
    float patience = 2.f;         ///< seconds after the last perception before any is lost
    float noticeLevel = 0.5f;     ///< suspicion, 0 to 1, from which on it knows
    float memoryTime = 25.f;      ///< seconds after the last perception until it has forgotten
    float vaguenessGrowth = 0.4f; ///< metres a second by which the place may have changed since
    float mostVagueness = 10.f;   ///< metres
};

/// What a mind believes of one thing: a suspicion from 0 to 1, and a place that grows vaguer.
///
/// A plain value that knows no world: whoever perceives tells it what, and lets time pass. The same amounts of time in
/// longer or shorter steps come to the same.
class Belief
{
    KV_FIELDS
public:
    /// What the last step of time has changed.
    enum Change
    {
        UNCHANGED = 0,
        NOTICED = 1, ///< it knows from now on
        LOST = 2     ///< it has forgotten
    };

    static constexpr float NEVER = 1e6f; ///< seconds

    /// Takes a sight in for the time that passes from now on.
    /// @param clarity  0 to 1
    void see(const Vec4 &where, float howVague, float clarity);
    /// Sees nothing from now on.
    void loseSight() { sightClarity = 0.f; }
    /// Takes one sound in.
    /// @param strength  0 to 1
    void hear(const Vec4 &where, float howVague, float strength, const String &what, const Temper &temper);
    /// Is told of a place: it knows from the next step of time on.
    void alarm(const Vec4 &where, float howVague);
    /// Lets time pass.
    Change pass(float seconds, const Temper &temper);
    void forget() { *this = Belief(); }

    float getSuspicion() const { return suspicion; }
    void setSuspicion(float val) { suspicion = val; }
    bool getKnows() const { return knows; }
    /// Whether anything was perceived that is not forgotten.
    bool hasPlace() const { return sincePerceived < NEVER; }
    bool getSees() const { return sightClarity > 0.f; }
    float getClarity() const { return sightClarity; }
    Vec4 getPlace() const { return place; }
    /// How far from its place the thing may be by now, metres.
    float vaguenessBy(const Temper &temper) const;
    float getSinceSeen() const { return sinceSeen; }
    float getSinceHeard() const { return sinceHeard; }
    float getSincePerceived() const { return sincePerceived; }
    /// What was heard last; empty for nothing, and after something was seen.
    String getHeardName() const { return heardName; }

private:
    void perceive(const Vec4 &where, float howVague);
    float idleIn(float seconds, const Temper &temper) const;

    float suspicion = 0.f; ///< 0 to 1
    bool knows = false;
    float sightClarity = 0.f; ///< of what is seen now, 0 to 1
    Vec4 place = Vec4(0, 0, 0, 1);
    float vagueness = 0.f;        ///< metres, when it was perceived
    float sinceSeen = NEVER;      ///< seconds
    float sinceHeard = NEVER;     ///< seconds
    float sincePerceived = NEVER; ///< seconds, in any way
    String heardName;
};
