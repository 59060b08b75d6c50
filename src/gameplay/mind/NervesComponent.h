// NervesComponent: what darkness, sights and frights do to the player's mind, and what he feels of it.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/TimeTypes.h"
#include "foundation/Vector.h"

class Coordinator;
class PlayerComponent;
class TransformComponent;

/// The player's nerves, under the component key "nerves" of the level's entity "Player".
///
/// Darkness takes the mind, light gives it back, and the sight of what has a `DreadComponent` costs more: what is in the
/// picture, near enough, in light, with nothing between. Light is what `lightAt` says of eyes, body and the place looked
/// at, so the player suffers from the same darkness that hides him. Both measures of the `PlayerComponent` beside it
/// follow: `audioSanity` by the light's influence, `sanity` directly. They count from the flashlight on, frights always.
///
/// What the mind has come to is heard by "Heartbeat" and "WhisperSanity" of the component "sound" beside it, and seen by
/// the heartbeat and the flash of "graphics2". Percent of the mind; seconds of the level's timer "master".
class NervesComponent : public SimpleComponent
{
    KV_REFLECTED(NervesComponent)
public:
    NervesComponent() = default;

    void doFrame() override;
    /// Lets the picture alone from now on.
    void onMurder() override;

    /// Makes the mind whole and forgets all frights, as after a death.
    void soothe();
    /// Takes so many percent of the mind within a moment, has the heart race and the hand start.
    ///
    /// 5 is a start, 15 a fright, 30 a blow. What is no number is logged as an error and changes nothing.
    /// @param what   what it was, for `getCause`
    void frighten(float amount, String what);
    /// What frightened last; empty for nothing yet.
    String getCause() const { return cause; }
    /// How fast the heart beats, 0 at rest to 1.
    float getFear() const { return fear; }
    /// How much of the signs that warn is lost on such a mind, 0 to 1: a warning sound is turned down by it.
    float getDulling() const;
    /// Luminance of the light that the mind holds on to at present.
    float getFeltLight() const { return feltLight; }
    /// Percent of the mind a second that light gives, or darkness and sights take, at present.
    float getRate() const { return rate; }
    /// Percent of the mind a second that the sights in view take at present.
    float getDreadInSight() const { return dreadInSight; }

    /// How loud the voices of a failing mind may be, 0 to 1.
    float getWhispers() const { return whispers; }
    void setWhispers(float val);
    /// Percent of the mind that a second of full darkness takes.
    float getDarknessTakes() const { return darknessTakes; }
    void setDarknessTakes(float val);
    /// Percent of the mind that a second of lamp light gives.
    float getLightGives() const { return lightGives; }
    void setLightGives(float val);

private:
    void lookAround(Coordinator &level);
    float lightSeen(TransformComponent &eyes) const;
    float dreadSeen(Coordinator &level, const Vec4 &eye) const;
    void wear(PlayerComponent &player, float seconds);
    void calm(const PlayerComponent &player, float seconds);
    void sound();
    void show(const Coordinator &level, float beating) const;
    void take(const char *property, float &setting, float val);

    float feltLight = 1.f; ///< luminance
    float dreadInSight = 0.f;
    float rate = 0.f;
    float fright = 0.f; ///< percent that are still to be taken
    float alarm = 0.f;  ///< fear by frights alone
    float fear = 0.f;
    float flash = 0.f;
    float beat = 0.f; ///< beats of the heart, of which the part behind the point counts
    float insanity = 0.f;
    bool isBeating = false;
    float whispering = 0.f; ///< that the voices were told last
    Seconds untilLook = 0.0;
    String cause;
    float whispers = 1.f;
    float darknessTakes = 100.f / 90.f;
    float lightGives = 100.f / 40.f;
};
