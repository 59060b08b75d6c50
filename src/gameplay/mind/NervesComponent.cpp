#include "gameplay/mind/NervesComponent.h"

#include "gameplay/light/FlashlightHand.h"
#include "gameplay/mind/DreadComponent.h"
#include "gameplay/player/PlayerComponent.h"
#include "gameplay/player/PlayerLookup.h"

#include "ai/perception/LightAt.h"
#include "ai/perception/PerceptionManager.h"
#include "ai/perception/Sightline.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/entities/SimpleManager.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/volumes/FiniteProperty.h"
#include "platform/sound/SoundComponent.h"
#include "rendering/frame/GraphicsManager2.h"

#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

namespace
{

// The light. A room without lamps has 0.003 by its ambient light, a candle at arm's length 0.1, a lamp overhead 0.5.
constexpr float DARKEST =
    0.008f;                  ///< luminance below which it is as dark as can be: what creatures do not see in either
constexpr float DIM = 0.04f; ///< from which on darkness takes nothing: the far end of a candle's light
constexpr float LAMPLIGHT = 0.2f;      ///< from which on light gives all it can
constexpr float SEEN = 0.5f;           ///< part of the light on what one looks at that one holds on to
constexpr float LOOKS = 7.f;           ///< metres that one looks for it
constexpr Seconds LOOK_INTERVAL = 0.1; ///< as creatures look

// Sights and frights.
constexpr float SEEN_FROM = 0.006f; ///< luminance on what can be looked at, as for those that must not be watched
constexpr float MOST_DREAD = 12.f;  ///< percent a second: a crowd costs no more, since one can look away
constexpr float FLASHLIGHT_GIVES = 0.9f, BLOB_TAKES = 4.f; ///< percent a second, as of the sanity that is heard
constexpr float FRIGHT_TAKES = 40.f; ///< percent a second: a blow is over before the next one can come
constexpr float BLOW = 30.f;         ///< percent of a fright from which on all that it does is at its worst
constexpr float CALMS = 1.f / 25.f;  ///< fear a second: a fright is forgotten in half a minute
constexpr float FLASH_FADES = 9.f;   ///< a second, by e
constexpr float DREAD_AT = 8.f;      ///< percent a second of sights at which the heart is at its worst by them

// The heart, as "Heartbeat" has it in the project file: two recordings, and how their pitch follows fear.
constexpr float CALM_BEATS = 66.f, FAST_BEATS = 124.f;   ///< a minute
constexpr float HANDS_OVER = 0.52f;                      ///< fear at which one is as loud as the other
constexpr float BEATS_FROM = 0.06f, RESTS_BELOW = 0.03f; ///< fear

/// Beats a second at some fear.
float beatsAt(float fear)
{
    const float semitones = fear < HANDS_OVER ? fear / 0.6f * 4.f : -4.f + 5.f * (fear - 0.45f) / 0.55f;
    return (fear < HANDS_OVER ? CALM_BEATS : FAST_BEATS) / 60.f * std::exp2(semitones / 12.f);
}

/// How hard the heart beats at a part of its beat, 0 to 1: twice in short order, and a rest.
float heartAt(float part)
{
    const auto stroke = [part](float at, float width)
    {
        const float off = (part - at) / width;
        return std::exp(-off * off);
    };
    return std::min(stroke(0.12f, 0.07f) + 0.6f * stroke(0.40f, 0.08f), 1.f);
}

} // namespace

void NervesComponent::doFrame()
{
    const auto player = handle_cast<PlayerComponent>(getSibling(ComponentKeys::player)).lookup();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    if (!player || !level)
        return;
    const float seconds = stepLength(level->getTimer(TimerNames::master).getFrameTimeSeconds());
    untilLook -= static_cast<Seconds>(seconds);
    if (untilLook <= 0.0)
    {
        untilLook = LOOK_INTERVAL;
        lookAround(*level);
    }
    wear(*player, seconds);
    calm(*player, seconds);
    sound();
    beat += isBeating ? beatsAt(fear) * seconds : 0.f;
    beat -= std::floor(beat);
    show(*level, isBeating ? smoothstep(0.1f, 0.9f, fear) * heartAt(beat) : 0.f);
}

void NervesComponent::onMurder()
{
    flash = 0.f;
    if (const auto level = getAncestorOfType<Coordinator>().lookup())
        show(*level, 0.f);
    SimpleComponent::onMurder();
}

void NervesComponent::soothe()
{
    fright = alarm = fear = flash = 0.f;
    cause = String();
    if (const auto player = handle_cast<PlayerComponent>(getSibling(ComponentKeys::player)).lookup())
    {
        player->setSanity(100.f);
        player->setAudioSanity(100.f);
    }
}

/// Finds the light that there is to hold on to, and what there is to be afraid of.
void NervesComponent::lookAround(Coordinator &level)
{
    static const String camera = SCS("camera");
    const auto body = getParent().lookup();
    auto *const eyes =
        componentOf<TransformComponent>(body ? body->getChild(camera) : Handle<Object>(), ComponentKeys::transform);
    auto *const trunk = componentOf<TransformComponent>(getParent(), ComponentKeys::transform);
    if (!eyes || !trunk)
        return;
    const Handle<MapRootEntity> map = mapAround(handle_cast<Entity>(getParent()));
    const Vec4 eye = poseInMap(*eyes).getColumn(3);
    feltLight = std::max({lightAt(map, eye), lightAt(map, poseInMap(*trunk).getColumn(3)), SEEN * lightSeen(*eyes)});
    dreadInSight = std::min(dreadSeen(level, eye), MOST_DREAD);
    const float dark = 1.f - smoothstep(DARKEST, DIM, feltLight), lit = smoothstep(DIM, LAMPLIGHT, feltLight);
    rate = lightGives * lit - darknessTakes * dark - dreadInSight;
}

/// Light on what the eyes look at.
float NervesComponent::lightSeen(TransformComponent &eyes) const
{
    const Handle<MapRootEntity> map = mapAround(handle_cast<Entity>(getParent()));
    PartitioningGrid *const grid = PartitioningGrid::ofMap(map).lookup().ptr;
    if (!grid)
        return 0.f;
    const Matrix4 pose = poseInMap(eyes);
    const Vec4 eye = pose.getColumn(3), ahead = pose.getColumn(2) * LOOKS;
    const SegmentHit hit = grid->checkSegmentFor(SightFilter(getParent(), Handle<Object>()), eye, ahead);
    return hit.collision.collided ? lightAt(map, eye + ahead * (hit.collision.t * 0.98f)) : 0.f;
}

/// What the sights in view cost, percent a second.
float NervesComponent::dreadSeen(Coordinator &level, const Vec4 &eye) const
{
    const auto sights = handle_cast<SimpleManager>(level.getManager(ComponentKeys::dread)).lookup();
    if (!sights || sights->getComponents().empty())
        return 0.f;
    const auto perception = handle_cast<PerceptionManager>(level.getManager(ComponentKeys::perception)).lookup();
    float sum = 0.f;
    for (const Handle<SimpleComponent> &h : sights->getComponents())
    {
        const auto sight = handle_cast<DreadComponent>(h).lookup();
        const Handle<Entity> entity = sight ? handle_cast<Entity>(sight->getParent()) : Handle<Entity>();
        auto *const place = componentOf<TransformComponent>(entity, ComponentKeys::transform);
        if (!perception || !place)
            continue;
        Vec4 way = poseInMap(*place).getColumn(3) - eye;
        way.w = 0.f;
        const float near = 1.f - way.magnitude() / std::max(sight->getRange(), 1e-3f);
        if (near > 0.f && perception->isWatched(entity, SEEN_FROM))
            sum += sight->getDread() * std::min(2.f * near, 1.f);
    }
    return sum;
}

/// Has both measures of the mind follow: the one that is heard by the light's influence, the one that is seen directly.
void NervesComponent::wear(PlayerComponent &player, float seconds)
{
    const float blow = std::min(fright, FRIGHT_TAKES * seconds);
    fright -= blow;
    float change = -blow;
    if (player.getHasFlashlight())
    {
        player.setLightSanityInfluence(2.f * rate); // half of it counts
        change += seconds * (rate + (player.isFlashlightOn() ? FLASHLIGHT_GIVES : 0.f) -
                             (player.getBlobColliding() ? BLOB_TAKES : 0.f));
    }
    if (change != 0.f)
        player.setSanity(std::clamp(player.getSanity() + change, 0.f, 100.f));
    insanity = 1.f - player.getSanity() * 0.01f;
}

/// Lets fear rise by what is seen and by how little mind is left, and frights be forgotten.
void NervesComponent::calm(const PlayerComponent &player, float seconds)
{
    alarm = std::max(alarm - CALMS * seconds, 0.f);
    const float sights = player.getHasFlashlight() ? std::min(dreadInSight / DREAD_AT, 1.f) : 0.f;
    const float wanted = std::max({alarm, 0.8f * sights, 0.55f * smoothstep(0.3f, 1.f, insanity)});
    fear += (wanted - fear) * easedPart(wanted > fear ? 4.f : 0.7f, seconds);
    flash *= 1.f - easedPart(FLASH_FADES, seconds);
    if (flash < 0.02f)
        flash = 0.f;
}

/// Lets heart and voices be heard, and tells them of changes only.
void NervesComponent::sound()
{
    static const String heart = SCS("Heartbeat"), fearOf = SCS("fear");
    static const String voices = SCS("WhisperSanity"), volume = SCS("volume");
    auto *const voice = componentOf<SoundComponent>(getParent(), ComponentKeys::sound);
    if (!voice)
        return;
    const bool beats = fear > (isBeating ? RESTS_BELOW : BEATS_FROM);
    if (beats)
        voice->setParam(heart, fearOf, fear);
    if (beats && !isBeating)
    {
        voice->playSoundEffect(heart);
        beat = 0.f;
    }
    else if (!beats && isBeating)
        voice->stopSoundEffect(heart);
    isBeating = beats;
    const float heard = whispers * smoothstep(0.35f, 0.95f, insanity);
    if (heard == whispering)
        return;
    whispering = heard;
    voice->setParam(voices, volume, heard);
}

/// Has the picture beat with the heart, and start.
void NervesComponent::show(const Coordinator &level, float beating) const
{
    static const String graphicsName = SCS("graphics2Manager");
    const auto graphics = handle_cast<GraphicsManager2>(level.getChild(graphicsName)).lookup();
    if (!graphics)
        return;
    graphics->setHeartbeat(beating);
    graphics->setFlash(flash);
}

void NervesComponent::frighten(float amount, String what)
{
    if (!isUsable(*this, "the fright", amount))
        return;
    const float share = std::clamp(amount / BLOW, 0.f, 1.f);
    cause = what;
    fright = std::min(fright + std::max(amount, 0.f), 100.f);
    alarm = std::max(alarm, std::sqrt(share));
    flash = std::max(flash, share);
    static const String camera = SCS("camera"), flashlight = SCS("flashlight");
    const auto body = getParent().lookup();
    const auto head = body ? body->getChild(camera).lookup() : Handle<Object>::Result{};
    if (auto *const hand =
            componentOf<FlashlightHand>(head ? head->getChild(flashlight) : Handle<Object>(), ComponentKeys::hand))
        hand->shake(share);
}

float NervesComponent::getDulling() const
{
    return smoothstep(0.5f, 0.95f, insanity);
}

void NervesComponent::take(const char *property, float &setting, float val)
{
    if (isUsable(*this, property, val))
        setting = std::clamp(val, 0.f, 100.f);
}

void NervesComponent::setWhispers(float val)
{
    take("whispers", whispers, std::min(val, 1.f));
}

void NervesComponent::setDarknessTakes(float val)
{
    take("darknessTakes", darknessTakes, val);
}

void NervesComponent::setLightGives(float val)
{
    take("lightGives", lightGives, val);
}
