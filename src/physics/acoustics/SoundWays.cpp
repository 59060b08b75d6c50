#include "physics/acoustics/SoundWays.h"

#include "physics/acoustics/SoundMap.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/MapRootEntity.h"

#include <algorithm>

SoundWays::SoundWays() : sounds(std::make_unique<SoundMap>()) {}
SoundWays::~SoundWays() = default;

Handle<SoundWays> SoundWays::ofMap(const Handle<MapRootEntity> &map)
{
    return getHandle(componentOf<SoundWays>(map, ComponentKeys::soundWays));
}
void SoundWays::doFrame() {}
void SoundWays::applyDebugDraw(const Handle<DebugCollectorComponent> &) {}
HeardWay SoundWays::hear(Vec4 from, Vec4 at)
{
    HeardWay way;
    way.apparent = from;
    way.distance = (from - at).magnitude();
    return way;
}
float SoundWays::loudnessAt(Vec4 from, float loudness, Vec4 at)
{
    const HeardWay way = hear(from, at);
    return loudness * way.gain / std::max(1.f, way.distance);
}
void SoundWays::setListener(Vec4 place)
{
    sounds->listener = place;
}
int SoundWays::addSource(Vec4 place)
{
    sounds->heard.push_back(hear(place, sounds->listener));
    return int(sounds->heard.size()) - 1;
}
void SoundWays::moveSource(int, Vec4) {}
void SoundWays::dropSource(int) {}
const HeardWay &SoundWays::getHeard(int source) const
{
    return sounds->heard[std::size_t(source)];
}
int SoundWays::getSourceCount() const
{
    return 0;
}
void SoundWays::addFloor(float) {}
void SoundWays::addPassage(Vec4, Vec4, float) {}
void SoundWays::wallsChanged() {}
int SoundWays::getFrameWork() const
{
    return 0;
}
