#include "port/fmod/output/SourcePool.h"

#include <AL/alext.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace port
{

namespace
{

constexpr std::size_t SPARE = 24;    ///< that fall silent while others begin in their stead
constexpr double FINISH_SECONDS = 1; ///< within which the last moments of a sound have been played
constexpr float MOST_GAIN = 4;
constexpr float HEAD_RADIUS = 0.3F; ///< m; what is nearer comes from all around instead of jumping from ear to ear
constexpr FMOD_VECTOR AHEAD = {0, 0, 1};
constexpr std::array<ALfloat, 2> SIDES = {0.5235988F, -0.5235988F}; ///< radians, what the library begins with
constexpr std::array<ALfloat, 2> MIDDLE = {0, 0};
constexpr double NOT_RISING = -1; ///< s; every host time lies behind it
/// What no settings equal, so that the first ones are told whatever they are.
constexpr SourceSettings NOTHING_TOLD = {-1, -1, {1e30F, 0, 0}, -1, -1, -1, -1};

/// Whether a change is not worth telling. All the way open or shut always is.
bool isNear(float wanted, float told, float share)
{
    if (wanted == 0 || wanted == 1)
        return wanted == told;
    return std::abs(wanted - told) <= share * std::abs(wanted);
}

constexpr float GAIN_SHARE = 0.002F;  ///< a fiftieth of a decibel
constexpr float FILTER_SHARE = 0.02F; ///< filters cost more to change, and it is heard less

bool isSame(const FMOD_VECTOR &a, const FMOD_VECTOR &b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

void makeSource(ALuint name)
{
    alSourcef(name, AL_ROLLOFF_FACTOR, 0);
    alSourcef(name, AL_GAIN, 0);
    if (alIsExtensionPresent("AL_SOFT_gain_clamp_ex"))
        alSourcef(name, AL_MAX_GAIN, MOST_GAIN);
}

} // namespace

SourcePool::SourcePool(int count, double latency) : sources(static_cast<std::size_t>(count) + SPARE), latency(latency)
{
    played.reserve(sources.size());
}

void SourcePool::open(const EffectCalls &calls, const ReverbSlots &rooms)
{
    forget();
    effects = &calls;
    slots = &rooms;
    isOpen = true;
    alDistanceModel(AL_NONE);
    if (calls.areThere())
    {
        calls.genFilters(1, &filter);
        calls.filteri(filter, AL_FILTER_TYPE, AL_FILTER_LOWPASS);
    }
    for (Source &source : sources)
    {
        alGenSources(1, &source.name);
        makeSource(source.name);
        if (!calls.areThere())
            continue;
        alSourcei(source.name, AL_DIRECT_FILTER_GAINHF_AUTO, AL_FALSE);
        alSourcei(source.name, AL_AUXILIARY_SEND_FILTER_GAIN_AUTO, AL_FALSE);
        alSourcei(source.name, AL_AUXILIARY_SEND_FILTER_GAINHF_AUTO, AL_FALSE);
    }
}

void SourcePool::forget()
{
    isOpen = false;
    played.clear();
    for (Source &source : sources)
    {
        if (source.holder)
            *source.holder = nullptr;
        source = Source();
    }
}

void SourcePool::stopAll()
{
    if (!isOpen)
        return;
    for (Source &source : sources)
        if (source.state != Source::FREE)
        {
            if (source.holder)
                *source.holder = nullptr;
            stop(source);
        }
    played.clear();
}

bool SourcePool::take(Source *&holder)
{
    if (!isOpen)
        return false;
    const auto found = std::find_if(sources.begin(), sources.end(),
                                    [](const Source &each) { return each.state == Source::FREE && each.name != 0; });
    if (found == sources.end())
        return false;
    found->state = Source::PLAYING;
    found->holder = &holder;
    holder = &*found;
    return true;
}

void SourcePool::load(Source &source, ALuint buffer, bool loops, double seconds)
{
    source.loops = loops;
    alSourcei(source.name, AL_BUFFER, static_cast<ALint>(buffer));
    alSourcei(source.name, AL_LOOPING, loops);
    if (seconds > 0)
        alSourcef(source.name, AL_SEC_OFFSET, static_cast<float>(seconds));
}

void SourcePool::load(Source &source, std::unique_ptr<StreamQueue> stream, bool loops)
{
    source.loops = loops;
    source.stream = std::move(stream);
    alSourcei(source.name, AL_LOOPING, AL_FALSE);
    source.stream->begin(source.name);
}

void SourcePool::play(Source &source, bool placed, bool rises, double now)
{
    source.placed = placed;
    source.raised = rises ? now + latency : NOT_RISING;
    source.told = NOTHING_TOLD;
    alSourcef(source.name, AL_GAIN, 0);
    setPlace(source);
    played.push_back(source.name);
}

/// Puts a source where it is heard from: ahead of the listener at first. The channels of music are its sides, unless
/// both are to be the same.
void SourcePool::setPlace(const Source &source) const
{
    const bool placed = source.placed && !mono;
    alSourcei(source.name, AL_SOURCE_RELATIVE, placed ? AL_FALSE : AL_TRUE);
    alSource3f(source.name, AL_POSITION, AHEAD.x, AHEAD.y, -AHEAD.z);
    alSourcef(source.name, AL_SOURCE_RADIUS, placed ? HEAD_RADIUS : 0);
    if (alIsExtensionPresent("AL_SOFT_direct_channels"))
        alSourcei(source.name, AL_DIRECT_CHANNELS_SOFT, mono ? AL_FALSE : AL_TRUE);
    if (alIsExtensionPresent("AL_EXT_STEREO_ANGLES"))
        alSourcefv(source.name, AL_STEREO_ANGLES, (mono ? MIDDLE : SIDES).data());
}

void SourcePool::setMono(bool on)
{
    mono = on;
    if (!isOpen)
        return;
    for (Source &source : sources)
        if (source.state != Source::FREE)
        {
            setPlace(source);
            source.told.position = NOTHING_TOLD.position;
        }
}

void SourcePool::startPlayed()
{
    if (!played.empty())
        alSourcePlayv(static_cast<ALsizei>(played.size()), played.data());
    played.clear();
}

ALuint SourcePool::lowpass(float gain, float highGain)
{
    effects->filterf(filter, AL_LOWPASS_GAIN, std::clamp(gain, 0.0F, 1.0F));
    effects->filterf(filter, AL_LOWPASS_GAINHF, std::clamp(highGain, 0.0F, 1.0F));
    return filter;
}

void SourcePool::setFilters(Source &source, const SourceSettings &settings)
{
    SourceSettings &told = source.told;
    if (!isNear(settings.direct, told.direct, GAIN_SHARE) ||
        !isNear(settings.directLowpass, told.directLowpass, FILTER_SHARE))
    {
        told.direct = settings.direct;
        told.directLowpass = settings.directLowpass;
        alSourcei(source.name, AL_DIRECT_FILTER, static_cast<ALint>(lowpass(told.direct, told.directLowpass)));
    }
    const std::array<ALuint, ReverbSlots::COUNT> rooms = {slots->getTarget(0), slots->getTarget(1)};
    if (rooms == source.rooms && isNear(settings.send, told.send, FILTER_SHARE) &&
        isNear(settings.sendLowpass, told.sendLowpass, FILTER_SHARE))
        return;
    told.send = settings.send;
    told.sendLowpass = settings.sendLowpass;
    source.rooms = rooms;
    const auto wet = static_cast<ALint>(lowpass(told.send, told.sendLowpass));
    for (std::size_t i = 0; i < rooms.size(); ++i)
        alSource3i(source.name, AL_AUXILIARY_SEND_FILTER, static_cast<ALint>(rooms[i]), static_cast<ALint>(i), wet);
}

void SourcePool::set(Source &source, const SourceSettings &settings, double now)
{
    SourceSettings &told = source.told;
    const float gain = now > source.raised ? std::min(settings.gain, MOST_GAIN) : 0;
    if (!isNear(gain, told.gain, GAIN_SHARE))
    {
        told.gain = gain;
        alSourcef(source.name, AL_GAIN, gain);
    }
    if (settings.pitch != told.pitch)
    {
        told.pitch = settings.pitch;
        alSourcef(source.name, AL_PITCH, settings.pitch);
    }
    if (source.placed && !mono && !isSame(settings.position, told.position))
    {
        told.position = settings.position;
        alSource3f(source.name, AL_POSITION, told.position.x, told.position.y, -told.position.z);
    }
    if (effects->areThere())
        setFilters(source, settings);
}

double SourcePool::positionOf(const Source &source)
{
    ALfloat seconds = 0;
    alGetSourcef(source.name, AL_SEC_OFFSET, &seconds);
    return seconds;
}

bool SourcePool::isFlowing(const Source &source)
{
    ALint state = AL_PLAYING;
    if (source.stream && !source.stream->isAtEnd())
        alGetSourcei(source.name, AL_SOURCE_STATE, &state);
    return state == AL_PLAYING;
}

void SourcePool::leave(Source *&holder)
{
    holder->holder = nullptr;
    holder->state = Source::LEAVING;
    holder = nullptr;
}

void SourcePool::finish(Source *&holder)
{
    Source &source = *holder;
    leave(holder);
    if (source.loops || (source.stream && !source.stream->isAtEnd()))
        return;
    source.state = Source::FINISHING;
}

void SourcePool::stop(Source &source)
{
    alSourceStop(source.name);
    alSourcei(source.name, AL_BUFFER, 0);
    const ALuint name = source.name;
    source = Source();
    source.name = name;
}

void SourcePool::tendGoing(Source &source, double now)
{
    ALint state = AL_PLAYING;
    switch (source.state)
    {
    case Source::LEAVING:
        alSourcef(source.name, AL_GAIN, 0);
        source.state = Source::SILENCING;
        source.freed = now + latency;
        return;
    case Source::SILENCING:
        if (now > source.freed)
            stop(source);
        return;
    case Source::FINISHING:
        source.freed = source.freed > 0 ? source.freed : now + FINISH_SECONDS;
        alGetSourcei(source.name, AL_SOURCE_STATE, &state);
        if (state == AL_STOPPED)
            stop(source);
        else if (now > source.freed)
            source.state = Source::LEAVING;
        return;
    default:
        return;
    }
}

void SourcePool::tend(double now)
{
    if (!isOpen)
        return;
    for (Source &source : sources)
    {
        if (source.stream)
            source.stream->tend(source.name);
        tendGoing(source, now);
    }
}

int SourcePool::countInUse() const
{
    return static_cast<int>(std::count_if(sources.begin(), sources.end(),
                                          [](const Source &each) { return each.state == Source::PLAYING; }));
}

} // namespace port
