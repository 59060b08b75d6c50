// PerceptionManager: has the creatures of a level look in turn, and tells them what sounds.
#pragma once

#include "ai/perception/SeenBody.h"

#include "engine/entities/SimpleManager.h"
#include "rendering/frame/ViewVolume.h"

#include "foundation/TimeTypes.h"
#include "object/tree/ReflectorPtr.h"

#include <memory>
#include <optional>
#include <vector>

class PerceptionComponent;
class SoundWays;

/// Manager of the key "perception".
///
/// Who looks at the same body shares its points and their light, who hears the same sound shares one search for its
/// ways; looks are spread over time by the order in which the creatures were made. Keeps nothing of a creature.
class PerceptionManager : public SimpleManager
{
    KV_REFLECTED(PerceptionManager)
public:
    /// A sound that was made since the last frame step.
    struct Noise
    {
        String name;
        Vec4 place;           ///< w 1
        float loudness = 0.f; ///< linear, a metre away
        Handle<Object> maker;
    };

    /// The most sounds that creatures hear of in a frame; more are not told apart.
    static constexpr std::size_t MOST_NOISES = 32;

    PerceptionManager() = default;

    void onAddToCoordinator() override;
    /// Has all hear what was made since the last step, then lets each of them perceive.
    void doFrame() override;
    ReflectorPtr getComponentClass() const override;
    /// Notes a sound for the next frame step; the handler of SoundMadeMessage.
    void handleSoundMade(const ReflectorPtr &messageType, String name, Vec4 placeAndLoudness, Handle<Object> maker);
    /// Has the creatures of a map hear a sound that the sound system does not play, in the next frame step.
    /// @param loudness  linear, a metre away: a step 0.04, a door that slams 0.13
    /// @param maker     who made it; an invalid handle, or a map, for nobody
    void makeNoise(String name, Vec4 place, float loudness, Handle<Object> maker);

    /// Questions for the light at a place, since the start.
    int getLightQuestions() const;
    /// Lines of sight through the grid, since the start.
    int getSightLines() const { return sightLines; }
    /// Questions for the way of a sound to an ear, since the start.
    int getSoundQuestions() const { return soundQuestions; }

    /// Seconds of the level's time that this frame takes.
    float getFrameSeconds() const { return frameSeconds; }
    /// Number of the frame.
    int getFrame() const { return frame; }
    /// The next creature's share of the time between two looks, 0 to 1: no two that follow each other look at once.
    float nextPhase();
    /// Somebody as seen in this frame; null where he is nowhere. Borrowed for the call.
    SeenBody *seenBody(const Handle<Entity> &entity);
    /// Whether what the player looks through shows a place of its map; false where nobody looks.
    bool isOnScreen(const Vec4 &place);
    /// The eye that the player looks through, in the space of its map; null where nobody looks.
    const Vec4 *getEye();
    /// Whether the player sees an entity: a point of it in the picture, in so much light or more, with nothing between.
    /// @cost up to five segments and five questions for the light
    /// @param elsewhere  where the middle of it is thought to be; null for where it is
    bool isWatched(const Handle<Entity> &entity, float leastLight, const Vec4 *elsewhere = nullptr);
    /// The entity "Player" of the level or of a map.
    Handle<Entity> findPlayer(const Handle<MapRootEntity> &map);
    void countSightLine() { ++sightLines; }

private:
    void hearNoises();
    void hear(PerceptionComponent &creature, const Noise &noise, const Handle<MapRootEntity> &map);
    void dropDeadBodies();
    void findView();

    std::vector<Noise> noises;
    std::vector<Noise> heardNow;
    std::vector<std::unique_ptr<SeenBody>> bodies; ///< by ascending handle
    std::uint64_t bodyChanges = 0;                 ///< births and deaths that the bodies take account of
    std::optional<ViewVolume> view;
    Vec4 eye;
    bool hasEye = false;
    int viewFrame = -1; ///< in which the view was found
    Vec4 ahead;         ///< where the player looks, where that is no camera
    int frame = 0;
    Seconds now = 0;
    float frameSeconds = 0.f;
    int creatures = 0; ///< that were given a phase
    Handle<Entity> player;
    Handle<MapRootEntity> playersMap;
    std::uint64_t playerChanges = 0; ///< births and deaths that the player takes account of
    int sightLines = 0;
    int soundQuestions = 0;
    int lightQuestionsOfDead = 0;
};
