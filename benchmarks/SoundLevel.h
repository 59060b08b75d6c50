// SoundLevel: the house of the sound workload as a level of the engine.
#pragma once

#include "Arena.h"

#include "w15_sound_common.h"

#include "physics/doors/DoorPhysics.h"
#include "platform/sound/SoundComponent.h"

#include <filesystem>

/// A project of one looped event in a folder of its own, which the process works in as long as this lives.
class SoundFolder
{
public:
    SoundFolder();
    ~SoundFolder();

private:
    std::filesystem::path before, folder;
};

/// 256 rooms with doorways, twenty doors in them, and five hundred sounds that walk about.
class SoundLevel
{
public:
    SoundLevel();

    /// Moves the sounds, the listener and the doors that swing.
    void move(int frame);
    /// The engine's share of a frame: ways, components, and which voices are heard.
    void doFrame();

private:
    void buildWalls();
    void buildWall(float x, float z, bool alongX, bool hasDoorway);
    void buildDoors();
    DoorPhysics *addDoor(float x, float z, bool alongX);
    Handle<Entity> addEntity(const char *name);

    SoundFolder folder; ///< first to come and last to go
    bench::SoundHouse house;
    ArenaLevel arena;
    TransformComponent *ears = nullptr;
    std::vector<TransformComponent *> emitters;
    std::vector<DoorPhysics *> swinging;
    SoundManager *sounds = nullptr;
    AbstractManager *ways = nullptr;
};
