// AIObserverComponent: who may ask for what the things of a level have to tell.
#pragma once

#include "engine/entities/SimpleComponent.h"

/// Marks an entity as one that may ask AIMessageComponents, under the component key "aiObserver".
///
/// Keeps nothing and does nothing by itself.
class AIObserverComponent : public SimpleComponent
{
    KV_REFLECTED(AIObserverComponent)
public:
    AIObserverComponent() = default;

    /// Has no step of its own.
    void doFrame() override {}
};
