#include "platform/sound/BodySounds.h"

#include "engine/levels/Coordinator.h"
#include "engine/time/TimerNames.h"
#include "engine/transforms/TransformComponent.h"
#include "physics/bodies/PhysicsComponent.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float LEAST_STRIKE = 0.45f;  ///< metres a second: less is how things come to rest
constexpr float LEAST_MOTION = 0.12f;  ///< metres a second, to begin a loop
constexpr float STILL = 0.06f;         ///< metres a second, to end it
constexpr float OFF_THE_GROUND = 0.4f; ///< metres a second up or down
constexpr float TOLD_AGAIN = 1;        ///< seconds between two tellings of a motion that goes on
constexpr int QUIET_FRAMES = 7;        ///< a body is heard that long before it can be struck again

const String speedName = SCS("speed");

/// Puts numbers in order by a value of theirs, the greatest first, equals as they are numbered. Takes no memory, as a
/// stable sort would.
template <class Value>
void sortFromGreatest(std::vector<std::size_t> &numbers, const Value &valueOf)
{
    std::sort(numbers.begin(), numbers.end(),
              [&](std::size_t a, std::size_t b) { return valueOf(a) != valueOf(b) ? valueOf(a) > valueOf(b) : a < b; });
}
} // namespace

void BodySounds::setVoices(int count)
{
    voices = std::clamp(count, 1, MOST_VOICES);
}

int BodySounds::poolOf(const String &event)
{
    if (event.empty())
        return NONE;
    const auto known = std::find_if(pools.begin(), pools.end(), [&](const Pool &pool) { return pool.event == event; });
    if (known != pools.end())
        return static_cast<int>(known - pools.begin());
    Pool &pool = pools.emplace_back();
    pool.event = event;
    pool.users.fill(NOBODY);
    for (int i = 0; i < voices; ++i)
    {
        pool.names.push_back(String::format("%s %d", event.toCString(), i + 1).intern());
        addSoundEffectAs(pool.names.back(), event);
    }
    return static_cast<int>(pools.size()) - 1;
}

void BodySounds::addBody(Handle<PhysicsComponent> body, String impact, String motion)
{
    Body heard;
    heard.body = body;
    heard.impact = poolOf(impact);
    heard.motion = poolOf(motion);
    if (const auto live = body.lookup())
        heard.velocity = live->getVelocity();
    bodies.push_back(heard);
}

void BodySounds::doFrame()
{
    forgetTheDead();
    const auto level = getAncestorOfType<Coordinator>().lookup();
    const Seconds frameTime = level ? level->getTimer(TimerNames::master).getFrameTimeSeconds() : 0;
    for (Body &body : bodies)
        listen(body, frameTime);
    playContacts();
    moveLoops(frameTime);
    giveLoops();
    SoundComponent::doFrame();
}

void BodySounds::forgetTheDead()
{
    const auto isDead = [](const Body &body) { return !body.body.isValid(); };
    if (std::none_of(bodies.begin(), bodies.end(), isDead))
        return;
    for (Pool &pool : pools)
        for (std::size_t voice = 0; voice < pool.names.size(); ++voice)
            stopLoop(pool, voice);
    std::erase_if(bodies, isDead);
}

/// Takes over how a body moves, and what a contact has done to it beyond what its own forces did.
void BodySounds::listen(Body &body, Seconds frameTime)
{
    const PhysicsComponent &live = *body.body.lookup();
    const Vec4 velocity = live.getVelocity(), own = live.getAccLastFrame();
    body.quiet = std::max(0, body.quiet - 1);
    body.struck = body.moving = 0;
    if (!isFinite(velocity) || !isFinite(own))
        return;
    const auto kept = static_cast<float>(std::pow(static_cast<double>(live.getDamping()), frameTime));
    const float taken = (velocity - body.velocity * kept - own).magnitude();
    body.struck = taken - own.magnitude();
    const bool onGround = std::fabs(velocity.y) < OFF_THE_GROUND && taken > 0.5f * own.magnitude();
    body.moving = onGround ? std::hypot(velocity.x, velocity.z) : 0;
    body.velocity = velocity;
}

void BodySounds::playContacts()
{
    order.clear();
    for (std::size_t i = 0; i < bodies.size(); ++i)
        if (bodies[i].impact != NONE && bodies[i].struck > LEAST_STRIKE && bodies[i].quiet == 0)
            order.push_back(i);
    sortFromGreatest(order, [this](std::size_t number) { return bodies[number].struck; });
    for (Pool &pool : pools)
        pool.playedInFrame = 0;
    for (const std::size_t number : order)
        playContact(bodies[number]);
}

void BodySounds::playContact(Body &body)
{
    body.quiet = QUIET_FRAMES;
    Pool &pool = pools[static_cast<std::size_t>(body.impact)];
    const auto transform = body.body.lookup()->getTransformComponent().lookup();
    if (!transform || pool.playedInFrame == static_cast<int>(pool.names.size()))
        return;
    ++pool.playedInFrame;
    const String &name = pool.names[pool.next];
    pool.next = (pool.next + 1) % pool.names.size();
    placeEvent(name, transform->getPosition());
    setParam(name, speedName, body.struck);
    playSoundEffect(name);
}

/// Takes each loop along with its body, or ends it.
void BodySounds::moveLoops(Seconds frameTime)
{
    for (Pool &pool : pools)
        for (std::size_t voice = 0; voice < pool.names.size(); ++voice)
        {
            if (pool.users[voice] == NOBODY)
                continue;
            const Body &body = bodies[pool.users[voice]];
            const auto transform = body.body.lookup()->getTransformComponent().lookup();
            if (body.moving < STILL || !transform)
            {
                stopLoop(pool, voice);
                continue;
            }
            placeEvent(pool.names[voice], transform->getPosition());
            setParam(pool.names[voice], speedName, body.moving);
            tellOfLoop(pool, voice, frameTime);
        }
}

/// Has a sound that goes on be made anew now and then, where its body is by then.
void BodySounds::tellOfLoop(Pool &pool, std::size_t voice, Seconds frameTime)
{
    pool.untold[voice] += static_cast<float>(frameTime);
    if (pool.untold[voice] < TOLD_AGAIN)
        return;
    pool.untold[voice] = 0;
    if (SoundEvent *const event = eventsOf(SoundManager::SOUND_EFFECT).find(pool.names[voice]))
        event->tellMade();
}

void BodySounds::stopLoop(Pool &pool, std::size_t voice)
{
    if (pool.users[voice] == NOBODY)
        return;
    bodies[pool.users[voice]].voice = NONE;
    pool.users[voice] = NOBODY;
    stopSoundEffect(pool.names[voice]);
}

/// Gives the free loops to the fastest of those that move without one.
void BodySounds::giveLoops()
{
    order.clear();
    for (std::size_t i = 0; i < bodies.size(); ++i)
        if (bodies[i].motion != NONE && bodies[i].voice == NONE && bodies[i].moving > LEAST_MOTION)
            order.push_back(i);
    sortFromGreatest(order, [this](std::size_t number) { return bodies[number].moving; });
    for (const std::size_t number : order)
        startLoop(bodies[number]);
}

void BodySounds::startLoop(Body &body)
{
    Pool &pool = pools[static_cast<std::size_t>(body.motion)];
    const auto free = std::find(pool.users.begin(), pool.users.begin() + static_cast<long>(pool.names.size()), NOBODY);
    const auto transform = body.body.lookup()->getTransformComponent().lookup();
    if (!transform || free == pool.users.begin() + static_cast<long>(pool.names.size()))
        return;
    *free = static_cast<std::size_t>(&body - bodies.data());
    body.voice = static_cast<int>(free - pool.users.begin());
    pool.untold[static_cast<std::size_t>(body.voice)] = 0;
    const String &name = pool.names[static_cast<std::size_t>(body.voice)];
    placeEvent(name, transform->getPosition());
    setParam(name, speedName, body.moving);
    playSoundEffect(name);
}
