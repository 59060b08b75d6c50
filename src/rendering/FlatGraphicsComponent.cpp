#include "rendering/FlatGraphicsComponent.h"

#include "rendering/WindowSystem2.h"

#include "engine/Entity.h"
#include "engine/TransformComponent.h"

namespace
{

const String &transformKey()
{
    static const String key = SCS("transform");
    return key;
}

} // namespace

float FlatGraphicsComponent::getWidth()
{
    const auto transform = handle_cast<TransformComponent>(getSibling(transformKey())).lookup();
    return transform ? transform->getScale().x : 0.0f;
}

float FlatGraphicsComponent::getHeight()
{
    const auto transform = handle_cast<TransformComponent>(getSibling(transformKey())).lookup();
    return transform ? transform->getScale().y : 0.0f;
}

void FlatGraphicsComponent::onSetHorizontalAnchorPoint(HorizontalAnchor val) {}

void FlatGraphicsComponent::onSetVerticalAnchorPoint(VerticalAnchor val) {}

void FlatGraphicsComponent::setHorizontalAnchorPoint(HorizontalAnchor val)
{
    horizontalAnchorPoint = val;
    onSetHorizontalAnchorPoint(val);
}

void FlatGraphicsComponent::setVerticalAnchorPoint(VerticalAnchor val)
{
    verticalAnchorPoint = val;
    onSetVerticalAnchorPoint(val);
}

void FlatGraphicsComponent::updateTransformByWindowCoordinates(WindowCoordinate coord, Handle<Entity> relativeTo,
                                                               float depth)
{
    const auto transform = handle_cast<TransformComponent>(getSibling(transformKey())).lookup();
    if (!transform)
        return;
    const WindowCoordinate place =
        getSystemDeref<WindowSystem2>().convertWindowCoordinate(coord, WCS_NORMALIZED_NOWRAP, WCS_NORMALIZED_NOWRAP);
    Vec4 origin(0, 0, 0, 1);
    if (const auto base = relativeTo.lookup())
        if (const auto baseTransform = handle_cast<TransformComponent>(base->getComponent(transformKey())).lookup())
            origin = baseTransform->getPosition();
    transform->setPosition(Vec4(origin.x + place.x, origin.y + place.y, depth, 1));
}
