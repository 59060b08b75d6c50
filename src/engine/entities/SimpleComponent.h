// SimpleComponent: a component that its manager calls once a frame.
#pragma once

#include "engine/entities/AbstractComponent.h"

/// Component for use with SimpleManager: one step of its own in every frame.
class SimpleComponent : public AbstractComponent
{
    KV_REFLECTED(SimpleComponent)
public:
    SimpleComponent() = default;

    /// The component's frame step; runs also in the frame in which it was murdered.
    virtual void doFrame() = 0;
};
