#include "PhysicsWorld.h"
#include "TouchNote.h"

#include "physics/bodies/CollisionResolver.h"
#include "physics/bodies/PhysicsManager.h"
#include "physics/volumes/Collision.h"
#include "physics/volumes/PairTests.h"
#include "physics/volumes/Plane.h"
#include "physics/bodies/RigidCollision.h"
#include "support/AllocationCount.h"
#include "support/Probe.h"

#include <gmock/gmock.h>

#include <cmath>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{

/// The contacts of one test, freed with it.
struct Contacts
{
    ~Contacts() { clear(); }
    void clear()
    {
        for (Collision *collision : list)
            Collision::release(collision);
        list.clear();
    }
    const RigidCollision &front() const { return *static_cast<RigidCollision *>(list.front()); }

    std::vector<Collision *> list;
};

/// The point of a box or ball that is nearest to another point.
Vec4 nearestIn(const TestBox &box, const Vec4 &point)
{
    const Matrix4 rotation = box.transform->getOrientation().generateRotation();
    Vec4 local = (point - box.transform->getPosition()) * rotation;
    const Vec4 hit = box.volume->getHitBox();
    if (box.volume->getVolumeType() == BoundingVolume::BV_SPHERE)
    {
        const float distance = local.magnitude();
        return distance <= hit.x / 2 ? point
                                     : box.transform->getPosition() + rotation * (local * (hit.x / 2 / distance));
    }
    for (int axis = 0; axis < 3; ++axis)
        local[axis] = std::min(std::max(local[axis], -hit[axis] / 2), hit[axis] / 2);
    return box.transform->getPosition() + rotation * local;
}

/// Distance between two convex shapes by going to and fro between their nearest points; 0 where they overlap.
float distanceBetween(const TestBox &one, const TestBox &two)
{
    Vec4 inOne = one.transform->getPosition(), inTwo;
    for (int i = 0; i < 600; ++i)
    {
        inTwo = nearestIn(two, inOne);
        inOne = nearestIn(one, inTwo);
    }
    return (inOne - inTwo).magnitude();
}

/// Runs the partitioning step alone: the bodies stand where the test put them.
void resolveContacts(PhysicsWorld &world)
{
    world.grid->checkCollisions();
    world.grid->resolveCollisions(0);
}

} // namespace

TEST(Contacts, EachPairOfTypesIsTestedAsTheTableSays)
{
    // Rows: who tests. '1' a contact, 'o' an overlap without contact, '.' nothing. Particles keep the row before.
    const char *const table[] = {"11.111.1...", "11.111.1.o.", "...........", "11...111...",
                                 "11...1.1...", "11.111.....", "...1...1...", "...........",
                                 "...........", "...........", "..........."};
    PhysicsWorld world;
    for (int row = 0; row < BoundingVolume::NUM_VOLUMES; ++row)
    {
        for (int column = 0; column < BoundingVolume::NUM_VOLUMES; ++column)
        {
            const TestBox one = world.box(static_cast<BoundingVolume::VolumeType>(row), Vec4(0, 5, 0, 1));
            const TestBox two = world.box(static_cast<BoundingVolume::VolumeType>(column), Vec4(0.2f, 5, 0.1f, 1));
            Contacts contacts;
            const bool touching = one.volume->colliding(two.handle(), contacts.list);
            const char expected = table[row][column];
            EXPECT_EQ(contacts.list.size(), expected == '1' ? 1u : 0u) << row << " with " << column;
            EXPECT_EQ(touching, expected != '.') << row << " with " << column;
        }
    }
    const TestBox particle = world.box(BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1));
    particle.volume->setVolumeType(BoundingVolume::BV_PARTICLE);
    const TestBox box = world.box(BoundingVolume::BV_BOX, Vec4(0.2f, 5, 0, 1));
    Contacts contacts;
    EXPECT_TRUE(particle.volume->colliding(box.handle(), contacts.list)) << "tests like the box it was";
}

TEST(Contacts, AnyTwoShapesTouchWhenTheyOverlapAndPartAlongTheNormal)
{
    PhysicsWorld world;
    Chance chance(8);
    int touching = 0, apart = 0;
    for (int i = 0; i < 700; ++i)
    {
        const auto shape = [&](bool ball)
        {
            const TestBox made = world.box(ball ? BoundingVolume::BV_SPHERE : BoundingVolume::BV_BOX,
                                           Vec4(chance(-1, 1), chance(4, 6), chance(-1, 1), 1),
                                           Vec4(chance(0.3f, 2), chance(0.3f, 2), chance(0.3f, 2), 0));
            // A third turned about the vertical alone, whose edges are parallel.
            made.transform->setOrientation(i % 3 ? chance.turn()
                                                 : Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), chance(0, 6)));
            return made;
        };
        const TestBox one = shape(i % 7 == 0), two = shape(i % 5 == 0);
        Contacts contacts;
        const bool found = one.volume->colliding(two.handle(), contacts.list);
        const float distance = distanceBetween(one, two);
        if (!found)
        {
            EXPECT_GT(distance, 1e-4f) << "pair " << i;
            ++apart;
            continue;
        }
        ++touching;
        const RigidCollision &contact = contacts.front();
        // Going to and fro ends slowly where shapes hardly overlap.
        EXPECT_TRUE(distance < 5e-3f || contact.penetration < 0.05f) << "pair " << i;
        ASSERT_NEAR(contact.contactNormal.magnitude(), 1.f, 1e-4f) << "pair " << i;
        const TestBox &first = contact.volumes[0] == one.handle() ? one : two;
        const TestBox &second = contact.volumes[0] == one.handle() ? two : one;
        const Vec4 before = first.transform->getPosition();
        first.transform->setPosition(before + contact.contactNormal * (contact.penetration + 2e-3f));
        EXPECT_GT(distanceBetween(first, second), 1e-3f) << "pair " << i << ": the depth parts them";
        if (contact.penetration > 0.1f)
        {
            first.transform->setPosition(before + contact.contactNormal * (contact.penetration - 0.05f));
            EXPECT_LT(distanceBetween(first, second), 5e-3f) << "pair " << i << ": no less does";
        }
    }
    EXPECT_GT(touching, 100);
    EXPECT_GT(apart, 100);
}

TEST(Contacts, PairInManyCellsIsFoundOnceAFrame)
{
    PhysicsWorld world;
    const TestBox one = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1), Vec4(8, 1, 8, 0)));
    const TestBox two = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(1, 5, 0, 1), Vec4(8, 1, 8, 0)));
    one.body->setVelocity(1, 0, 0);
    two.body->setVelocity(-1, 0, 0);
    one.body->setRestitution(1);
    two.body->setRestitution(1);
    resolveContacts(world);
    EXPECT_THAT(one.volume->getColliders(), ElementsAre(two.handle()));
    EXPECT_THAT(two.volume->getColliders(), ElementsAre(one.handle()));
    const Vec4 thrownBack = one.body->getVelocity();
    resolveContacts(world);
    EXPECT_EQ(one.body->getVelocity(), thrownBack) << "not again in this frame";
    one.volume->doFrame();
    EXPECT_THAT(one.volume->getColliders(), IsEmpty());
}

TEST(Contacts, BodiesPartByTheirMassesAndBounceByTheirRestitution)
{
    PhysicsWorld world;
    const TestBox light = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1)));
    const TestBox heavy = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0.9f, 5, 0, 1)));
    heavy.body->setMass(3);
    for (const TestBox *box : {&light, &heavy})
        box->body->setRestitution(1);
    light.body->setVelocity(2, 0, 0.5f);
    resolveContacts(world);
    EXPECT_LT((light.transform->getPosition() - Vec4(-0.075f, 5, 0, 1)).magnitude(), 1e-5f);
    EXPECT_LT((heavy.transform->getPosition() - Vec4(0.925f, 5, 0, 1)).magnitude(), 1e-5f);
    EXPECT_LT((light.body->getVelocity() - Vec4(-1, 0, 0.5f, 0)).magnitude(), 1e-5f);
    EXPECT_LT((heavy.body->getVelocity() - Vec4(1, 0, 0, 0)).magnitude(), 1e-5f);
}

TEST(Contacts, WhatNothingMovesStaysAndWhatRestsDoesNotBounce)
{
    PhysicsWorld world;
    const TestBox floor = world.inGrid(world.box(BoundingVolume::BV_WALL, Vec4(0, 1, 0, 1), Vec4(4, 1, 4, 0)));
    const TestBox sitting = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 1.99f, 0, 1)));
    const TestBox stuck = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(1.6f, 1.9f, 0, 1)));
    floor.body->setInverseMass(0);
    stuck.body->setInverseMass(0);
    floor.body->setRestitution(1);
    sitting.body->setRestitution(1);
    sitting.body->setVelocity(0, -0.09f, 0);
    resolveContacts(world);
    EXPECT_EQ(sitting.body->getVelocity(), Vec4()) << "slower than a tenth of a metre a second";
    EXPECT_EQ(sitting.transform->getPosition(), Vec4(0, 2, 0, 1));
    EXPECT_EQ(stuck.transform->getPosition(), Vec4(1.6f, 1.9f, 0, 1));
    EXPECT_EQ(stuck.body->getVelocity(), Vec4());
    EXPECT_EQ(floor.transform->getPosition(), Vec4(0, 1, 0, 1));
}

TEST(Contacts, PlayerSlidesAlongAWall)
{
    PhysicsWorld world;
    const TestBox wall = world.inGrid(world.box(BoundingVolume::BV_WALL, Vec4(2, 1, 0, 1), Vec4(1, 2, 9, 0)));
    const TestBox player = world.inGrid(world.box(BoundingVolume::BV_PLAYER, Vec4(1.1f, 1, 0, 1)));
    wall.body->setInverseMass(0);
    player.body->setRestitution(1);
    player.body->setVelocity(3, 0, -2.25f);
    resolveContacts(world);
    EXPECT_EQ(player.body->getVelocity().z, -2.25f) << "exactly as fast along the wall";
    EXPECT_EQ(player.body->getVelocity().x, 0.f);
    EXPECT_NEAR(player.transform->getPosition().x, 1.f, 1e-5f);
}

TEST(Contacts, TriggerCallsItsFunctionAndLetsThePlayerThrough)
{
    PhysicsWorld world;
    const TestBox other = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0.5f, 1, 0, 1)));
    const TestBox trap = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 1, 0, 1)));
    const TestBox player = world.inGrid(world.box(BoundingVolume::BV_PLAYER, Vec4(-0.8f, 1, 0, 1)));
    const Handle<TouchNote> note = construct<TouchNote>(defaultAllocationCategory);
    note.lookup()->setParent(world.level.level);
    int calls = 0;
    note.lookup()->whenTouched = [&](Handle<Entity> touched, Handle<PhysicsComponent> toucher)
    {
        ++calls;
        EXPECT_EQ(touched, trap.entity);
        EXPECT_EQ(toucher, getHandle(player.body));
        trap.entity.lookup()->murder(); // in its own function
    };
    trap.volume->setTriggerFunc(note.lookup()->bind(SCS("noteTouch")));
    EXPECT_TRUE(trap.volume->getTrigger());
    player.body->setVelocity(1, 0, 0);
    resolveContacts(world);
    EXPECT_EQ(calls, 1) << "for the player, not for the box";
    EXPECT_EQ(player.body->getVelocity(), Vec4(1, 0, 0, 0));
    EXPECT_NE(other.transform->getPosition(), Vec4(0.5f, 1, 0, 1)) << "a trigger pushes what is no player";
    cremateDeadObjects();
    player.volume->doFrame();
    resolveContacts(world);
    EXPECT_EQ(calls, 1);
}

TEST(Contacts, FunctionThatFailsIsNamedAndDropped)
{
    PhysicsWorld world;
    const TestBox trap = world.inGrid(world.box(BoundingVolume::BV_BOX, Vec4(0, 1, 0, 1)));
    const Handle<Probe> thing = spawn("thing", world.level.level);
    trap.volume->setInteractFunc(thing.lookup()->bind(SCS("addFour")));
    EXPECT_TRUE(trap.volume->getInteract());
    trap.volume->interactWithPlayer(thing);
    EXPECT_EQ(countLogLines("the trigger function <Partial application of Probe::addFour> failed: CALL_FAILURE"), 1u);
    EXPECT_FALSE(trap.volume->getTriggerFunc());
}

TEST(Bodies, FallByAForceAndStopAtHeightZero)
{
    PhysicsWorld world;
    const TestBox heavy = world.box(BoundingVolume::BV_BOX, Vec4(-3, 5, 0, 1));
    const TestBox wall = world.box(BoundingVolume::BV_WALL, Vec4(3, 5, 0, 1));
    const TestBox sunk = world.box(BoundingVolume::BV_BOX, Vec4(0, 0.1f, 3, 1));
    heavy.body->setMass(4);
    heavy.body->setDamping(0.25f);
    sunk.body->setVelocity(0, -60, 0);
    world.level.frame();
    const double seconds = TestLevel::FRAME_TICKS / 4096.0;
    const float kept = static_cast<float>(std::pow(0.25, seconds));
    const float speed = static_cast<float>(-5 * seconds) * kept;
    EXPECT_FLOAT_EQ(heavy.body->getVelocity().y, speed) << "20 N on 4 kg";
    EXPECT_FLOAT_EQ(heavy.transform->getPosition().y, 5 + speed * static_cast<float>(seconds));
    EXPECT_EQ(heavy.body->getNetForce(), Vec4());
    EXPECT_EQ(wall.transform->getPosition(), Vec4(3, 5, 0, 1));
    EXPECT_EQ(wall.body->getVelocity(), Vec4());
    EXPECT_EQ(sunk.transform->getPosition().y, 0.f);
    EXPECT_LT(sunk.body->getVelocity().y, -60.f) << "the speed is kept";
}

TEST(Bodies, ForceBesideTheMiddleTurnsThem)
{
    PhysicsWorld world;
    const TestBox box = world.box(BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1));
    box.body->setInertiaTensor(Vec4(2, 4, 8, 0));
    box.body->calculateMatrices();
    box.body->setAcceleration(0, 20, 0); // holds it up
    box.body->addForce(Vec4(0, 0, 6, 0), Vec4(1, 5, 0, 1));
    world.level.frame();
    const float seconds = TestLevel::FRAME_TICKS / 4096.f;
    EXPECT_LT((box.body->getAngularVelocity() - Vec4(0, -6.f / 4 * seconds, 0, 0)).magnitude(), 1e-6f);
    EXPECT_LT((box.body->getVelocity() - Vec4(0, 0, 6 * seconds, 0)).magnitude(), 1e-5f);
    EXPECT_NE(box.transform->getOrientation(), Quaternion());
}

TEST(Bodies, CrowdInContactAllocatesNothing)
{
    PhysicsWorld world;
    for (int i = 0; i < 100; ++i)
        world.box(i % 2 ? BoundingVolume::BV_BOX : BoundingVolume::BV_SPHERE,
                  Vec4(static_cast<float>(i % 10) * 0.8f, 0.5f, static_cast<float>(i / 10) * 0.8f, 1));
    for (int i = 0; i < 40; ++i)
        world.level.frame();
    EXPECT_EQ(heapAllocationsOf([&] { world.level.frame(); }, 20), 0u) << "contacts come from a pool";
}

TEST(Shapes, ABulletsLineMeetsBallsAndBoxesOnItsWay)
{
    PhysicsWorld world;
    const auto at = [&](BoundingVolume::VolumeType type, float x, float z, Vec4 size)
    { return world.box(type, Vec4(x, 1, z, 1), size).volume; };
    BoundingVolume &line = *at(BoundingVolume::BV_BULLET, 0, 0, Vec4(0, 0, 4, 0)); // from z -2 to 2
    std::vector<Collision *> found;
    EXPECT_TRUE(lineSegmentToSphere(line, *at(BoundingVolume::BV_SPHERE, 0.9f, 1, Vec4(2, 2, 2, 0)), found));
    EXPECT_FALSE(lineSegmentToSphere(line, *at(BoundingVolume::BV_SPHERE, 1.1f, 1, Vec4(2, 2, 2, 0)), found));
    EXPECT_TRUE(lineSegmentToBox(line, *at(BoundingVolume::BV_BOX, 0, 2.9f, Vec4(2, 2, 2, 0)), found));
    EXPECT_FALSE(lineSegmentToBox(line, *at(BoundingVolume::BV_BOX, 0, 3.1f, Vec4(2, 2, 2, 0)), found));
    EXPECT_EQ(found.size(), 2u);
    while (!found.empty())
        Collision::dropLast(found);
}

TEST(Shapes, SegmentsPointsAndEdgesMeetWhereTheyShould)
{
    PhysicsWorld world;
    const TestBox ball = world.box(BoundingVolume::BV_SPHERE, Vec4(5, 0, 0, 1), Vec4(2, 1, 4, 0));
    const RayCollision outside = ball.volume->sphereToLineSegmentWithInfo(Vec4(0, 0, 0, 1), Vec4(10, 0, 0, 0));
    EXPECT_TRUE(outside.collided);
    EXPECT_FLOAT_EQ(outside.t, 0.4f);
    EXPECT_EQ(outside.normal, Vec4(-1, 0, 0, 0));
    EXPECT_FLOAT_EQ(ball.volume->sphereToLineSegmentWithInfo(Vec4(5, 0, 0, 1), Vec4(2, 0, 0, 0)).t, 0.5f)
        << "from inside";
    EXPECT_FALSE(ball.volume->sphereToLineSegmentWithInfo(Vec4(0, 0, 0, 1), Vec4(3.9f, 0, 0, 0)).collided);
    EXPECT_EQ(ball.volume->closestPointToLineSeg(Vec4(9, 0, 7, 1)), Vec4(5, 0, 2, 1));

    const TestBox box = world.box(BoundingVolume::BV_BOX, Vec4(0, 0, 0, 1), Vec4(2, 4, 6, 0));
    const RayCollision top = box.volume->boxToLineSegmentWithInfo(Vec4(0.5f, 4, 0, 1), Vec4(0, -8, 0, 0));
    EXPECT_TRUE(top.collided);
    EXPECT_FLOAT_EQ(top.t, 0.25f);
    EXPECT_EQ(top.point, Vec4(0.5f, 2, 0, 1));
    EXPECT_EQ(top.normal, Vec4(0, 1, 0, 0));
    EXPECT_FALSE(box.volume->boxToLineSegmentWithInfo(Vec4(1.1f, 4, 0, 1), Vec4(0, -8, 0, 0)).collided);
    EXPECT_TRUE(box.volume->boxToPoint(Vec4(0.9f, -1.9f, 2.9f, 1)));
    EXPECT_FALSE(box.volume->boxToPoint(Vec4(1.1f, 0, 0, 1)));
    Vec4 way;
    float depth = 0;
    EXPECT_TRUE(box.volume->boxToPointWithInfo(Vec4(0.75f, 0, 0, 1), way, depth));
    EXPECT_EQ(way, Vec4(1, 0, 0, 1));
    EXPECT_FLOAT_EQ(depth, 0.25f);

    EXPECT_EQ(box.volume->contactPoint(Vec4(0, 0, 0, 1), Vec4(1, 0, 0, 0), 2, Vec4(1, 1, 0, 1), Vec4(0, 0, 1, 0), 2),
              Vec4(1, 0.5f, 0, 1));
    EXPECT_EQ(box.volume->contactPoint(Vec4(0, 0, 0, 1), Vec4(1, 0, 0, 0), 0.5f, Vec4(1, 1, 0, 1), Vec4(0, 0, 1, 0), 2),
              Vec4(0, 0, 0, 1));
    const Plane floor(Vec4(0, 1, 0, 1), Vec4(0, 1, 1, 1), Vec4(1, 1, 0, 1));
    EXPECT_EQ(floor.normal, Vec4(0, 1, 0, 0));
    EXPECT_FLOAT_EQ(floor.planeToLineSegment(Vec4(3, 5, 3, 1), Vec4(0, -8, 0, 0)).t, 0.5f);
}

TEST(Shapes, ResolverTakesTheFastestClosingContactFirst)
{
    PhysicsWorld world;
    const TestBox slow = world.box(BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1));
    const TestBox middle = world.box(BoundingVolume::BV_BOX, Vec4(0.9f, 5, 0, 1));
    const TestBox fast = world.box(BoundingVolume::BV_BOX, Vec4(1.8f, 5, 0, 1));
    slow.body->setVelocity(1, 0, 0);
    fast.body->setVelocity(-5, 0, 0);
    Contacts contacts;
    ASSERT_TRUE(slow.volume->colliding(middle.handle(), contacts.list));
    ASSERT_TRUE(middle.volume->colliding(fast.handle(), contacts.list));
    CollisionResolver resolver;
    for (Collision *collision : contacts.list)
        resolver.AddCollision(static_cast<RigidCollision *>(collision));
    resolver.ResolveCollisions(0);
    EXPECT_FLOAT_EQ(fast.body->getVelocity().x, -2.5f);
    EXPECT_FLOAT_EQ(slow.body->getVelocity().x, -0.75f) << "met the middle one when it already moved";
}
