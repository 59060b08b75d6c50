#include "engine/transforms/ParentFollowerComponent.h"

#include "engine/transforms/ParentTransform.h"

void ParentFollowerComponent::doFrame()
{
    const ParentTransform transforms = updatedParentTransform(*this);
    if (!transforms)
        return;
    transforms.own->setPosition(transforms.parent->getPosition() + positionOffset);
    transforms.own->setOrientation(transforms.parent->getOrientation() * orientationOffset);
}
