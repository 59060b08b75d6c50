#include "physics/triggers/EventTriggerVolume.h"

#include "physics/volumes/BoundingVolume.h"
#include "physics/volumes/VolumeTraits.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/entities/SimpleManager.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"

#include "foundation/Logger.h"

#include <algorithm>

namespace
{

/// The parts of a text between commas, without the blanks around them.
std::vector<String> namesIn(const String &text)
{
    std::vector<String> names;
    const char *const end = text.end();
    for (const char *start = text.begin(); start < end;)
    {
        const char *const comma = std::find(start, end, ',');
        const char *first = start, *last = comma;
        while (first < last && *first == ' ')
            ++first;
        while (first < last && last[-1] == ' ')
            --last;
        if (first < last)
            names.push_back(String::copyFrom(first, static_cast<std::size_t>(last - first)));
        start = comma == end ? end : comma + 1;
    }
    return names;
}

} // namespace

void EventTriggerVolume::onLoadComplete()
{
    if (!handle_cast<SimpleManager>(getManager()).isValid())
        KV_LOGF(Logger_::I_ERROR,
                "%s of %s: nothing runs an event trigger under this key; give it the key \"scriptedSequence\".",
                getName().toCString(), getParent().toString().toCString());
}

void EventTriggerVolume::doFrame()
{
    if (eventFunc && touchesPlayer())
        fireEvent();
}

void EventTriggerVolume::fireEvent()
{
    static const String fire = SCS("fireEvent");
    const ReflectorPtr func = eventFunc; // the function may replace itself
    if (!func)
        return;
    if (!noted)
        addToPersistentStateNoArgs(fire);
    noted = true;
    SavedArguments entities(names.size());
    for (std::size_t i = 0; i < names.size(); ++i)
        entities[i].set(findEntity(names[i]));
    if (!callOrReport(func, entities, *this, "event function") && eventFunc == func)
        eventFunc = ReflectorPtr();
}

void EventTriggerVolume::setEventEntityNames(String entityNames)
{
    std::vector<String> found = namesIn(entityNames);
    if (found.size() > maxCallArgs)
    {
        KV_LOGF(Logger_::I_ERROR, "%s of %s: an event is called with at most %zu entities, and \"%s\" names %zu.",
                getName().toCString(), getParent().toString().toCString(), maxCallArgs, entityNames.toCString(),
                found.size());
        return;
    }
    eventEntityNames = entityNames;
    names = std::move(found);
}

bool EventTriggerVolume::touchesPlayer() const
{
    const BoundingVolume *const volume = componentOf<BoundingVolume>(getParent(), ComponentKeys::boundingVolume);
    if (!volume)
        return false;
    const auto isPlayer = [](const Handle<BoundingVolume> &h)
    {
        const auto collider = h.lookup();
        return collider && VolumeTraits::of(*collider).isPlayer;
    };
    return std::any_of(volume->getColliders().begin(), volume->getColliders().end(), isPlayer);
}

/// The entity at a path from the map that the volume lies in, or else from the level.
Handle<Object> EventTriggerVolume::findEntity(const String &name) const
{
    const auto own = getParent().lookup();
    if (!own)
        return Handle<Object>();
    const auto map = own->getAncestorOfType<MapRootEntity>().lookup();
    const Handle<Object> inMap = map ? map->getDescendantByPath(name) : Handle<Object>();
    if (inMap.isValid())
        return inMap;
    const auto level = own->getAncestorOfType<Coordinator>().lookup();
    return level ? level->getDescendantByPath(name) : Handle<Object>();
}
