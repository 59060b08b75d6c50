#include "engine/DebugCollector.h"

#include "engine/Coordinator.h"
#include "engine/GlobalConfigSystem.h"
#include "engine/SystemSystem.h"

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

/// Parents before children. Counts on through each list, which may change under the walk: who moves away may be missed
/// for a frame, and who is murdered lives until its end.
void DebugCollectorComponent::collectFromTree(Object &root)
{
    root.applyDebugDraw(::getHandle(this));
    for (std::size_t i = 0; i < root.getChildCount(); ++i)
        if (const auto child = root.children_begin()[static_cast<std::ptrdiff_t>(i)].lookup())
            collectFromTree(*child);
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
