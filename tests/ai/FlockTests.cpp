#include "ai/flocks/FlockingComponent.h"

#include "ai/flocks/FlowFieldGuideComponent.h"
#include "ai/flocks/FlowFieldInfluencerComponent.h"
#include "ai/flocks/FlowFieldMovementComponent.h"
#include "ai/flocks/SwarmComponent.h"
#include "ai/steering/SteeringComponent.h"
#include "physics/PhysicsWorld.h"
#include "physics/grid/MapDataComponent.h"
#include "physics/grid/SquareGrid.h"
#include "support/AllocationCount.h"

#include "foundation/Finite.h"
#include "foundation/Random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace
{

constexpr float NO_NUMBER = std::numeric_limits<float>::quiet_NaN();

/// A flock at the map's middle, boids, and a player far away.
struct FlockWorld : PhysicsWorld
{
    FlockWorld()
    {
        const Handle<Entity> entity = level.entity("flock", map);
        level.transform(entity);
        flock = level.component<FlockingComponent>(entity, "flocking").lookup().ptr;
        flock->setNeighborhoodSize(5.f);
        flock->setCohesionWeight(0.5f);
        flock->setTargetRadius(2.f);
    }
    void addPlayer(Vec4 place)
    {
        player = level.entity("Player", map);
        level.transform(player, place);
    }
    SteeringComponent &boid(Vec4 place)
    {
        const TestBox made = box(BoundingVolume::BV_SPHERE, place);
        SteeringComponent &steering = *level.component<SteeringComponent>(made.entity, "steering").lookup();
        steering.setMaxAccel(10.f);
        steering.setMaxSpeed(3.f);
        steering.setMaxPrediction(1.f);
        steering.setTimeToTarget(0.5f);
        flock->addBoid(made.entity);
        bodies.push_back(made);
        return steering;
    }
    FlockingComponent *flock;
    Handle<Entity> player;
    std::vector<TestBox> bodies;
};

/// A map with its grids, of which some cells cannot be walked on.
struct FlowWorld : PhysicsWorld
{
    FlowWorld()
    {
        level.component<MapDataComponent>(map, "mapData").lookup()->onLoadComplete();
        ways = gridOf(".MapData_mainPathGrid");
        flows = gridOf(".MapData_flowGrid");
    }
    SquareGrid *gridOf(const char *name)
    {
        const auto entity = handle_cast<Entity>(map.lookup()->getChild(SCS(name))).lookup();
        return handle_cast<SquareGrid>(entity->getComponent(SCS("grid"))).lookup().ptr;
    }
    template <class T>
    T &component(const TestBox &box, const char *key)
    {
        T &made = *level.component<T>(box.entity, key).lookup();
        made.onLoadComplete();
        return made;
    }
    SquareGrid *ways;
    SquareGrid *flows;
};

/// A swarm around an anchor that can be carried.
struct SwarmWorld : PhysicsWorld
{
    explicit SwarmWorld(int count)
    {
        seedEngineRand(3);
        anchor = level.entity("lamp", map);
        anchorPlace = level.transform(anchor, Vec4(0, 1.5f, 0, 1)).lookup().ptr;
        entity = level.entity("moths", map);
        level.transform(entity);
        swarm = level.component<SwarmComponent>(entity, "flocking").lookup().ptr;
        swarm->setAnchor(anchor);
        swarm->setReach(1.5f);
        for (int i = 0; i < count; ++i)
        {
            members.push_back(level.entity("moth", entity));
            level.transform(members.back());
            swarm->addMember(members.back());
        }
    }
    Vec4 placeOf(std::size_t i)
    {
        return handle_cast<TransformComponent>(members[i].lookup()->getComponent(SCS("transform")))
            .lookup()
            ->getPosition();
    }
    Handle<Entity> anchor, entity;
    TransformComponent *anchorPlace;
    SwarmComponent *swarm;
    std::vector<Handle<Entity>> members;
};

} // namespace

TEST(Flocking, ABoidSeesWhoIsNearAndBeforeItAndNeverItself)
{
    FlockWorld world;
    for (const Vec4 &place : {Vec4(0, 0, 0, 1), Vec4(0, 0, 3, 1), Vec4(0, 0, 6, 1), Vec4(0, 0, -3, 1),
                              Vec4(2, 0, 2.4f, 1), Vec4(2, 0, 1.6f, 1)})
        world.boid(place);
    world.bodies[1].body->setVelocity(Vec4(1, 0, 0, 0));
    world.bodies[4].body->setVelocity(Vec4(0, 0, 1, 0));
    world.flock->prepNeighborhood(world.bodies[0].entity);
    EXPECT_EQ(world.flock->getNeighborhood(),
              (FlockingComponent::BoidContainer{world.bodies[1].entity, world.bodies[4].entity}));
    EXPECT_EQ(world.flock->getNeighborhoodCenter(), Vec4(1, 0, 2.7f, 1));
    EXPECT_EQ(world.flock->getNeighborhoodAvgVel(), Vec4(0.5f, 0, 0.5f, 0));
    world.flock->prepNeighborhood(world.bodies[2].entity);
    EXPECT_EQ(world.flock->getNeighborhoodCenter(), Vec4());
    EXPECT_EQ(world.flock->getNeighborhoodAvgVel(), Vec4());
}

TEST(Flocking, LeadsItsBoidsOnlyFarFromThePlayer)
{
    FlockWorld world;
    world.addPlayer(Vec4(0, 0, -54, 1));
    SteeringComponent &one = world.boid(Vec4(0, 0, 0, 1));
    SteeringComponent &expected = world.boid(Vec4(0, 0, 0, 1)); // stands in the same place; asked by hand below
    world.boid(Vec4(0, 0, 3, 1));
    const Vec4 target(4, 0, 4, 1), velocity(1, 0, 0, 0);
    world.flock->setFlockTarget(target, velocity);
    world.flock->doFrame();
    EXPECT_EQ(one.getFinalOutput().accel, Vec4());

    handle_cast<TransformComponent>(world.player.lookup()->getComponent(SCS("transform")))
        .lookup()
        ->setPosition(Vec4(0, 0, -56, 1));
    SteeringComponent &close = world.boid(Vec4(0, 0, -53, 1)); // 3 m from the player
    world.flock->doFrame();
    const SteeringOutput led = one.getFinalOutput();
    EXPECT_EQ(close.getFinalOutput().accel, Vec4());
    EXPECT_EQ(world.flock->getLastNeighborhood().size(), 0u); // of the boid in the player's view, the last one
    expected.setFinalOutput(SteeringOutput());
    expected.updatePursue(target, velocity);
    expected.updateSeek(Vec4(0, 0, 3, 1), 0.5f);
    expected.updateVelocityMatch(Vec4(), 0.5f);
    EXPECT_EQ(led.accel, expected.getFinalOutput().accel);
    EXPECT_EQ(led.orientation, expected.getFinalOutput().orientation);
    EXPECT_FALSE(world.flock->atFlockTarget());

    world.flock->handleFlockMessage(ReflectorPtr(), true); // home
    one.setFinalOutput(SteeringOutput());
    world.bodies[0].transform->setPosition(Vec4(0, 0, 9, 1));
    world.flock->cohesion(world.bodies[0].entity);
    EXPECT_EQ(one.getFinalOutput().accel, Vec4(0, 0, -10, 0));
}

TEST(Flocking, SurvivesWithoutBoidsPlayerOrSense)
{
    FlockWorld world;
    const std::size_t missed = countLogLines("Player not found!"), refused = countLogLines("more than a flock bears");
    world.flock->doFrame(); // empty: it does not even look for the player
    EXPECT_EQ(countLogLines("Player not found!"), missed);
    world.flock->setPopulation(4000000000u);
    world.flock->onLoadComplete();
    EXPECT_EQ(countLogLines("more than a flock bears"), refused + 1);
    world.boid(Vec4(0, 0, 0, 1));
    world.boid(Vec4(1, 0, 0, 1));
    const Handle<Entity> plain = world.level.entity("plain", world.map);
    world.flock->addBoid(plain);
    world.flock->doFrame();
    world.flock->doFrame();
    EXPECT_EQ(countLogLines("Player not found!"), missed + 1);
    world.addPlayer(Vec4(0, 0, 90, 1));
    world.flock->setFlockTarget(Vec4(NO_NUMBER, 0, 0, 1), Vec4());
    world.flock->doFrame();
    EXPECT_EQ(world.flock->getTarget().pos, Vec4());
    world.flock->prepNeighborhood(plain);
    world.flock->cohesion(Handle<Entity>());
    for (const TestBox &boid : world.bodies)
        boid.entity.lookup()->murder();
    world.flock->doFrame();
    EXPECT_EQ(world.flock->getBoids().size(), 1u);
    plain.lookup()->murder();
    cremateDeadObjects();
    world.flock->doFrame();
    EXPECT_TRUE(world.flock->getBoids().empty());
}

TEST(FlowField, CarriesABodyTheWayOfTheFlowsAroundItAtItsOwnSpeed)
{
    FlowWorld world;
    const TestBox leaf = world.box(BoundingVolume::BV_NONE, Vec4(0.1f, 1, 0, 1));
    auto &movement = world.component<FlowFieldMovementComponent>(leaf, "flowMovement");
    movement.setFlowSpeed(2.f);
    movement.setSampleRadius(1.6f);
    leaf.body->setVelocity(Vec4(0, 0, 7, 0));
    movement.doFrame();
    EXPECT_EQ(leaf.body->getVelocity(), Vec4(0, 0, 7, 0)); // nothing flows
    const GridCell cell = world.flows->getCellFromPoint(Vec4(0, 0, 0, 1));
    world.flows->setCellValue(cell.getX(), cell.getZ(), Vec4(0.5f, 0, 0, 0));
    world.flows->setCellValue(cell.getX(), cell.getZ() + 1, Vec4(0, 0, 0.5f, 0));
    world.flows->setCellValue(cell.getX() + 2, cell.getZ(), Vec4(0, 0, -9, 0)); // beyond the radius
    movement.doFrame();
    const float root = std::sqrt(2.f);
    EXPECT_LT((leaf.body->getVelocity() - Vec4(root, 0, root, 0)).magnitude(), 1e-5f);
    world.flows->setCellValue(cell.getX(), cell.getZ(), Vec4(NO_NUMBER, 0, 0, 0));
    world.flows->setCellValue(cell.getX() + 1, cell.getZ(), Vec4(INFINITY, 0, 0, 0));
    leaf.transform->setPosition(Vec4(0.1f, 1, NO_NUMBER, 1));
    movement.doFrame();
    leaf.transform->setPosition(Vec4(900, 1, 0, 1));
    movement.doFrame();
    EXPECT_TRUE(isFinite(leaf.body->getVelocity()));
    world.map.lookup()->getChild(SCS(".MapData_flowGrid")).lookup()->murder();
    cremateDeadObjects();
    movement.doFrame();
}

TEST(FlowField, WhatMovesLeavesAWakeThatSpreads)
{
    FlowWorld world;
    const TestBox boat = world.box(BoundingVolume::BV_NONE, Vec4(0, 1, 0, 1));
    auto &influencer = world.component<FlowFieldInfluencerComponent>(boat, "flowInfluence");
    influencer.setInfluenceRadius(1.f);
    influencer.setAverageRadius(3.f);
    influencer.doFrame();
    const GridCell cell = world.flows->getCellFromPoint(Vec4(0, 0, 0, 1));
    const auto flowAt = [&](int dx, int dz) { return world.flows->getCellValue(cell.getX() + dx, cell.getZ() + dz); };
    EXPECT_EQ(flowAt(0, 0), Vec4()); // at rest
    boat.body->setVelocity(Vec4(0, 0, 2, 0));
    influencer.doFrame();
    for (const auto &[dx, dz] : {std::pair(0, 0), std::pair(1, 0), std::pair(0, -1)})
        EXPECT_EQ(flowAt(dx, dz), Vec4(0, 0, 2, 0));
    EXPECT_EQ(flowAt(1, 1), Vec4());
    influencer.averageCellVector(world.flows->getCell(cell.getX() + 1, cell.getZ()), cell);
    EXPECT_LT((flowAt(1, 0) - Vec4(0, 0, 4 * 2.f / 9, 0)).magnitude(), 1e-5f);
    influencer.averageCellVector(world.flows->getCell(cell.getX() + 1, cell.getZ() + 1), cell);
    EXPECT_EQ(flowAt(1, 1), Vec4()); // where nothing flows nothing is evened out
    influencer.setAverageRadius(0.5f);
    influencer.averageCellVector(world.flows->getCell(cell.getX(), cell.getZ() + 1), cell);
    EXPECT_EQ(flowAt(0, 1), Vec4(0, 0, 2, 0));

    // Bad numbers and edges harm nobody.
    influencer.setInfluenceRadius(1e30f);
    boat.body->setVelocity(Vec4(0, 0, NO_NUMBER, 0));
    influencer.doFrame();
    boat.body->setVelocity(Vec4(1, 0, 0, 0));
    influencer.doFrame();
    EXPECT_EQ(world.flows->getCellValue(0, 0), Vec4(1, 0, 0, 0));
    boat.transform->setPosition(Vec4(900, 0, 0, 1));
    influencer.doFrame();
}

TEST(FlowField, AGuideLeadsFromEverywhereToItsTargetAndAroundWhatStandsInTheWay)
{
    FlowWorld world;
    const TestBox lantern = world.box(BoundingVolume::BV_NONE, Vec4(0, 0, 0, 1));
    auto &guide = world.component<FlowFieldGuideComponent>(lantern, "flowInfluence");
    const int cols = world.ways->getGridCols(), rows = world.ways->getGridRows();
    for (int z = 0; z < rows; ++z)
        if (z != 3) // a wall with one doorway
            world.ways->setCellFloatValue(20, z, 1.f);
    for (int x = 5; x < 15; ++x)
        world.ways->setCellFloatValue(x, 10, 1.f);
    const Vec4 target = world.ways->getCellWorldCoords(33, 22);
    guide.setTarget(target);
    guide.setTargetRadius(1.f);
    EXPECT_EQ(guide.lay(), cols * rows - (rows - 1) - 10);
    for (int z = 0; z < rows; ++z)
        for (int x = 0; x < cols; ++x)
        {
            if (world.ways->getCellFloatValue(x, z) != 0.f)
            {
                EXPECT_EQ(world.flows->getCellValue(x, z), Vec4());
                continue;
            }
            Vec4 place = world.ways->getCellWorldCoords(x, z);
            int steps = 0;
            for (; steps < 400 && std::hypot(place.x - target.x, place.z - target.z) > 2.f; ++steps)
            {
                const GridCell cell = world.flows->getCellFromPoint(place);
                ASSERT_EQ(world.ways->getCellFloatValue(cell.getX(), cell.getZ()), 0.f) << x << ", " << z;
                ASSERT_NEAR(cell.getGrid().lookup()->getCellValue(cell.getX(), cell.getZ()).magnitude(), 1.f, 1e-4f);
                place += world.flows->getCellValue(cell.getX(), cell.getZ()) * 0.25f;
            }
            ASSERT_LT(steps, 400) << x << ", " << z;
        }

    // A door is shut: behind it nothing flows any more, as soon as the guide looks.
    world.ways->setCellFloatValue(20, 3, 1.f);
    guide.setInterval(0.f);
    guide.doFrame();
    EXPECT_EQ(world.flows->getCellValue(2, 2), Vec4());
    EXPECT_TRUE(std::isinf(guide.getWayFrom(world.ways->getCellWorldCoords(2, 2))));
    EXPECT_LT(guide.getWayFrom(world.ways->getCellWorldCoords(30, 20)), 10.f);
    guide.setTarget(Vec4(900, 0, 0, 1));
    EXPECT_EQ(guide.lay(), 0);
    guide.setTarget(target);
    guide.lay();
    lantern.entity.lookup()->murder();
    cremateDeadObjects();
    EXPECT_EQ(world.flows->getCellValue(30, 20), Vec4());
}

TEST(Swarm, CirclesACarriedLampWithoutOneTouchingAnotherOrLeavingTheLight)
{
    SwarmWorld world(30);
    SwarmComponent &swarm = *world.swarm;
    std::vector<Vec4> before(30), velocity(30);
    Vec4 lamp(0, 1.5f, 0, 1);
    float travelled = 0;
    for (int frame = 0; frame < 1200; ++frame)
    {
        // At rest for five seconds; then off within half a second, at 3 m/s and more, through curves.
        const float time = std::max(static_cast<float>(frame) / 64 - 5, 0.f), pace = std::min(time * 2, 1.f);
        lamp += Vec4(3 * std::sin(time * 0.9f + 1), std::cos(time * 8), 3 * std::cos(time * 0.7f), 0) * (pace / 64);
        world.anchorPlace->setPosition(lamp);
        world.level.frame();
        EXPECT_LE(swarm.getGreatestDistance(), 1.5f + 0.02f) << frame;
        EXPECT_GE(swarm.getLeastDistance(), 0.03f) << frame;
        for (std::size_t i = 0; i < 30; ++i)
        {
            const Vec4 now = (world.placeOf(i) - before[i]) * 64.f;
            if (frame > 1)
            {
                EXPECT_LT((now - velocity[i]).magnitude(), 1.2f) << "a jolt of " << i << " in frame " << frame;
                travelled += now.magnitude() / 64;
            }
            velocity[i] = now;
            before[i] = world.placeOf(i);
        }
    }
    EXPECT_GT(travelled / 30, 5.f); // each of them, in 19 s
}

TEST(Swarm, RatsKeepToTheFloorWithinTheWallsAndFlee)
{
    SwarmWorld world(12);
    SwarmComponent &swarm = *world.swarm;
    swarm.setLowest(0.f);
    swarm.setHighest(0.f);
    swarm.setReach(4.f);
    swarm.setSwirl(0.f);
    swarm.setBodySize(0.2f);
    const TestBox wall = world.inGrid(world.box(BoundingVolume::BV_WALL, Vec4(6, 0.5f, 0, 1), Vec4(0.4f, 1, 20, 0)));
    wall.volume->setInteract(true);
    wall.body->setInverseMass(0.f);
    world.anchorPlace->setPosition(Vec4(4, 0, 0, 1)); // half of its reach lies behind the wall
    for (int frame = 0; frame < 200; ++frame)
        world.level.frame();
    const Handle<Entity> cat = world.level.entity("cat", world.map);
    world.level.transform(cat, Vec4(2, 0, 0, 1));
    swarm.setFeared(cat);
    swarm.setFearRadius(2.f);
    for (int frame = 0; frame < 300; ++frame)
    {
        world.level.frame();
        for (std::size_t i = 0; i < world.members.size(); ++i)
        {
            EXPECT_EQ(world.placeOf(i).y, 0.f);
            EXPECT_LT(world.placeOf(i).x, 5.8f) << frame;
            EXPECT_TRUE(frame <= 100 || (world.placeOf(i) - Vec4(2, 0, 0, 1)).magnitude() > 0.8f) << frame;
        }
    }
}

TEST(Swarm, SurvivesTheLossOfMembersAnchorAndNumbers)
{
    SwarmWorld world(6);
    SwarmComponent &swarm = *world.swarm;
    world.level.frame();
    world.anchorPlace->setPosition(Vec4(10, 1.5f, 4, 1)); // elsewhere at once: they come along
    world.level.frame();
    EXPECT_LT(swarm.getGreatestDistance(), 1.6f);
    world.anchorPlace->setPosition(Vec4(NO_NUMBER, 1.5f, 4, 1));
    world.level.frame();
    swarm.scatter(Vec4(NO_NUMBER, 0, 0, 1));
    swarm.scatter(Vec4(10, 1, 4, 1));
    swarm.setReach(NO_NUMBER);
    swarm.setSpacing(1e30f);
    swarm.setAgility(1e30f);
    world.level.frame();
    for (std::size_t i = 0; i < world.members.size(); ++i)
        EXPECT_TRUE(isFinite(world.placeOf(i)));
    world.anchor.lookup()->murder();
    for (std::size_t i = 0; i < world.members.size(); ++i)
    {
        world.level.frame();
        EXPECT_EQ(swarm.getMemberCount(), static_cast<int>(world.members.size() - i));
        world.members[i].lookup()->murder();
    }
    world.level.frame();
    EXPECT_EQ(swarm.getMemberCount(), 0);
    EXPECT_EQ(swarm.tell(), String());
    const std::size_t told = countLogLines("more than a swarm bears");
    swarm.setPopulation(4000000000u);
    swarm.populate();
    EXPECT_EQ(countLogLines("more than a swarm bears"), told + 1);
}

TEST(Swarm, ItsFramesAndThoseOfFlowsFlocksAndSteeringAllocateNothing)
{
    SwarmWorld swarm(20);
    const TestBox body = swarm.inGrid(swarm.box(BoundingVolume::BV_SPHERE, Vec4(3, 1, 0, 1)));
    const TestBox other = swarm.inGrid(swarm.box(BoundingVolume::BV_SPHERE, Vec4(3.5f, 1, 0, 1)));
    swarm.level.component<MapDataComponent>(swarm.map, "mapData").lookup()->onLoadComplete();
    auto &flock =
        *swarm.level.component<FlockingComponent>(swarm.level.entity("flock", swarm.map), "flocking").lookup();
    swarm.level.transform(handle_cast<Entity>(flock.getParent()));
    swarm.level.transform(swarm.level.entity("Player", swarm.map), Vec4(0, 0, 90, 1));
    for (const TestBox &each : {body, other})
    {
        SteeringComponent &steering = *swarm.level.component<SteeringComponent>(each.entity, "steering").lookup();
        steering.setSepThreshold(1.f);
        steering.setTimeToTarget(1.f);
        flock.addBoid(each.entity);
        auto &flow = *swarm.level.component<FlowFieldMovementComponent>(each.entity, "flowMovement").lookup();
        flow.setSampleRadius(1.f);
    }
    auto &guide = *swarm.level.component<FlowFieldGuideComponent>(body.entity, "flowInfluence").lookup();
    guide.setInterval(0.f);
    auto &wake = *swarm.level.component<FlowFieldInfluencerComponent>(other.entity, "flowInfluence").lookup();
    wake.setInfluenceRadius(2.f);
    wake.setAverageRadius(2.f);
    const auto frame = [&]
    {
        for (const TestBox &each : {body, other})
        {
            auto &steering =
                *handle_cast<SteeringComponent>(each.entity.lookup()->getComponent(SCS("steering"))).lookup();
            steering.updateWander(0.1);
            steering.updateSeparation();
            steering.updateAlignWithVector(Vec4(1, 0, 0, 0), 0.1);
        }
        guide.setTargetRadius(1.f - guide.getTargetRadius()); // has it laid anew
        swarm.level.frame();
    };
    for (int i = 0; i < 40; ++i)
        frame();
    EXPECT_EQ(allocationsOf(frame, 40), 0u);
}
