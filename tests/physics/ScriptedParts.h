// ScriptedParts: components that the functions of triggers reach by name.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "physics/bodies/PhysicsComponent.h"

/// Stands in for a light, and counts what is asked of it: to follow the player, to spawn, to note a use.
class ScriptedPart : public SimpleComponent
{
    KV_REFLECTED(ScriptedPart)
public:
    ScriptedPart() = default;

    void doFrame() override {}
    void followPlayer() { ++followed; }
    void spawnObject(Handle<PhysicsComponent> phys) { spawnedFor = phys; }
    int getInteractCounter() const { return interactCounter; }
    void setInteractCounter(int val) { interactCounter = val; }
    bool getVisible() const { return visible; }
    void setVisible(bool val) { visible = val; }
    Vec4 getDiffuseColor() const { return diffuseColor; }
    void setDiffuseColor(Vec4 val) { diffuseColor = val; }

    bool visible = true;
    Vec4 diffuseColor = Vec4(2, 1, 0.5f, 0);
    int followed = 0;
    Handle<PhysicsComponent> spawnedFor;
    int interactCounter = 0;
};
