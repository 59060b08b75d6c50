// BodySounds: what bodies that fall, slide and roll are heard like.
#pragma once

#include "platform/sound/SoundComponent.h"

#include "foundation/TimeTypes.h"

#include <array>
#include <cstddef>

class PhysicsComponent;

/// Listens to the bodies of a map and plays how hard they are met and how fast they move, under the component key
/// "sound" of the map's root.
///
///     sounds = kaVel.addComponent(map, 'sound', 'BodySounds')
///     sounds.addBody(crate.getComponent('physics'), 'ImpactWood', 'ScrapeWood')
///
/// A contact is heard where it takes more speed from a body than a floor takes from what rests on it: the event plays
/// at the body, with its parameter "speed" in metres a second. What moves on over the ground has a loop with it, with
/// the same parameter. However many bodies there are, as many of each event sound at once as `setVoices` says: of the
/// contacts of a frame the hardest, of what moves the fastest.
class BodySounds : public SoundComponent
{
    KV_REFLECTED(BodySounds)
public:
    BodySounds() = default;

    void doFrame() override;

    /// Listens to a body from now on, until it dies.
    /// @param impact  event of its contacts; empty for none
    /// @param motion  looped event of its motion over the ground; empty for none
    void addBody(Handle<PhysicsComponent> body, String impact, String motion);
    /// How many instances of an event there are, 1 to 8; for events that come after.
    void setVoices(int count);
    int getVoices() const { return voices; }
    /// Bodies that it listens to.
    int getBodyCount() const { return static_cast<int>(bodies.size()); }

private:
    static constexpr int MOST_VOICES = 8;
    static constexpr int NONE = -1;

    /// A body, and what it did in the last frame.
    struct Body
    {
        Handle<PhysicsComponent> body;
        int impact = NONE; ///< pool of its contacts
        int motion = NONE; ///< pool of its motion
        Vec4 velocity;     ///< metres a second
        int quiet = 0;     ///< frames in which no further contact is heard
        float struck = 0;  ///< speed that the last contact took, beyond what rest takes, metres a second
        float moving = 0;  ///< speed over the ground, metres a second
        int voice = NONE;  ///< of its pool of motion
    };

    /// The instances of one event.
    struct Pool
    {
        String event;
        std::vector<String> names;                  ///< of the instances
        std::array<std::size_t, MOST_VOICES> users; ///< of a loop: number of its body, or NOBODY
        std::array<float, MOST_VOICES> untold = {}; ///< of a loop: seconds since it was told to be made
        std::size_t next = 0;                       ///< instance for the next contact
        int playedInFrame = 0;                      ///< contacts of this frame
    };

    static constexpr std::size_t NOBODY = static_cast<std::size_t>(-1);

    int poolOf(const String &event);
    void listen(Body &body, Seconds frameTime);
    void playContacts();
    void playContact(Body &body);
    void moveLoops(Seconds frameTime);
    void tellOfLoop(Pool &pool, std::size_t voice, Seconds frameTime);
    void giveLoops();
    void startLoop(Body &body);
    void stopLoop(Pool &pool, std::size_t voice);
    void forgetTheDead();

    int voices = 3;
    std::vector<Body> bodies;
    std::vector<Pool> pools;
    std::vector<std::size_t> order; ///< numbers of bodies, by what is looked for
};
