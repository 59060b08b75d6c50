#include "engine/transforms/TransformOffsetComponent.h"

#include "engine/transforms/ParentTransform.h"

void TransformOffsetComponent::doFrame()
{
    const ParentTransform transforms = updatedParentTransform(*this);
    if (!transforms)
        return;
    const Quaternion turn = transforms.parent->getOrientation();
    transforms.own->setPosition(transforms.parent->getPosition() + turn.generateRotation() * positionOffset);
    transforms.own->setOrientation(turn * orientationOffset);
}
