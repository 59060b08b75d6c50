// SoundScene: rooms of walls and doors in which one listens.
#pragma once

#include "PhysicsWorld.h"

#include "physics/acoustics/SoundWays.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"

#include <cmath>

/// A closed house of 20 x 20 m about (3, 0, -2), which whoever builds a test divides.
///
///     z = 8   +-----------+
///             |           |      x = -7 .. 13
///     z = -12 +-----------+
class SoundScene
{
public:
    SoundScene()
    {
        ways = world.level.component<SoundWays>(world.map, "soundWays").lookup().ptr;
        wall(-8, 14, 8, 9);
        wall(-8, 14, -13, -12);
        wall(-8, -7, -12, 8);
        wall(13, 14, -12, 8);
    }

    TestBox wall(float x0, float x1, float z0, float z1, float y0 = 0, float y1 = 3)
    {
        return world.box(BoundingVolume::BV_WALL, Vec4((x0 + x1) / 2, (y0 + y1) / 2, (z0 + z1) / 2, 1),
                         Vec4(x1 - x0, y1 - y0, z1 - z0, 0));
    }
    /// A wall along z = -2.3 .. -2 with a doorway of a metre about each of some places.
    void divide(std::initializer_list<float> doorways)
    {
        float from = -7;
        for (const float x : doorways)
        {
            wall(from, x - 0.5f, -2.3f, -2);
            from = x + 0.5f;
        }
        wall(from, 13, -2.3f, -2);
    }
    /// A closed leaf in a doorway of `divide`.
    template <class Physics>
    Physics &door(float x)
    {
        const Handle<Entity> leaf = world.level.entity("leaf", world.map);
        world.level.transform(leaf, Vec4(x, 1, -2.15f, 1));
        BoundingVolume &volume = *world.level.component<BoundingVolume>(leaf, "boundingVolume").lookup();
        volume.setHitBox(Vec4(1, 2, 0.06f, 0));
        volume.setVolumeType(BoundingVolume::BV_DOOR);
        Physics &door = *world.level.component<Physics>(leaf, "physics").lookup();
        if constexpr (std::is_same_v<Physics, DoorPhysics>)
            door.setPivotPosition(Vec4(-0.5f, 0, 0, 0));
        door.onLoadComplete();
        return door;
    }
    /// Lets what was built come into the grid and be read.
    void settle()
    {
        world.level.frame();
        ways->wallsChanged();
        world.level.frame();
    }

    HeardWay hear(float fromX, float fromZ, float atX, float atZ)
    {
        return ways->hear(Vec4(fromX, 1.5f, fromZ, 1), Vec4(atX, 1.5f, atZ, 1));
    }

    PhysicsWorld world;
    SoundWays *ways;
};

inline float decibels(float gain)
{
    return 20.f * std::log10(gain);
}
