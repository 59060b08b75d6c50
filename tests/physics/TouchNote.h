// TouchNote: what a trigger calls in a test.
#pragma once

#include "physics/bodies/PhysicsComponent.h"

#include "engine/entities/Entity.h"

#include <functional>

/// Hears of whoever touches a trigger.
class TouchNote : public Object
{
    KV_REFLECTED(TouchNote)
public:
    TouchNote() = default;

    void noteTouch(Handle<Entity> touched, Handle<PhysicsComponent> toucher)
    {
        if (whenTouched)
            whenTouched(touched, toucher);
    }

    std::function<void(Handle<Entity>, Handle<PhysicsComponent>)> whenTouched;
};
