#include "engine/TransformOffsetComponent.h"

#include "engine/ParentTransform.h"

void TransformOffsetComponent::doFrame()
{
    const ParentTransform transforms = updatedParentTransform(*this);
    if (!transforms)
        return;
    const Quaternion turn = transforms.parent->getOrientation();
    transforms.own->setPosition(transforms.parent->getPosition() + turn.generateRotation() * positionOffset);
    transforms.own->setOrientation(orientationOffset * turn);
}
