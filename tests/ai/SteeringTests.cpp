#include "ai/steering/SteeringComponent.h"

#include "ai/steering/HeadTurn.h"
#include "physics/PhysicsWorld.h"

#include "foundation/Finite.h"
#include "foundation/Random.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

namespace
{

constexpr float NO_NUMBER = std::numeric_limits<float>::quiet_NaN();

/// Somebody who steers, in a map with a grid.
struct Creature
{
    TestBox box;
    SteeringComponent *steering;

    void stepFor(Seconds seconds) const
    {
        steering->doFrame();
        box.body->doFrame(seconds);
        box.volume->doFrame();
    }
    Vec4 place() const { return box.transform->getPosition(); }
};

struct SteeringWorld : PhysicsWorld
{
    Creature creature(Vec4 place)
    {
        Creature made{box(BoundingVolume::BV_SPHERE, place), nullptr};
        made.steering = level.component<SteeringComponent>(made.box.entity, "steering").lookup().ptr;
        made.steering->setMaxSpeed(2.f);
        made.steering->setMaxAccel(10.f);
        inGrid(made.box);
        return made;
    }
};

void expectNear(const Vec4 &found, const Vec4 &expected, float tolerance = 1e-5f)
{
    for (int i = 0; i < 4; ++i)
        EXPECT_NEAR(found[i], expected[i], tolerance) << i;
}

float headingOf(const TransformComponent &transform)
{
    const Vec4 direction = transform.getOrientation().generateRotation().getColumn(2);
    return std::atan2(direction.x, direction.z);
}

} // namespace

TEST(Steering, RequestsAddUpBeforeTheSumIsClippedAndGivenToTheBody)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(0, 0, 0, 1));
    SteeringComponent &steering = *one.steering;
    steering.updateSeek(Vec4(3, 0, 0, 1), 0.5f);
    steering.updateSeek(Vec4(0, 0, 7, 1), 1.f, Vec4(0, 0, -2, 0));
    expectNear(steering.getFinalOutput().accel, Vec4(5, 0, 10, 0));
    expectNear(steering.getFinalOutput().orientation, Vec4(1.5f, 0, -2, 0));
    one.box.body->setVelocity(Vec4(4, 0, 0, 0));
    one.box.body->setAcceleration(Vec4(0, 0, 20, 0));
    steering.doFrame();
    const float length = std::sqrt(5.f * 5 + 30 * 30) / 10;
    expectNear(one.box.body->getAcceleration(), Vec4(5 / length, 0, 30 / length, 0));
    expectNear(one.box.body->getVelocity(), Vec4(2, 0, 0, 0));
    EXPECT_NEAR(headingOf(*one.box.transform), std::atan2(1.5f, -2.f), 1e-5f);

    // Without a request it coasts: the velocity stays, the acceleration ends.
    one.box.body->setVelocity(Vec4(9, 0, 0, 0));
    steering.doFrame();
    expectNear(one.box.body->getVelocity(), Vec4(9, 0, 0, 0));
    expectNear(one.box.body->getAcceleration(), Vec4());
}

TEST(Steering, ArrivingSlowsDownFacesTheLastVelocityAndEndsWithinTheTargetRadius)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(0, 0, 0, 1));
    SteeringComponent &steering = *one.steering;
    steering.setArriveTargetRadius(0.5f);
    steering.setArriveSlowRadius(4.f);
    steering.setTimeToTarget(0.5f);
    steering.setFinalVel(Vec4(1, 0, 0, 0));
    one.box.body->setVelocity(Vec4(0, 0, 1, 0));
    steering.updateArrive(Vec4(0, 0, 2, 1), 2.f); // half of the slow radius: half of the speed
    expectNear(steering.getFinalOutput().accel, Vec4(0, 0, (1.f - 1.f) / 0.5f * 2.f, 0));
    EXPECT_NEAR(headingOf(*one.box.transform), std::numbers::pi_v<float> / 2, 1e-5f);
    steering.updateArrive(Vec4(0, 0, 9, 1));
    expectNear(steering.getFinalOutput().accel, Vec4(0, 0, 2, 0));
    EXPECT_FALSE(steering.hasArrived());
    steering.updateArrive(Vec4(0, 0, 0.4f, 1));
    EXPECT_TRUE(steering.hasArrived());
    expectNear(steering.getFinalOutput().accel, Vec4(0, 0, 2, 0));
    EXPECT_TRUE(steering.hasArrived(Vec4(0.3f, 100, 0.3f, 1)));
    EXPECT_FALSE(steering.hasArrived(Vec4(0.4f, 0, 0.4f, 1)));
}

TEST(Steering, PursuesWhereTheTargetWillBeAndMatchesVelocities)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(0, 0, 0, 1));
    SteeringComponent &steering = *one.steering;
    steering.setMaxPrediction(2.f);
    steering.updatePursue(Vec4(0, 0, 4, 1), Vec4(2, 0, 0, 0)); // at rest: the whole prediction
    const float root = std::sqrt(0.5f) * 10;
    expectNear(steering.getFinalOutput().accel, Vec4(root, 0, root, 0));
    steering.setFinalOutput(SteeringOutput());
    one.box.body->setVelocity(Vec4(0, 0, 4, 0)); // there within a second
    steering.updatePursue(Vec4(0, 0, 4, 1), Vec4(2, 0, 0, 0));
    expectNear(steering.getFinalOutput().accel, Vec4(2, 0, 4, 0) * (10 / std::sqrt(20.f)));
    steering.setFinalOutput(SteeringOutput());
    steering.setTimeToTarget(0.25f);
    steering.updateVelocityMatch(Vec4(1, 0, 1, 0), 0.5f);
    expectNear(steering.getFinalOutput().accel, Vec4(2, 0, -6, 0));
}

TEST(Steering, WandersToAPlaceThatItDrawsTwiceASecond)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(1, 0, 1, 1));
    SteeringComponent &steering = *one.steering;
    steering.setWanderOffset(3.f);
    steering.setWanderRadius(1.f);
    steering.setWanderRate(2.f);
    steering.updateWander(0.5);
    EXPECT_EQ(steering.getFinalOutput().accel.magnitude(), 0.f); // not above half a second yet
    seedEngineRand(7);
    const float first = static_cast<float>(engineRand()) * 3.051851e-5f;
    const float angle = (first - static_cast<float>(engineRand()) * 3.051851e-5f) * 2.f;
    seedEngineRand(7);
    steering.updateWander(0.01, 0.5f);
    expectNear(steering.getWanderTarget(), Vec4(1 + std::sin(angle), 0, 1 + 3 + std::cos(angle), 1));
    EXPECT_EQ(steering.getWanderTime(), 0.0);
    EXPECT_NEAR(steering.getFinalOutput().accel.magnitude(), 5.f, 1e-4f);
}

TEST(Steering, LaysItsWhiskersWithoutAskingForAnything)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(0, 0, 0, 1));
    SteeringComponent &steering = *one.steering;
    steering.setLookAhead(2.f);
    SteeringComponent::AvoidRay struck;
    struck.collision.collided = true;
    steering.setCentralRay(struck);
    one.box.body->setVelocity(Vec4(0, 0, 5, 0));
    steering.updateObstacleAvoidance();
    EXPECT_FALSE(steering.getCentralRay().collision.collided);
    expectNear(steering.getCentralRay().ray, Vec4(0, 0, 2, 0));
    expectNear(steering.getWhisker1().ray, Vec4(0.5f, 0, std::sqrt(0.75f), 0));
    expectNear(steering.getWhisker2().ray, Vec4(-0.5f, 0, std::sqrt(0.75f), 0));
    EXPECT_EQ(steering.getFinalOutput().accel.magnitude(), 0.f);
}

TEST(Steering, NumbersThatAreNoneGoNoFurtherAndAreNamedOnce)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(0, 0, 0, 1));
    SteeringComponent &steering = *one.steering;
    const std::size_t without = countLogLines("timeToTarget is 0"),
                      passed = countLogLines("that is no number was passed");
    for (int frame = 0; frame < 3; ++frame)
    {
        steering.updateArrive(Vec4(0, 0, 9, 1));
        steering.updateVelocityMatch(Vec4(1, 0, 0, 0));
        steering.updateVelocityMatch(Vec4());
        steering.updateSeek(Vec4(NO_NUMBER, 0, 0, 1));
        steering.updatePursue(Vec4(0, 0, 9, 1), Vec4(INFINITY, 0, 0, 0));
        steering.updateArrive(Vec4(0, 0, -INFINITY, 1));
        steering.updateWander(NO_NUMBER);
        steering.updateAlignWithVector(Vec4(NO_NUMBER, 0, 1, 0), 0.1);
        steering.updateSeparation(NO_NUMBER);
        one.stepFor(0.1);
        SteeringOutput output;
        output.accel = output.orientation = Vec4(NO_NUMBER, 1, 1, 0);
        steering.applySteering(output);
        output.accel = output.vel = Vec4(3e38f, 3e38f, 0, 0);
        one.box.body->setVelocity(Vec4(3e38f, 0, 0, 0));
        steering.applySteering(output);
        EXPECT_TRUE(isFinite(one.box.body->getVelocity()) && isFinite(one.box.body->getAcceleration()));
        one.box.body->setVelocity(Vec4());
        EXPECT_TRUE(isFinite(one.place()) && isFinite(one.box.transform->getOrientation()));
    }
    steering.setMaxSpeed(NO_NUMBER);
    EXPECT_EQ(steering.getMaxSpeed(), 2.f);
    EXPECT_EQ(countLogLines("timeToTarget is 0"), without + 1);
    EXPECT_EQ(countLogLines("that is no number was passed"), passed + 1);
}

TEST(Steering, WithoutBodyOrTransformItDoesNothing)
{
    TestLevel level;
    const Handle<Entity> ghost = level.entity("ghost");
    SteeringComponent &steering = *level.component<SteeringComponent>(ghost, "steering").lookup();
    steering.updateSeek(Vec4(1, 0, 0, 1));
    steering.updateArrive(Vec4(1, 0, 0, 1));
    steering.updateAlign(ghost, 0.1);
    steering.updateSeparation();
    EXPECT_FALSE(steering.hasArrived(Vec4()));
    const Handle<TransformComponent> transform = level.transform(ghost, Vec4(0, 0, 0, 1));
    steering.updateSeek(Vec4(1, 0, 0, 1));
    steering.doFrame();
    expectNear(transform.lookup()->getPosition(), Vec4(0, 0, 0, 1));
    const Handle<RigidBody> body = level.component<RigidBody>(ghost, "physics");
    steering.setMaxAccel(1.f);
    steering.updateSeek(Vec4(1, 0, 0, 1));
    EXPECT_EQ(steering.getFinalOutput().accel.x, 1.f); // found as soon as it is there
    body.lookup()->murder();
    cremateDeadObjects();
    steering.doFrame();
}

TEST(HeadTurn, StartsAndEndsSlowlyAndComesAsFarInAnyFrames)
{
    constexpr double angle = 2.5, fastest = 3, quickening = 6, whole = angle / fastest + fastest / quickening;
    const auto leftAfter = [&](double time, double frame)
    {
        HeadTurn turn{angle, 0};
        double before = turn.left;
        for (double done = 0; done < time; done += frame)
        {
            turn.advance(std::min(frame, time - done), fastest, quickening);
            EXPECT_LE(turn.left, before);
            EXPECT_GE(turn.left, 0);
            EXPECT_LE(turn.speed, fastest + 1e-9);
            before = turn.left;
        }
        return turn.left;
    };
    for (double time = 0.05; time < whole + 0.2; time += 0.05)
        for (const double frame : {1.0 / 30, 1.0 / 60, 1.0 / 144, 0.37, 5.0})
            EXPECT_NEAR(leftAfter(time, frame), leftAfter(time, 1.0 / 1000), 1e-6) << time << " in " << frame;
    EXPECT_NEAR(leftAfter(0.1, 0.1), angle - quickening * 0.01 / 2, 1e-9);
    EXPECT_NEAR(leftAfter(whole - 0.1, 0.1), quickening * 0.01 / 2, 1e-6);
    EXPECT_EQ(leftAfter(whole + 0.1, 0.1), 0.0);
}

TEST(Steering, TurnsToADirectionLikeAHeadAtAnyFrameRate)
{
    const auto headingAfter = [](int framesASecond, double hitchAt)
    {
        SteeringWorld world;
        const Creature one = world.creature(Vec4(0, 0, 0, 1));
        one.steering->setAlignMaxRotSpeed(2.f);
        one.steering->setAlignSlowRadius(0.5f);
        one.steering->setAlignTargetRadius(0.02f);
        float last = 0;
        double now = 0;
        const auto turnFor = [&](double seconds)
        {
            one.steering->updateAlignWithVector(Vec4(-1, 0, -0.001f, 0), seconds);
            one.steering->doFrame();
            now += seconds;
            const float heading = headingOf(*one.box.transform);
            EXPECT_LE(heading, last + 1e-5f); // to the left all the time, and never back
            last = heading;
        };
        while (now < 0.7 - 1e-9)
            turnFor(now < hitchAt ? std::min(1.0 / framesASecond, 0.7 - now) : 0.7 - now);
        const float underWay = last;
        while (now < 2)
            turnFor(1.0 / framesASecond);
        EXPECT_NEAR(last, -std::numbers::pi_v<float> / 2 - 0.001f + 0.02f, 2e-3f);
        return underWay;
    };
    const float expected = headingAfter(60, 1);
    EXPECT_LT(expected, -0.8f);
    EXPECT_GT(expected, -1.4f);
    for (const int rate : {30, 144, 1000})
        EXPECT_NEAR(headingAfter(rate, 1), expected, 2e-3f) << rate;
    EXPECT_NEAR(headingAfter(60, 0.2), expected, 2e-3f);
}

TEST(Steering, AHeadThatFollowsWhatMovesNeitherJerksNorOvershoots)
{
    SteeringWorld world;
    const Creature one = world.creature(Vec4(0, 0, 0, 1)), other = world.creature(Vec4(3, 0, 0, 1));
    one.steering->setAlignMaxRotSpeed(2.f);
    one.steering->setAlignSlowRadius(0.5f);
    float before = 0, speedBefore = 0;
    for (int frame = 0; frame < 600; ++frame)
    {
        const float angle = std::sin(static_cast<float>(frame) * 0.01f) * 2;
        other.box.transform->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), angle));
        one.steering->updateAlign(other.box.entity, 1.0 / 60);
        one.steering->doFrame();
        const float heading = headingOf(*one.box.transform), speed = (heading - before) * 60;
        EXPECT_LT(std::fabs(speed - speedBefore), 0.3f) << frame; // four radians a second squared, and what it follows
        before = heading;
        speedBefore = speed;
    }
    EXPECT_NEAR(before, std::sin(599 * 0.01f) * 2, 0.2f);
}

TEST(Steering, SeparationKeepsACrowdThatWantsOnePlaceOutOfEachOther)
{
    SteeringWorld world;
    std::vector<Creature> crowd;
    for (int i = 0; i < 12; ++i)
        crowd.push_back(world.creature(Vec4(static_cast<float>(i % 4) * 0.3f, 0, static_cast<float>(i / 4) * 0.3f, 1)));
    crowd.push_back(world.creature(crowd.front().place())); // in one place with another
    for (const Creature &one : crowd)
    {
        one.steering->setSepThreshold(1.2f);
        one.steering->setSepWeight(2.f);
        one.box.body->setDamping(0.2f);
    }
    for (int frame = 0; frame < 400; ++frame)
    {
        for (const Creature &one : crowd)
        {
            one.steering->updateSeek(Vec4(0.5f, 0, 0.5f, 1), 0.3f);
            one.steering->updateSeparation();
        }
        for (const Creature &one : crowd)
            one.stepFor(1.0 / 60);
    }
    for (std::size_t i = 0; i < crowd.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_GT((crowd[i].place() - crowd[j].place()).magnitude(), 0.4f) << i << " and " << j;
}

TEST(Steering, TwoWhoMeetOrStandFaceToFacePassEachOtherOnTheRight)
{
    for (const float start : {5.f, 0.4f})
    {
        SteeringWorld world;
        const Creature north = world.creature(Vec4(0, 0, -start, 1)), south = world.creature(Vec4(0, 0, start, 1));
        float nearest = 100;
        for (int frame = 0; frame < 480; ++frame)
        {
            for (const Creature &one : {north, south})
            {
                one.steering->setSepThreshold(1.5f);
                one.steering->setSepWeight(2.f);
                one.steering->updateSeek(Vec4(0, 0, one.steering == north.steering ? 6.f : -6.f, 1));
                one.steering->updateSeparation();
                one.stepFor(1.0 / 60);
            }
            nearest = std::min(nearest, (north.place() - south.place()).magnitude());
        }
        EXPECT_GT(nearest, 0.5f) << start;
        EXPECT_GT(north.place().z, 4.f) << start;
        EXPECT_LT(south.place().z, -4.f) << start;
    }
}
