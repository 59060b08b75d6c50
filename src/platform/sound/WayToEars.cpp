#include "platform/sound/WayToEars.h"

#include "platform/sound/FmodVector.h"

#include "engine/levels/MapRootEntity.h"
#include "port/fmod/FmodExtras.h"

void WayToEars::chooseMap(const Handle<Entity> &entity)
{
    const auto own = entity.lookup();
    const Handle<MapRootEntity> map = own ? own->getAncestorOfType<MapRootEntity>() : Handle<MapRootEntity>();
    const Handle<SoundWays> chosen = SoundWays::ofMap(map);
    if (chosen == ways)
        return;
    end();
    ways = chosen;
}

const HeardWay *WayToEars::follow(FMOD::Event &event, const Vec4 &place)
{
    const auto map = ways.lookup();
    if (!map)
        return nullptr;
    if (source == SoundWays::NO_SOURCE)
        source = map->addSource(place);
    else
        map->moveSource(source, place);
    const HeardWay &way = map->getHeard(source);
    // In sight the way is the straight one of this very frame, whenever it was found.
    port::setSoundPath(event, {toFmod(way.inSight ? place : way.apparent), way.gain, way.lowpass, way.reverb});
    return way.inSight ? nullptr : &way;
}

void WayToEars::end()
{
    const auto map = ways.lookup();
    if (map && source != SoundWays::NO_SOURCE)
        map->dropSource(source);
    source = SoundWays::NO_SOURCE;
}
