#include "engine/debug/DebugCollector.h"

#include "engine/levels/Coordinator.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/systems/SystemSystem.h"
#include "object/tree/TreeWalk.h"

#include <utility>

void DebugCollectorComponent::Geometry::clear()
{
    lines.clear();
    texts.clear();
}

void DebugCollectorComponent::Frame::clear()
{
    world.clear();
    screen.clear();
}

void DebugCollectorComponent::doFrame()
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    if (config.getDebugDrawEnabled())
    {
        collectFromSystems();
        const auto level = getAncestorOfType<Coordinator>().lookup();
        if (level && !config.getDebugDrawSystemsOnly())
            collectFromTree(*level);
    }
    else
        collected.clear();
    showCollected();
}

void DebugCollectorComponent::showCollected()
{
    std::swap(collected, shown);
    collected.clear();
}

void DebugCollectorComponent::collectFromSystems()
{
    const auto systems = SystemSystem::getInstance().lookup();
    const Handle<DebugCollectorComponent> own = ::getHandle(this);
    for (std::size_t i = 0; systems && i < systems->getChildCount(); ++i)
        if (const auto system = systems->children_begin()[static_cast<std::ptrdiff_t>(i)].lookup())
            system->applyDebugDraw(own);
}

void DebugCollectorComponent::collectFromTree(Object &root)
{
    const Handle<DebugCollectorComponent> own = ::getHandle(this);
    TreeWalk walk(root);
    while (Object *object = walk.next())
        object->applyDebugDraw(own);
}

void DebugCollectorComponent::addLine3D(Vec4 from, Vec4 to, Vec4 color)
{
    collected.world.lines.push_back({from, to, color});
}

void DebugCollectorComponent::addLine2D(Vec4 from, Vec4 to, Vec4 color)
{
    collected.screen.lines.push_back({from, to, color});
}

void DebugCollectorComponent::addText3D(Vec4 position, const String &text, Vec4 color)
{
    collected.world.texts.push_back({position, text, color});
}

void DebugCollectorComponent::addText2D(Vec4 position, const String &text, Vec4 color)
{
    collected.screen.texts.push_back({position, text, color});
}
