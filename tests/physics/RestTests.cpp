#include "PhysicsWorld.h"

#include "engine/time/BSTimeSource.h"
#include "engine/time/TimeSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace
{

/// Bodies on a slab whose top lies at height 1, sixty frames a second.
class Ground
{
public:
    Ground()
    {
        const Handle<BSTimeSource> source = construct<BSTimeSource>(defaultAllocationCategory);
        source.lookup()->setFrameRate(60);
        getSystemDeref<TimeSystem>().setSource(source);
        wall(Vec4(3, 0.5f, -2, 1), Vec4(40, 1, 30, 0));
    }

    void wall(Vec4 place, Vec4 extents) { world.box(BoundingVolume::BV_WALL, place, extents).body->setInverseMass(0); }
    TestBox &body(BoundingVolume::VolumeType type, Vec4 place, float side, float mass, float damping)
    {
        bodies.push_back(world.box(type, place, Vec4(side, side, side, 0)));
        bodies.back().body->setMass(mass);
        bodies.back().body->setDamping(damping);
        bodies.back().body->setRestitution(0.3f);
        return bodies.back();
    }
    /// The longest way that any body takes in a frame.
    float run(int frames)
    {
        float farthest = 0;
        for (int i = 0; i < frames; ++i)
        {
            std::vector<Vec4> before;
            for (const TestBox &box : bodies)
                before.push_back(box.transform->getPosition());
            world.level.frame();
            for (std::size_t k = 0; k < bodies.size(); ++k)
                farthest = std::max(farthest, (bodies[k].transform->getPosition() - before[k]).magnitude());
        }
        return farthest;
    }

    PhysicsWorld world;
    std::vector<TestBox> bodies;
};

} // namespace

TEST(Rest, StackOfCratesThatGrowLighterStandsStillAndHardlySinks)
{
    // Crates that would float down, being heavy, get the rest of their weight as an acceleration.
    Ground ground;
    const float masses[] = {32, 16, 8, 4, 2};
    for (int i = 0; i < 5; ++i)
    {
        const float height = 1.6f + static_cast<float>(i) * 1.1f;
        TestBox &crate = ground.body(BoundingVolume::BV_BOX, Vec4(0, height, 0, 1), 1, masses[i], 0.1f);
        crate.body->setAcceleration(0, -(10 - 20 / masses[i]), 0);
    }
    ground.run(600);
    EXPECT_LT(ground.run(600), 1e-5f) << "in a frame";
    float below = 1;
    for (const TestBox &crate : ground.bodies)
    {
        const Vec4 place = crate.transform->getPosition();
        EXPECT_LT(below - (place.y - 0.5f), 0.035f) << "into what it stands on";
        EXPECT_LT(std::hypot(place.x, place.z), 1e-4f);
        below = place.y + 0.5f;
    }
    EXPECT_GT(below, 5.88f);
}

TEST(Rest, TenEqualCratesStandStillAndTheLowestIsNotPressedIntoTheGround)
{
    for (const float restitution : {0.f, 0.3f})
    {
        for (const int count : {3, 5, 10})
        {
            Ground ground;
            for (int i = 0; i < count; ++i)
                ground.body(BoundingVolume::BV_BOX, Vec4(0, 1.6f + static_cast<float>(i) * 1.1f, 0, 1), 1, 2, 0.1f)
                    .body->setRestitution(restitution);
            ground.run(900);
            EXPECT_LT(ground.run(60), 1e-4f) << count << " crates, in a frame";
            EXPECT_NEAR(ground.bodies.front().transform->getPosition().y, 1.5f, 1e-4f) << count << " crates";
        }
    }
}

TEST(Rest, CrateAcrossTwoOthersLiesStillWhateverCellsTheyStandIn)
{
    for (const float x : {0.f, 0.4f, 1.f, 1.45f})
    {
        Ground ground;
        ground.body(BoundingVolume::BV_BOX, Vec4(x - 0.55f, 1.5f, 0, 1), 1, 2, 0.1f);
        ground.body(BoundingVolume::BV_BOX, Vec4(x + 0.55f, 1.5f, 0, 1), 1, 2, 0.1f);
        ground.body(BoundingVolume::BV_BOX, Vec4(x, 2.6f, 0, 1), 1, 2, 0.1f);
        ground.run(300);
        EXPECT_LT(ground.run(60), 1e-5f) << "in a frame, at " << x;
        EXPECT_NEAR(ground.bodies.back().transform->getPosition().y, 2.49f, 0.01f);
    }
}

TEST(Rest, ContactsThatStopOneBodyDoNotAddUp)
{
    Ground ground;
    ground.wall(Vec4(1, 2, 0, 1), Vec4(1, 2, 1, 0)); // one wall of two pieces, and another wall behind the back
    ground.wall(Vec4(1, 2, 1, 1), Vec4(1, 2, 1, 0));
    ground.wall(Vec4(-0.95f, 2, 0, 1), Vec4(1, 2, 4, 0));
    TestBox &walker = ground.body(BoundingVolume::BV_PLAYER, Vec4(0.04f, 1.5f, 0.5f, 1), 1, 75, 1);
    const Vec4 first = (ground.run(1), walker.transform->getPosition());
    EXPECT_NEAR(first.x, 0.05f, 1e-5f) << "the last wall has its way, by its own depth";
    EXPECT_LT(ground.run(30), 1e-5f) << "in a gap that is too narrow for him, he stands";
}

TEST(Rest, LooseLayerOfBallsInATrayLiesStillAndApart)
{
    Ground ground;
    const float half = 3.3f; // half of the tray's area is filled
    ground.wall(Vec4(-half - 0.5f, 2, 0, 1), Vec4(1, 2, 9, 0));
    ground.wall(Vec4(half + 0.5f, 2, 0, 1), Vec4(1, 2, 9, 0));
    ground.wall(Vec4(0, 2, -half - 0.5f, 1), Vec4(9, 2, 1, 0));
    ground.wall(Vec4(0, 2, half + 0.5f, 1), Vec4(9, 2, 1, 0));
    Chance chance(7);
    for (int i = 0; i < 300; ++i) // two thirds of them in a layer, the others let fall upon them
        ground.body(BoundingVolume::BV_SPHERE,
                    Vec4(static_cast<float>(i % 15 - 7) * 0.43f + chance(-0.01f, 0.01f),
                         1.16f + static_cast<float>(i / 210) * 0.4f,
                         static_cast<float>(i / 15 % 14) * 0.43f - 3.f + chance(-0.01f, 0.01f), 1),
                    0.3f, 1, 0.2f);
    ground.run(480);
    EXPECT_LT(ground.run(60), 1e-4f) << "in a frame";
    for (std::size_t i = 0; i < ground.bodies.size(); ++i)
    {
        const Vec4 place = ground.bodies[i].transform->getPosition();
        EXPECT_NEAR(place.y, 1.15f, 1e-3f) << "ball " << i << " lies on the ground";
        EXPECT_LT(std::max(std::fabs(place.x), std::fabs(place.z)), half - 0.149f) << "and in the tray";
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_GT((place - ground.bodies[k].transform->getPosition()).magnitude(), 0.299f);
    }
}
