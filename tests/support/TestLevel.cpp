#include "support/TestLevel.h"

#include "engine/time/BSTimeSource.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/TimeSystem.h"

#include "foundation/Logger.h"

#include <cstring>

TestLevel::TestLevel()
{
    SystemSystem::bootstrap();
    const Handle<BSTimeSource> source = construct<BSTimeSource>(defaultAllocationCategory);
    source.lookup()->setFrameRate(4096 / FRAME_TICKS);
    getSystemDeref<TimeSystem>().setSource(source);
    level = construct<Coordinator>(defaultAllocationCategory);
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(level);
}

TestLevel::~TestLevel()
{
    others.push_back(level);
    for (const Handle<Coordinator> &h : others)
    {
        auto coordinator = h.lookup();
        if (coordinator && !coordinator->isDying())
            coordinator->murder();
    }
    if (SystemSystem::getInstance().isValid())
        SystemSystem::shutdown();
}

void TestLevel::frame()
{
    getSystemDeref<GameLoopSystem>().doFrame();
}

Handle<Coordinator> TestLevel::anotherCoordinator()
{
    others.push_back(construct<Coordinator>(defaultAllocationCategory));
    return others.back();
}

Handle<Entity> TestLevel::entity(const char *name, Handle<Object> parent)
{
    const Handle<Entity> h = construct<Entity>(defaultAllocationCategory);
    h.lookup()->setName(String::copyFrom(name));
    h.lookup()->setParent(parent.isValid() ? parent : Handle<Object>(level));
    return h;
}

Handle<MapRootEntity> TestLevel::map(const char *name, Vec4 centre, Vec4 extents)
{
    const Handle<MapRootEntity> h = construct<MapRootEntity>(defaultAllocationCategory);
    h.lookup()->setName(String::copyFrom(name));
    h.lookup()->setParent(level);
    const Handle<TransformComponent> place = transform(h, centre);
    place.lookup()->setScale(extents);
    return h;
}

Handle<TransformComponent> TestLevel::transform(const Handle<Entity> &entity, Vec4 position)
{
    const Handle<TransformComponent> h = component<TransformComponent>(entity, "transform");
    h.lookup()->setPosition(position);
    return h;
}

std::size_t countLogLines(const char *text)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < Logger().getHistorySize(); ++i)
        count += std::strstr(Logger().getHistoryEntry(i).message.toCString(), text) != nullptr;
    return count;
}
