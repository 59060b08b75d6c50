#include "MindsLevel.h"

#include "ai/steering/SteeringComponent.h"
#include "ai/trees/BTComponent.h"
#include "ai/trees/BTLib.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/GameLoop.h"
#include "engine/time/BSTimeSource.h"
#include "engine/time/TimeSystem.h"
#include "engine/time/TimerNames.h"
#include "foundation/Random.h"
#include "physics/acoustics/SoundWays.h"
#include "rendering/drawn/LightComponent.h"

#include <cmath>
#include <cstring>

namespace
{

constexpr int SIDE = bench::GridMap::W;
constexpr float WALL_HEIGHT = 3, CREATURE = 0.5f, ROUND = 40, AROUND = 64, WALK = 1.4f; // metres, metres a second
constexpr float LAMP_REACH = 8;                                                         ///< metres
constexpr int FRAME_RATE = 60, STEP_FRAMES = 30, LAMPS = 96;
constexpr TimerTicks FRAME_TICKS = 4096 / FRAME_RATE; ///< of the deterministic source
constexpr float MASS = 60, DAMPING = 0.05f;           ///< kilograms; of a body that stands as soon as nothing drives it
constexpr float STEP_LOUDNESS = 0.04f;

std::uint64_t treeTicks = 0;

template <class T>
T *addComponent(const Handle<Entity> &entity, const char *key)
{
    return handle_cast<T>(entity.lookup()->addComponent(SCS(key), T::staticType)).lookup().ptr;
}

PerceptionComponent *sensesOf(const Handle<Entity> &creature)
{
    ++treeTicks;
    return componentOf<PerceptionComponent>(creature, ComponentKeys::perception);
}

StatusCode knows(Handle<Entity> creature)
{
    const PerceptionComponent *const senses = sensesOf(creature);
    return senses && senses->getKnows() ? SC_Success : SC_Failure;
}

StatusCode remembers(Handle<Entity> creature)
{
    const PerceptionComponent *const senses = sensesOf(creature);
    return senses && senses->getRemembers() ? SC_Success : SC_Failure;
}

ActionStatus goThere(Handle<Entity> creature)
{
    const PerceptionComponent *const senses = sensesOf(creature);
    componentOf<PathFollower>(creature, ComponentKeys::pathFollower)->goTo(senses->getPlace());
    return AS_Complete;
}

ActionStatus wander(Handle<Entity> creature)
{
    ++treeTicks;
    componentOf<PathFollower>(creature, ComponentKeys::pathFollower)->stop();
    auto *const steering = componentOf<SteeringComponent>(creature, ComponentKeys::steering);
    steering->updateWander(1.0 / FRAME_RATE);
    steering->updateSeparation();
    return AS_Complete;
}

} // namespace

MindsLevel::MindsLevel(int count) : arena(SIDE, 2)
{
    const Handle<BSTimeSource> clock = construct<BSTimeSource>(defaultAllocationCategory);
    clock.lookup()->setFrameRate(FRAME_RATE);
    getSystemDeref<TimeSystem>().setSource(clock);
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(arena.level);
    seedEngineRand(16);
    treeTicks = 0;
    cells.makeNoise(90);
    buildGrid(".MapData_mainPathGrid", true);
    buildGrid(".MapData_pathSaturationGrid", false);
    buildWalls();
    buildLamps();
    buildTree();
    addComponent<SoundWays>(arena.map, "soundWays");
    for (const char *key : {"soundWays", "perception", "behaviors", "walkways", "path", "pathFollower", "steering"})
        minds.push_back(&arena.manager(key));
    for (const char *key : {"physics", "boundingVolume", "partitioning"})
        bodies.push_back(&arena.manager(key));
    senses = handle_cast<PerceptionManager>(arena.manager("perception").getHandle()).lookup().ptr;
    paths = handle_cast<PathManager>(arena.manager("path").getHandle()).lookup().ptr;

    const ArenaBox body = arena.add(BoundingVolume::BV_PLAYER, playersPlace(0), Vec4(0.5f, 1.8f, 0.5f, 0), 0);
    player = body.transform;
    playersEntity = handle_cast<Entity>(player->getParent());
    playersEntity.lookup()->setName(SCS("Player"));
    bench::Rng chance{16};
    while (static_cast<int>(creatures.size()) < count)
    {
        const int x = static_cast<int>(chance.below(SIDE)), z = static_cast<int>(chance.below(SIDE));
        if (cells.free(x, z) && middleOf(x, z).magnitude() < AROUND)
            addCreature(x, z);
    }
}

Vec4 MindsLevel::middleOf(int x, int z) const
{
    return Vec4(static_cast<float>(x - SIDE / 2), 0, static_cast<float>(z - SIDE / 2), 1);
}

Handle<Entity> MindsLevel::addEntity(const char *name, const Handle<Object> &parent)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    entity.lookup()->setName(String::copyFrom(name));
    entity.lookup()->setParent(parent);
    return entity;
}

void MindsLevel::buildGrid(const char *name, bool hasWalls)
{
    const Handle<Entity> entity = addEntity(name, arena.map);
    addComponent<TransformComponent>(entity, "transform")->setScale(Vec4(SIDE, 1, SIDE, 0));
    SquareGrid &grid = *addComponent<SquareGrid>(entity, "grid");
    grid.updateSize();
    for (int z = 0; z < SIDE && hasWalls; ++z)
        for (int x = 0; x < SIDE; ++x)
            grid.setCellFloatValue(x, z, cells.free(x, z) ? 0.f : 1.f);
}

/// A box for each run of blocked cells along x.
void MindsLevel::buildWalls()
{
    for (int z = 0; z < SIDE; ++z)
        for (int x = 0; x < SIDE; ++x)
        {
            const int first = x;
            while (x < SIDE && !cells.free(x, z))
                ++x;
            if (x > first)
                arena.add(BoundingVolume::BV_WALL, (middleOf(first, z) + middleOf(x - 1, z)) * 0.5f,
                          Vec4(static_cast<float>(x - first), WALL_HEIGHT, 1, 0), 0);
        }
}

/// Lamps all over the map, every fourth a cone that draws shadows.
void MindsLevel::buildLamps()
{
    bench::Rng chance{17};
    for (int i = 0; i < LAMPS; ++i)
    {
        const Handle<Entity> lamp = addEntity("lamp", arena.map);
        auto *const transform = addComponent<TransformComponent>(lamp, "transform");
        transform->setPosition(middleOf(static_cast<int>(chance.below(SIDE)), static_cast<int>(chance.below(SIDE))) +
                               Vec4(0, WALL_HEIGHT, 0, 0));
        auto *const light = addComponent<LightComponent>(lamp, "graphics2");
        light->setIsSpot(i % 4 == 0);
        light->setCastShadows(i % 4 == 0);
        light->setLightFalloffEnd(LAMP_REACH);
        light->setLayer(SceneGraph::LIGHT);
        light->onLoadComplete();
    }
}

/// Pursues what it knows of, searches where it suspects something, and wanders else.
void MindsLevel::buildTree()
{
    BTLib &trees = getSystemDeref<BTLib>();
    static const String name = SCS("W16");
    if (trees.getTrees().contains(name))
        return; // of the run before
    const Handle<BTTask> root = trees.BTCreateSelector();
    for (const BTConditionFn condition : {knows, remembers})
    {
        const Handle<BTTask> branch = trees.BTCreateSequence();
        trees.BTAddChild(branch, trees.BTCreateCondition(condition));
        trees.BTAddChild(branch, trees.BTCreateAction(goThere));
        trees.BTAddChild(root, branch);
    }
    trees.BTAddChild(root, trees.BTCreateAction(wander));
    trees.addBehaviorTree(name, root);
}

void MindsLevel::addCreature(int x, int z)
{
    const ArenaBox body = arena.add(BoundingVolume::BV_BOX, middleOf(x, z), Vec4(CREATURE, 1.8f, CREATURE, 0), 1);
    const Handle<Entity> entity = handle_cast<Entity>(body.transform->getParent());
    body.body->setMass(MASS);
    body.body->setDamping(DAMPING);
    creatures.push_back(addComponent<PerceptionComponent>(entity, "perception"));
    creatures.back()->setPeripheralAngle(PI);
    auto *const mind = addComponent<BTComponent>(entity, "behaviors");
    mind->addBehavior(SCS("W16"));
    mind->setDefaultBehavior(SCS("W16"));
    mind->onLoadComplete();
    followers.push_back(addComponent<PathFollower>(entity, "pathFollower"));
    followers.back()->setSpeed(WALK);
    auto *const steering = addComponent<SteeringComponent>(entity, "steering");
    steering->setMaxSpeed(WALK);
    steering->setMaxAccel(10);
    steering->setTimeToTarget(0.25f);
    steering->setSepWeight(1);
    steering->setSepThreshold(1);
    transforms.push_back(body.transform);
}

Vec4 MindsLevel::playersPlace(int frame)
{
    const float angle = WALK / ROUND / FRAME_RATE * static_cast<float>(frame);
    return Vec4(ROUND * std::sin(angle), 0, ROUND * std::cos(angle), 1);
}

void MindsLevel::move(int frame)
{
    arena.level.lookup()->getTimer(TimerNames::master).newFrame(FRAME_TICKS);
    player->setPosition(playersPlace(frame));
    for (AbstractManager *const manager : bodies)
        manager->doFrame();
    if (frame % STEP_FRAMES == 0)
        senses->makeNoise(SCS("Step"), player->getPosition(), STEP_LOUDNESS, playersEntity);
}

void MindsLevel::doFrame()
{
    for (AbstractManager *const manager : minds)
        manager->doFrame();
    searchFrames += paths->getPrevStatus() != PS_Unknown;
}

std::uint64_t MindsLevel::hashOfTransforms() const
{
    std::uint64_t hash = 14695981039346656037u;
    const auto add = [&hash](float value)
    {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof(bits));
        hash = (hash ^ bits) * 1099511628211u;
    };
    for (const TransformComponent *const transform : transforms)
    {
        const Vec4 place = transform->getPosition();
        const Quaternion turn = transform->getOrientation();
        for (const float value : {place.x, place.y, place.z, turn.r, turn.i, turn.j, turn.k})
            add(value);
    }
    return hash;
}

MindsLevel::Counts MindsLevel::getCounts() const
{
    Counts counts;
    counts.ticks = static_cast<double>(treeTicks);
    counts.sightLines = senses->getSightLines();
    counts.lights = senses->getLightQuestions();
    counts.sounds = senses->getSoundQuestions();
    counts.searchFrames = searchFrames;
    for (const PerceptionComponent *const creature : creatures)
        counts.knowing += creature->getKnows();
    for (const PathFollower *const follower : followers)
        counts.underWay += follower->getUnderWay();
    return counts;
}
