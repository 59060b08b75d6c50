#include "rendering/drawn/FlatGraphicsComponent.h"

#include "platform/window/WindowSystem2.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"

float FlatGraphicsComponent::getWidth()
{
    const TransformComponent *transform = findTransform();
    return transform ? transform->getScale().x : 0.0f;
}

float FlatGraphicsComponent::getHeight()
{
    const TransformComponent *transform = findTransform();
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
    TransformComponent *transform = findTransform();
    if (!transform)
        return;
    const WindowCoordinate place =
        getSystemDeref<WindowSystem2>().convertWindowCoordinate(coord, WCS_NORMALIZED_NOWRAP, WCS_NORMALIZED_NOWRAP);
    Vec4 origin(0, 0, 0, 1);
    if (const auto *baseTransform = componentOf<TransformComponent>(relativeTo, ComponentKeys::transform))
        origin = baseTransform->getPosition();
    transform->setPosition(Vec4(origin.x + place.x, origin.y + place.y, depth, 1));
}
