// ILitByVolumes: what is told that the volume of a light has reached it.
#pragma once

class BoundingVolume;

/// What a component under the key "player" is told by volumes that stand for lights; a higher folder has the component.
class ILitByVolumes
{
public:
    virtual ~ILitByVolumes() = default;

    /// A light's volume has reached the player in this frame; how bright the light is there is for others to find.
    virtual void reachedByLight(BoundingVolume &light) = 0;
};
