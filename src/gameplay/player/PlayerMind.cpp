// PlayerComponent: what light and the blob do to the mind, and the mind to the view.
#include "gameplay/player/PlayerComponent.h"

#include "ai/perception/LightAt.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "platform/sound/SoundComponent.h"
#include "rendering/frame/ViewerComponent.h"

#include <cmath>

namespace
{

// Percent of the mind a second.
constexpr float LIGHT_GIVES = 0.5f;      ///< for each unit of the light's influence
constexpr float FLASHLIGHT_GIVES = 0.9f; ///< while it is on
constexpr float BLOB_TAKES = 4.f;        ///< while it touches

constexpr float INFLUENCE = 4.f; ///< of light as bright as a white wall in the sun; a lamp overhead has half of it

constexpr float WIDEST_VIEW = 70.f, NARROWING = 25.f; ///< degrees

} // namespace

void PlayerComponent::reachedByLight(BoundingVolume &)
{
    TransformComponent *const eyes = part<TransformComponent>(CAMERA);
    if (litThisFrame || !eyes)
        return;
    litThisFrame = true; // the light of all lamps is one answer, whichever of them asks first
    setLightSanityInfluence(lightAt(eyes->findMap(), eyes->getPosition()) * INFLUENCE);
}

void PlayerComponent::updateSanity(Seconds frameTime)
{
    static const String whispers = SCS("WhisperSanity"), volume = SCS("volume");
    const float rate = lightSanityInfluence * LIGHT_GIVES + (flashlightOn ? FLASHLIGHT_GIVES : 0.f) -
                       (blobColliding ? BLOB_TAKES : 0.f);
    const float change = static_cast<float>(frameTime) * rate;
    audioSanity += std::isfinite(change) ? change : 0.f;
    lightSanityInfluence = 0.f;
    if (audioSanity > 100.f || audioSanity < 0.f)
    {
        audioSanity = audioSanity < 0.f ? 0.f : 100.f;
        return;
    }
    if (audioSanity < 95.f)
    {
        if (auto *const view = audioSanity > 60.f ? part<ViewerComponent>(VIEWER) : nullptr)
            view->setVerticalFieldOfViewAngle((WIDEST_VIEW - NARROWING * getSanityValue(0.2f, 0.7f, 60.f, 95.f)) * PI /
                                              180.f);
        return;
    }
    // No mind is at 95 and below 80: the whispers keep the volume that they began with.
    if (audioSanity < 80.f && audioSanity > 40.f)
        if (SoundComponent *const voice = sound())
            voice->setParam(whispers, volume, getSanityValue(0.15f, 0.8f, 40.f, 80.f));
}

float PlayerComponent::getSanityValue(float t1, float t2, float minValue, float maxValue) const
{
    const float v = (audioSanity - minValue) / (maxValue - minValue);
    if (!(v > 0.f))
        return 0.f;
    if (v >= 1.f)
        return 1.f;
    // The slopes of the three pieces meet where the height of the whole is 1.
    const float s = (t2 - t1) * (PI / 2.f - 1.f) + 1.f;
    if (v <= t1)
        return t1 / s * std::sin((v - t1) / t1 * PI / 2.f) + t1 / s;
    if (v < t2)
        return PI / (2.f * s) * (v - t1) + t1 / s;
    return (1.f - t2) / s * std::sin((v - t2) / (1.f - t2) * PI / 2.f) + ((t2 - 1.f) / s + 1.f);
}
