#include "PhysicsWorld.h"
#include "TouchNote.h"

#include "foundation/Finite.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace
{

constexpr float NAN_ = std::numeric_limits<float>::quiet_NaN();
constexpr float INFINITE_ = std::numeric_limits<float>::infinity();

/// A little level in which anything may go wrong, while a crowd of decent bodies lives among it.
class Bedlam
{
public:
    explicit Bedlam(unsigned seed) : chance(seed)
    {
        cellar = world.level.map("cellar", Vec4(0, -9, 0, 1), Vec4(40, 5, 40, 0));
        note = construct<TouchNote>(defaultAllocationCategory);
        note.lookup()->setParent(world.level.level);
        note.lookup()->whenTouched = [this](Handle<Entity> touched, Handle<PhysicsComponent> toucher)
        { misbehave(touched, toucher); };
        const TestBox floor = world.box(BoundingVolume::BV_WALL, Vec4(3, 0.5f, -2, 1), Vec4(40, 1, 30, 0));
        floor.body->setInverseMass(0);
        for (int i = 0; i < 40; ++i)
            decent.push_back(remember(world.box(i % 4 == 0   ? BoundingVolume::BV_SPHERE
                                                : i % 9 == 1 ? BoundingVolume::BV_PLAYER
                                                             : BoundingVolume::BV_BOX,
                                                place())));
        for (int i = 0; i < 25; ++i)
            spawn();
    }

    void frame()
    {
        for (int i = 0; i < 6; ++i)
            disturb();
        world.level.frame();
        std::erase_if(wild, [](const Being &being) { return !being.entity.isValid(); });
        while (wild.size() < 25)
            spawn();
    }

    /// What decent bodies must be, whatever happens around them.
    void expectDecency() const
    {
        for (const Being &being : decent)
        {
            const auto body = being.body.lookup();
            const auto transform = being.transform.lookup();
            if (!body || !transform)
                continue;
            const Quaternion turn = transform->getOrientation();
            ASSERT_TRUE(isFinite(transform->getPosition())) << transform->getPosition().toString().toCString();
            ASSERT_TRUE(isFinite(body->getVelocity())) << body->getVelocity().toString().toCString();
            ASSERT_NEAR(turn.r * turn.r + turn.i * turn.i + turn.j * turn.j + turn.k * turn.k, 1.f, 1e-3f);
        }
    }

    /// Each body stands in all cells of the rectangle that it remembers, and one that never changed its kind, its map
    /// or its grid's cells stands in no other.
    void expectCells()
    {
        PartitioningGrid &grid = *world.grid;
        for (const Being &being : decent)
        {
            const auto volume = being.volume.lookup();
            if (!volume)
                continue;
            const CellRect cells = CellRect::between(volume->getPreviousMin(), volume->getPreviousMax(),
                                                     grid.getColumns(), grid.getRows());
            for (int z = 0; z < grid.getRows(); ++z)
                for (int x = 0; x < grid.getColumns(); ++x)
                {
                    const VolumeList list = grid.getGridCellList(x, z);
                    ASSERT_EQ(std::count(list.begin(), list.end(), being.volume),
                              cells.contains(CellRect{x, z, x, z}) ? 1 : 0)
                        << "cell " << x << ", " << z;
                }
        }
    }

    bool resizes = true; ///< the grid too

private:
    struct Being
    {
        Handle<Entity> entity;
        Handle<TransformComponent> transform;
        Handle<BoundingVolume> volume;
        Handle<RigidBody> body;
    };

    static Being remember(const TestBox &box)
    {
        return Being{box.entity, getHandle(box.transform), box.handle(), getHandle(box.body)};
    }
    Vec4 place() { return Vec4(chance(-14, 20), chance(1.5f, 5), chance(-14, 10), 1); }
    float oddNumber()
    {
        const float odd[] = {NAN_, INFINITE_, -INFINITE_, 0, -1, -0.f, 1e30f, -1e30f, 3e38f, 1e-40f, 1, 2, 0.5f, 7};
        return odd[chance.below(14)];
    }
    Vec4 oddVector() { return Vec4(oddNumber(), oddNumber(), oddNumber(), chance.below(9) ? 0 : oddNumber()); }
    BoundingVolume::VolumeType anyType()
    {
        return static_cast<BoundingVolume::VolumeType>(chance.below(BoundingVolume::NUM_VOLUMES));
    }

    void spawn()
    {
        const TestBox box = world.box(anyType(), place(), Vec4(chance(0.2f, 3), 1, chance(0.2f, 3), 0));
        if (chance.below(2))
            box.volume->setTriggerFunc(note.lookup()->bind(SCS("noteTouch")));
        if (chance.below(9) == 0)
            box.body->murder();
        if (chance.below(9) == 0)
            box.transform->murder();
        wild.push_back(remember(box));
    }

    /// One thing that a designer or a script may do to something that is not decent.
    void disturb()
    {
        const Being &being = wild[static_cast<std::size_t>(chance.below(static_cast<int>(wild.size())))];
        const auto transform = being.transform.lookup();
        const auto body = being.body.lookup();
        const auto volume = being.volume.lookup();
        if (!transform || !body || !volume)
            return;
        switch (chance.below(20))
        {
        case 0:
            return transform->setPosition(Vec4(oddNumber(), oddNumber(), oddNumber(), 1));
        case 1:
            return transform->setOrientation(Quaternion(oddNumber(), oddNumber(), oddNumber(), oddNumber()));
        case 2:
            return volume->setHitBox(oddVector());
        case 3:
            return body->setVelocity(oddVector());
        case 4:
            return body->addForce(oddVector());
        case 5:
            return body->setInverseMass(oddNumber());
        case 6:
            return body->setMass(oddNumber());
        case 7:
            return body->setDamping(oddNumber());
        case 8:
            return body->setRestitution(oddNumber());
        case 9:
            return body->setAcceleration(oddVector());
        case 10:
            return body->addTorque(oddVector());
        case 11:
            return body->setInertiaTensor(oddVector());
        case 12:
            return volume->setVolumeType(anyType());
        case 13:
            return being.entity.lookup()
                ->setParent(chance.below(2) ? Handle<Object>(cellar) : Handle<Object>(world.map))
                .ignoreError();
        case 14:
            return being.entity.lookup()->murder();
        case 15:
            return resizeGrid();
        case 16:
            return body->setAngularVelocity(oddVector());
        default: // back among the others, to do harm there
            transform->setPosition(place());
            transform->setOrientation(chance.turn());
            return volume->setHitBox(Vec4(chance(0.2f, 3), 1, chance(0.2f, 3), 0));
        }
    }

    void resizeGrid()
    {
        if (!resizes)
            return;
        world.grid->setSize(chance.below(3) ? Vec4(chance(5, 60), 0, chance(5, 60), 0) : oddVector());
        world.grid->setCellSize(chance.below(3) ? chance(1, 5) : oddNumber());
        world.grid->updateSize();
    }

    /// What a trigger's script may do while contacts are sought.
    void misbehave(Handle<Entity> touched, Handle<PhysicsComponent> toucher)
    {
        const auto entity = touched.lookup();
        const auto body = toucher.lookup();
        switch (chance.below(9))
        {
        case 0:
            return entity->murder();
        case 1:
            return body->murder();
        case 2:
            return entity->setParent(cellar).ignoreError();
        case 3:
            return world.grid->checkCollisions();
        case 4:
            return world.grid->resolveCollisions(0);
        case 5:
            return spawn();
        case 6:
            return resizeGrid();
        default:
            return disturb();
        }
    }

    PhysicsWorld world;
    Handle<MapRootEntity> cellar;
    Handle<TouchNote> note;
    Chance chance;
    std::vector<Being> decent;
    std::vector<Being> wild;
};

} // namespace

TEST(Hardship, DecentBodiesStayDecentWhateverHappensAroundThem)
{
    for (unsigned seed = 1; seed <= 4; ++seed)
    {
        Bedlam bedlam(seed);
        bedlam.resizes = seed % 2 == 0;
        for (int frame = 0; frame < 1000; ++frame)
        {
            SCOPED_TRACE(testing::Message() << "seed " << seed << " frame " << frame);
            bedlam.frame();
            bedlam.expectDecency();
            if (!bedlam.resizes && frame % 50 == 0)
                bedlam.expectCells();
            if (testing::Test::HasFatalFailure())
                return;
        }
    }
}

TEST(Hardship, ImpossibleSettingsAreNamedAndNotTaken)
{
    PhysicsWorld world;
    const TestBox box = world.box(BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1));
    box.body->setMass(4);
    world.box(BoundingVolume::BV_BOX, Vec4(9, 5, 0, 1), Vec4(NAN_, 0, 0, 0)).volume->onLoadComplete();
    EXPECT_EQ(countLogLines("has no extent: its hitBox is"), 1u);
    for (const float odd : {NAN_, -1.f, 1.5f, INFINITE_})
    {
        box.body->setDamping(odd);
        box.body->setAngularDamping(odd);
        box.body->setInverseMass(odd == 1.5f ? -2.f : odd);
        box.body->setMass(odd == 1.5f ? 0.f : -std::fabs(odd));
        box.body->setRestitution(odd);
        box.body->setInertiaTensor(Vec4(1, odd == 1.5f ? 0.f : odd, 1, 0));
    }
    EXPECT_EQ(box.body->getDamping(), 1.f);
    EXPECT_EQ(box.body->getAngularDamping(), 1.f);
    EXPECT_EQ(box.body->getMass(), 4.f);
    EXPECT_EQ(box.body->getRestitution(), 0.f);
    EXPECT_EQ(box.body->getInverseInertia()[1][1], Matrix4()[1][1]);
    for (const char *property : {"damping", "angularDamping", "inverseMass", "restitution", "moment of inertia"})
        EXPECT_GE(countLogLines((std::string("is no ") + property + " and is not taken").c_str()), 4u) << property;
    EXPECT_GE(countLogLines("cannot be moved by forces; masses are greater than 0"), 4u);

    const std::string stopped = std::string(Handle<Object>(box.entity).toString().toCString()) + " is stopped";
    const std::size_t before = countLogLines(stopped.c_str()); // of a body of the same address in an earlier case
    for (int i = 0; i < 5; ++i)
    {
        box.body->addForce(Vec4(NAN_, 0, 0, 0));
        world.level.frame();
    }
    EXPECT_EQ(countLogLines(stopped.c_str()), before + 1);
    EXPECT_EQ(box.transform->getPosition(), Vec4(0, 5, 0, 1)) << "it stands where it was";
    world.level.frame();
    EXPECT_LT(box.body->getVelocity().y, 0.f) << "and falls when the nonsense ends";
}

TEST(Hardship, WallsOfAMapThatChangesItsSizeStillStopWhatRunsIntoThem)
{
    for (const Vec4 &size : {Vec4(80, 0, 70, 0), Vec4(14, 0, 14, 0)})
    {
        PhysicsWorld world;
        const TestBox wall = world.box(BoundingVolume::BV_WALL, Vec4(5, 1, -1, 1), Vec4(1, 4, 1, 0));
        const TestBox box = world.box(BoundingVolume::BV_BOX, Vec4(3, 1, -1, 1));
        wall.body->setInverseMass(0);
        world.level.frame();
        world.grid->setSize(size);
        world.grid->setCellSize(1.3f);
        world.grid->updateSize();
        for (int i = 0; i < 64; ++i)
        {
            box.body->setVelocity(3, 0, 0);
            world.level.frame();
        }
        EXPECT_LT(box.transform->getPosition().x, 4.1f);
    }
}

TEST(Hardship, ThousandsInOnePlacePartWithoutTakingAllMemory)
{
    PhysicsWorld world;
    std::vector<TestBox> crowd;
    for (int i = 0; i < 750; ++i)
        crowd.push_back(world.box(i % 2 ? BoundingVolume::BV_SPHERE : BoundingVolume::BV_BOX, Vec4(0, 5, 0, 1)));
    for (int i = 0; i < 2; ++i)
        world.level.frame();
    EXPECT_EQ(countLogLines("so many bodies stand in each other"), 1u);
    EXPECT_TRUE(std::all_of(crowd.begin(), crowd.end(),
                            [](const TestBox &box) { return isFinite(box.transform->getPosition()); }));
    EXPECT_TRUE(std::any_of(crowd.begin(), crowd.end(),
                            [](const TestBox &box) { return box.transform->getPosition().x != 0.f; }));
}

TEST(Hardship, OrientationOfAnyLengthTurnsAndDoesNotStretch)
{
    PhysicsWorld world;
    const TestBox slab = world.box(BoundingVolume::BV_WALL, Vec4(0, 1, 0, 1), Vec4(8, 1, 8, 0));
    slab.body->setInverseMass(0);
    slab.transform->setOrientation(Quaternion(0.5f, 0.5f, 0, 0)); // stands upright, whatever its length
    const TestBox beside = world.box(BoundingVolume::BV_BOX, Vec4(0, 3, 0.9f, 1));
    world.level.frame();
    EXPECT_NEAR(beside.transform->getPosition().z, 1.f, 1e-4f);
}
