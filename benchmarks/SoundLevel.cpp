#include "SoundLevel.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "physics/acoustics/SoundWays.h"
#include "platform/sound/SoundSystem.h"
#include "port/fmod/FmodExtras.h"

#include <cmath>
#include <fstream>

namespace
{
using House = bench::SoundHouse;

constexpr float WALL_HEIGHT = 3, WALL_WIDTH = 0.3f, DOORWAY = 1;
constexpr int DOORS = 20, CLOSED = 10, SWINGING = 4;

constexpr const char *PROJECT = "project kaVel 1\ncategory sfx 1\ngroup sfx\nevent Walker\n category sfx\n mode loop\n"
                                " voices 64\n layer one\n  sample walker.wav\n"
                                " parameter distance 0 60\n  volume 0:1 60:0\n";

void writeNumber(std::ostream &out, std::uint32_t number, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.put(static_cast<char>(number >> 8 * i & 0xFF));
}

void writeSample(const std::filesystem::path &file)
{
    const std::vector<std::int16_t> values = House::sample();
    const auto bytes = static_cast<std::uint32_t>(2 * values.size());
    std::ofstream out(file, std::ios::binary);
    out << "RIFF";
    writeNumber(out, 36 + bytes, 4);
    out << "WAVEfmt ";
    for (const auto &[number, size] : {std::pair<std::uint32_t, int>{16, 4},
                                       {1, 2},
                                       {1, 2},
                                       {House::rate, 4},
                                       {2 * House::rate, 4},
                                       {2, 2},
                                       {16, 2}})
        writeNumber(out, number, size);
    out << "data";
    writeNumber(out, bytes, 4);
    out.write(reinterpret_cast<const char *>(values.data()), bytes);
}

template <class T>
T *addComponent(const Handle<Entity> &entity, const char *key)
{
    return handle_cast<T>(entity.lookup()->addComponent(SCS(key), T::staticType)).lookup().ptr;
}
} // namespace

SoundFolder::SoundFolder() : before(std::filesystem::current_path())
{
    namespace fs = std::filesystem;
    folder = fs::temp_directory_path() / ("w15-sound-" + std::to_string(std::hash<std::string>()(before.string())));
    fs::remove_all(folder);
    fs::create_directories(folder / "bin");
    fs::create_directories(folder / "assets" / "sound" / "fmod");
    for (const char *shared : {"scripts", "python.zip"})
        fs::create_symlink(fs::absolute(before / ".." / shared), folder / shared);
    std::ofstream(folder / "assets" / "sound" / "fmod" / "kaVel.fev") << PROJECT;
    writeSample(folder / "assets" / "sound" / "fmod" / "walker.wav");
    fs::current_path(folder / "bin");
    port::AudioOutput memory;
    memory.kind = port::AudioOutput::MEMORY;
    port::setAudioOutput(memory);
}

SoundFolder::~SoundFolder()
{
    std::filesystem::current_path(before);
    std::filesystem::remove_all(folder);
}

SoundLevel::SoundLevel() : arena(House::side, 2)
{
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(arena.level);
    buildWalls();
    buildDoors();
    arena.manager("boundingVolume").doFrame();
    addComponent<SoundWays>(arena.map, "soundWays");
    ways = &arena.manager("soundWays");
    sounds = handle_cast<SoundManager>(arena.manager("sound").getHandle()).lookup().ptr;

    const Handle<Entity> player = addEntity("Player");
    player.lookup()->setParent(arena.level);
    ears = addComponent<TransformComponent>(player, "transform");
    for (int i = 0; i < House::emitters; ++i)
    {
        const Handle<Entity> emitter = addEntity("walker");
        emitters.push_back(addComponent<TransformComponent>(emitter, "transform"));
        const bench::Place &at = house.walkers[static_cast<std::size_t>(i)].at;
        emitters.back()->setPosition(Vec4(at.x, House::ears, at.z, 1));
        auto *const sound = addComponent<SoundComponent>(emitter, "sound");
        sound->addSoundEffect(SCS("Walker"));
        sound->playSoundEffect(SCS("Walker"));
    }
}

Handle<Entity> SoundLevel::addEntity(const char *name)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    entity.lookup()->setName(String::copyFrom(name));
    entity.lookup()->setParent(arena.map);
    return entity;
}

void SoundLevel::buildWalls()
{
    for (int line = 0; line <= House::rooms; ++line)
        for (int along = 0; along < House::rooms; ++along)
        {
            const float across = -House::side / 2 + float(line) * House::room;
            const float middle = -House::side / 2 + (float(along) + 0.5f) * House::room;
            const bool inside = line > 0 && line < House::rooms;
            buildWall(middle, across, true, inside);
            buildWall(across, middle, false, inside);
        }
}

void SoundLevel::buildWall(float x, float z, bool alongX, bool hasDoorway)
{
    const auto piece = [&](float offset, float length)
    {
        arena.add(BoundingVolume::BV_WALL, Vec4(alongX ? x + offset : x, WALL_HEIGHT / 2, alongX ? z : z + offset, 1),
                  alongX ? Vec4(length, WALL_HEIGHT, WALL_WIDTH, 0) : Vec4(WALL_WIDTH, WALL_HEIGHT, length, 0), 0);
    };
    if (!hasDoorway)
        return piece(0, House::room);
    const float length = (House::room - DOORWAY) / 2;
    piece(-(DOORWAY + length) / 2, length);
    piece((DOORWAY + length) / 2, length);
}

/// Half of the doors closed, four that swing, the rest open; all around the listener's round.
void SoundLevel::buildDoors()
{
    for (int i = 0; i < DOORS; ++i)
    {
        const bool alongX = i % 2;
        const float line = float(i % 5 - 2) * House::room, middle = (float(i / 5 - 2) + 0.5f) * House::room;
        DoorPhysics *const door = alongX ? addDoor(middle, line, true) : addDoor(line, middle, false);
        if (i >= CLOSED && i < CLOSED + SWINGING)
            swinging.push_back(door);
        else if (i >= CLOSED)
            door->setPrevAngle(1.5f);
    }
}

DoorPhysics *SoundLevel::addDoor(float x, float z, bool alongX)
{
    const Handle<Entity> leaf = addEntity("door");
    auto *const transform = addComponent<TransformComponent>(leaf, "transform");
    transform->setPosition(Vec4(x, 1.1f, z, 1));
    if (!alongX)
        transform->setOrientation(Quaternion(std::sqrt(0.5f), 0, std::sqrt(0.5f), 0));
    auto *const volume = addComponent<BoundingVolume>(leaf, "boundingVolume");
    volume->setHitBox(Vec4(DOORWAY, 2.2f, 0.08f, 0));
    volume->setVolumeType(BoundingVolume::BV_DOOR);
    auto *const door = addComponent<DoorPhysics>(leaf, "physics");
    door->setPivotPosition(Vec4(-DOORWAY / 2, 0, 0, 0));
    door->onLoadComplete();
    return door;
}

void SoundLevel::move(int frame)
{
    house.step();
    const bench::Place at = House::listener(frame);
    ears->setPosition(Vec4(at.x, House::ears, at.z, 1));
    for (std::size_t i = 0; i < emitters.size(); ++i)
        emitters[i]->setPosition(Vec4(house.walkers[i].at.x, House::ears, house.walkers[i].at.z, 1));
    for (std::size_t i = 0; i < swinging.size(); ++i)
        swinging[i]->setPrevAngle(0.75f + 0.7f * std::sin(0.05f * float(frame) + float(i)));
    arena.manager("boundingVolume").doFrame();
}

void SoundLevel::doFrame()
{
    ways->doFrame();
    sounds->doFrame();
}
