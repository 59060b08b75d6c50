// BTComponent: what its creature does and why, for developers.
#include "ai/trees/BTComponent.h"

#include "ai/telling/Why.h"

#include "engine/debug/DebugCollector.h"
#include "engine/debug/GlobalConfigSystem.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/transforms/TransformComponent.h"

#include <string>

namespace
{
const Vec4 ABOVE(0.f, 2.0f, 0.f, 0.f); ///< metres from the middle of a creature to the text above its head
const Vec4 TEXT_COLOR(1.f, 0.9f, 0.6f, 1.f);

/// A sentence with a line for each of its parts.
String inLines(const String &sentence)
{
    std::string text = sentence.toCString();
    for (std::size_t at = text.find("; "); at != std::string::npos; at = text.find("; ", at))
        text[at + 1] = '\n';
    return String::copyFrom(text);
}
} // namespace

String BTComponent::getWhy() const
{
    return why(handle_cast<Entity>(getParent()));
}

void BTComponent::applyDebugDraw(const Handle<DebugCollectorComponent> &dcc)
{
    const GlobalConfigSystem &config = getSystemDeref<GlobalConfigSystem>();
    const auto collector = dcc.lookup();
    if (!collector || !config.getDebugDrawEnabled() || !config.getDebugDrawMinds())
        return;
    if (const auto place = handle_cast<TransformComponent>(getSibling(ComponentKeys::transform)).lookup())
        collector->addText3D(place->getPosition() + ABOVE, inLines(getWhy()), TEXT_COLOR);
}
