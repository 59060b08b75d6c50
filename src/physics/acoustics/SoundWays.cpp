#include "physics/acoustics/SoundWays.h"

#include "physics/acoustics/SoundMap.h"
#include "physics/volumes/FiniteProperty.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"
#include "object/tree/PathBelow.h"

#include "foundation/Logger.h"

#include <algorithm>
#include <cmath>

SoundWays::SoundWays() : sounds(std::make_unique<SoundMap>()) {}

SoundWays::~SoundWays() = default;

Handle<SoundWays> SoundWays::ofMap(const Handle<MapRootEntity> &map)
{
    const SoundWays *const ways = componentOf<SoundWays>(map, ComponentKeys::soundWays);
    return ways ? getHandle(ways) : Handle<SoundWays>();
}

Handle<MapRootEntity> SoundWays::findMap()
{
    return handle_cast<MapRootEntity>(getParent());
}

void SoundWays::doFrame()
{
    sounds->doFrame(findMap());
}

HeardWay SoundWays::hear(Vec4 from, Vec4 at)
{
    return sounds->hear(from, at, findMap());
}

HeardWay SoundWays::hearWithin(Vec4 from, Vec4 at, float farthest)
{
    // In steps, so that those who hear a little less far share the ways of those who hear farther.
    constexpr float step = 4.f; // metres
    const float reach = std::ceil(std::max(farthest, step) / step) * step;
    return sounds->hear(from, at, findMap(), reach < WayFlood::FARTHEST ? reach : WayFlood::FARTHEST);
}

float SoundWays::loudnessAt(Vec4 from, float loudness, Vec4 at)
{
    const HeardWay heard = hear(from, at);
    return loudness * heard.gain / std::max(heard.distance, 1.f);
}

void SoundWays::setListener(Vec4 place)
{
    sounds->listener = place;
}

int SoundWays::addSource(Vec4 place)
{
    std::vector<SoundSource> &sources = sounds->sources;
    auto free = std::find_if(sources.begin(), sources.end(), [](const auto &source) { return !source.isUsed; });
    if (free == sources.end())
        free = sources.insert(free, SoundSource());
    free->isUsed = true;
    free->place = place;
    sounds->refresh(*free, findMap());
    return static_cast<int>(free - sources.begin());
}

/// A source by its number; null for none.
SoundSource *SoundWays::findSource(int number) const
{
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < sounds->sources.size() && sounds->sources[index].isUsed ? &sounds->sources[index]
                                                                                          : nullptr;
}

void SoundWays::moveSource(int number, Vec4 place)
{
    if (SoundSource *const source = findSource(number))
        source->place = place;
}

void SoundWays::dropSource(int number)
{
    if (SoundSource *const source = findSource(number))
        source->isUsed = false;
}

const HeardWay &SoundWays::getHeard(int number) const
{
    static const HeardWay nothing = HeardWay::nothingAt(Vec4(0.f, 0.f, 0.f, 1.f));
    const SoundSource *const source = findSource(number);
    return source ? source->heard : nothing;
}

int SoundWays::getSourceCount() const
{
    return static_cast<int>(std::count_if(sounds->sources.begin(), sounds->sources.end(),
                                          [](const auto &source) { return source.isUsed; }));
}

void SoundWays::addFloor(float height)
{
    if (isUsable(*this, "a floor's height", height) && !sounds->survey.addFloor(height))
        KV_LOGF(Logger_::I_ERROR, "%s has its %d floors; that at %g m is not one of them. Divide the map.",
                pathBelow(nullptr, *this).toCString(), static_cast<int>(MapSurvey::MOST_FLOORS),
                static_cast<double>(height));
}

void SoundWays::addPassage(Vec4 oneEnd, Vec4 otherEnd, float gain)
{
    if (!isUsable(*this, "a passage's end", oneEnd) || !isUsable(*this, "a passage's end", otherEnd))
        return;
    if (!(gain > 0.f && gain <= 1.f))
        return KV_LOGF(Logger_::I_ERROR, "%s has no passage of the gain %g; it must be above 0 and at most 1.",
                       pathBelow(nullptr, *this).toCString(), static_cast<double>(gain));
    sounds->passages.push_back(TurnGraph::Passage{{oneEnd, otherEnd}, {0, 0}, -20.f * std::log10(gain)});
    wallsChanged();
}

void SoundWays::wallsChanged()
{
    sounds->survey.forget();
}

int SoundWays::getFrameWork() const
{
    return sounds->frameWork;
}
