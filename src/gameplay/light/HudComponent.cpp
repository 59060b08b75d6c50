#include "gameplay/light/HudComponent.h"

#include "rendering/drawn/GraphicsComponent2.h"

namespace
{

constexpr int DEEPEST = 64; ///< levels of a screen's part; a script may build more than the processor's stack holds

void show(Object &object, bool visible, int depth)
{
    if (auto *const drawn = dynamic_cast<GraphicsComponent2 *>(&object))
        drawn->setVisible(visible);
    if (depth == 0)
        return;
    for (auto child = object.children_begin(); child != object.children_end(); ++child)
        if (const auto below = child->lookup())
            show(*below, visible, depth - 1);
}

} // namespace

void HudComponent::setVisible(bool val)
{
    visible = val;
    if (const auto entity = getParent().lookup())
        show(*entity, val, DEEPEST);
}
