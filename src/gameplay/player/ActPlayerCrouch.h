// ActPlayerCrouch: the player goes down and stands up.
#pragma once

#include "ai/actions/Action.h"

class BoundingVolume;
class TransformComponent;

/// Lowers the eyes and the volume of the player's entity while its component "player" is crouched; goes on for ever.
///
/// The eyes go down softly and give once at the bottom; the volume is as low as one who crouches from the first moment
/// on, and as high again when there is room above. Metres; the child "camera" hangs by its "parentFollower".
class ActPlayerCrouch : public Action
{
    KV_REFLECTED(ActPlayerCrouch)
public:
    ActPlayerCrouch() = default;

    ActionStatus update(Seconds frameTime) override;
    Handle<Action> clone() override { return cloneAction(); }

    /// Takes the player down by one step.
    void updateCrouchDown(Seconds frameTime);
    /// Lets the player stand up by one step, where there is room.
    void updateCrouchUp(Seconds frameTime);
    void handleCrouchMessage(const ReflectorPtr &messageType, bool crouched);

    /// How far down: 0 stands, 1 is at the bottom, beyond it gives.
    float getCrouchVal() const { return crouchVal; }
    /// Height of the eyes over the middle of the body before anything moved them, metres.
    float getOriginalHeight() const { return originalHeight; }

private:
    void begin(Seconds frameTime);
    void playOnce(const String &sound);
    void moveEyes();
    void setLow(bool low);
    bool hasRoomAbove(BoundingVolume &volume, TransformComponent &place) const;

    bool stateChanged = false;  ///< a sound is due
    bool bounce = false;        ///< the bottom has not been felt yet
    bool soundPlayed = false;   ///< of the last change
    float crouchVal = 0.f;      ///< 0 to 1, and on while it gives
    float originalHeight = 0.f; ///< metres
    float movedBy = 0.f;        ///< what the eyes have been moved by, metres
    bool isLow = false;         ///< the volume is that of one who crouches
    float standingHeight = 0.f; ///< of the volume, metres
};
