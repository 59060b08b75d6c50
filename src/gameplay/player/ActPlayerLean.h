// ActPlayerLean: the player's head leans round a corner.
#pragma once

#include "ai/actions/Action.h"

class TransformOffsetComponent;

/// Leans the child "camera" of the player's entity to the side that the last message has asked for; goes on for ever.
///
/// Head and view roll about the hips, and come no nearer to what is solid than a head is wide. Radians, metres.
class ActPlayerLean : public Action
{
    KV_REFLECTED(ActPlayerLean)
public:
    /// Where the head goes.
    enum LeanDirection
    {
        LD_Left = 0,
        LD_Right = 1,
        LD_Return = 2, ///< to the middle
        LD_None = 3    ///< it stays where it is
    };

    ActPlayerLean() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }

    void updateLeanLeft(Seconds frameTime);
    void updateLeanRight(Seconds frameTime);
    void updateLeanReturn(Seconds frameTime);
    void handleLeanMessage(const ReflectorPtr &messageType);

    /// Where the head goes.
    LeanDirection getLeanDir() const { return leanDir; }
    /// How far the head leans, radians; to the left is positive.
    float getCurrAngle() const { return currAngle; }

private:
    void begin(Seconds frameTime);
    void leanTowards(float angle, Seconds frameTime);
    float freeAngle(float angle) const;

    LeanDirection leanDir = LD_None;
    float currAngle = 0.f; ///< radians
};
