#include "PhysicsWorld.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace
{

/// A crowd that falls, turns, bounces and slides between walls, with a player in its midst.
class Crowd
{
public:
    explicit Crowd(int count)
    {
        const float side = 3.f * std::sqrt(static_cast<float>(count)); // 9 m2 for each
        world.grid->setSize(Vec4(side + 20, 0, side + 20, 0));
        world.grid->updateSize();
        Chance chance(77);
        for (int i = 0; i < count; ++i)
            members.push_back(member(chance, i, side / 2));
        for (int i = 0; i < 8; ++i) // four around, four through the middle
        {
            const float away = i < 4 ? side / 2 : side / 5;
            const Vec4 place =
                i % 2 ? Vec4(i % 4 < 2 ? away : -away, 1, 0, 1) : Vec4(0, 1, i % 4 < 2 ? away : -away, 1);
            const Vec4 extents = i % 2 ? Vec4(1, 30, side, 0) : Vec4(side, 30, 1, 0);
            TestBox wall = world.box(BoundingVolume::BV_WALL, place, extents);
            wall.body->setInverseMass(0);
        }
    }

    void run(int frames)
    {
        for (int i = 0; i < frames; ++i)
        {
            members.front().body->addForce(Vec4(60, 0, i % 100 < 50 ? 40.f : -40.f, 0));
            world.level.frame();
        }
    }

    /// FNV-1a over the bits of every place and orientation.
    std::uint64_t hash() const
    {
        std::uint64_t sum = 14695981039346656037u;
        const auto add = [&sum](const void *bytes, std::size_t size)
        {
            for (std::size_t i = 0; i < size; ++i)
                sum = (sum ^ static_cast<const unsigned char *>(bytes)[i]) * 1099511628211u;
        };
        for (const TestBox &member : members)
        {
            const Vec4 place = member.transform->getPosition();
            const Quaternion turn = member.transform->getOrientation();
            add(&place, sizeof(place));
            add(&turn, sizeof(turn));
        }
        return sum;
    }

private:
    TestBox member(Chance &chance, int number, float reach)
    {
        const bool isBall = number % 4 == 3;
        const auto type = number == 0 ? BoundingVolume::BV_PLAYER
                          : isBall    ? BoundingVolume::BV_SPHERE
                                      : BoundingVolume::BV_BOX;
        const float x = chance(-reach, reach), y = chance(0, 12), z = chance(-reach, reach);
        const float size = chance(0.5f, 1.8f), height = chance(0.5f, 1.8f);
        const TestBox made = world.box(type, Vec4(x, y, z, 1), Vec4(size, height, size, 0));
        Quaternion turn{chance(-1, 1), chance(-1, 1), chance(-1, 1), chance(-1, 1)}; // in this order with any compiler
        turn.normalize();
        made.transform->setOrientation(turn);
        made.body->setInertiaTensor(Vec4(1, 2, 3, 0));
        made.body->setInverseMass(chance(0.3f, 1.5f));
        made.body->setDamping(number % 2 ? 0.9f : 0.7f);
        made.body->setAngularDamping(0.8f);
        made.body->setRestitution(chance(0, 1));
        const float vx = chance(-5, 5), vz = chance(-5, 5), spin = chance(-2, 2);
        made.body->setVelocity(vx, 0, vz);
        made.body->setAngularVelocity(Vec4(spin, -spin, 0.5f * spin, 0));
        made.body->addForce(Vec4(0, 0, spin, 0), Vec4(x + 1, y, z, 1));
        return made;
    }

    PhysicsWorld world;
    std::vector<TestBox> members;
};

std::uint64_t hashAfter(int count, int frames)
{
    Crowd crowd(count);
    crowd.run(frames);
    return crowd.hash();
}

} // namespace

// The stored sums hold for every build, whatever it optimises or checks: a change of one bit anywhere shows here.

TEST(Crowd, TakesTheSameWayToTheLastBitInEveryBuild)
{
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(hashAfter(1000, 200), 0x8196ff2b08b16c95u);
}

TEST(Crowd, OfTenThousandTakesTheSameWayForSixHundredFrames)
{
    EXPECT_EQ(hashAfter(10000, 600), 0xa61e07329ae36bfu);
}
