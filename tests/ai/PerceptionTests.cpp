#include "ai/perception/PerceptionComponent.h"
#include "ai/perception/PerceptionManager.h"
#include "ai/perception/Sightline.h"

#include "engine/time/BSTimeSource.h"
#include "engine/time/TimeSystem.h"
#include "object/messages/PostOffice.h"
#include "object/reflection/SavedArguments.h"
#include "physics/SoundScene.h"
#include "platform/sound/SoundMessages.h"
#include "support/AllocationCount.h"

#include "foundation/Finite.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

namespace
{

constexpr float NO_NUMBER = std::numeric_limits<float>::quiet_NaN();
constexpr float STEP = 0.04f; ///< loudness of a step, a metre away

Quaternion turned(float yaw)
{
    return Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), yaw);
}

/// The house, a player in it, and creatures that need no light.
struct Haunted : SoundScene
{
    Haunted() : player(person("Player", Vec4(3, 0.9f, 4, 1))) {}

    TestBox person(const char *name, Vec4 place)
    {
        TestBox made = world.box(BoundingVolume::BV_BOX, place, Vec4(0.5f, 1.8f, 0.5f, 0));
        made.entity.lookup()->setName(String::copyFrom(name));
        made.body->setInverseMass(0);
        return made;
    }
    /// One who looks along +z unless turned.
    PerceptionComponent &creature(Vec4 place, float yaw = 0)
    {
        const TestBox body = person("creature", place);
        body.transform->setOrientation(turned(yaw));
        PerceptionComponent &made = *world.level.component<PerceptionComponent>(body.entity, "perception").lookup();
        made.setSeesInDark(true);
        return made;
    }
    void pass(Seconds seconds, int rate = 64)
    {
        for (int frame = 0; frame < std::lround(seconds * rate); ++frame)
            world.level.frame();
    }
    void useRate(int rate)
    {
        const Handle<BSTimeSource> source = construct<BSTimeSource>(defaultAllocationCategory);
        source.lookup()->setFrameRate(rate);
        getSystemDeref<TimeSystem>().setSource(source);
    }
    PerceptionManager &manager() const
    {
        return *handle_cast<PerceptionManager>(world.level.coordinator().getManager(SCS("perception"))).lookup();
    }
    void sound(Vec4 place, float loudness, const Handle<Object> &maker = Handle<Object>()) const
    {
        place.w = loudness;
        SavedArguments payload = SavedArguments::of(SCS("StepStoneWalk"), place, maker);
        PostOffice().submitMessage(SoundMadeMessage, payload);
    }

    TestBox player;
};

TEST(Perception, ATargetInFullViewIsNoticedAndItsPlaceIsKnown)
{
    Haunted house;
    PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, 0, 1));
    house.pass(0.2);
    EXPECT_TRUE(senses.getSeen());
    EXPECT_FALSE(senses.getKnows());
    house.pass(0.6);
    EXPECT_TRUE(senses.getKnows());
    EXPECT_EQ(senses.getPlace(), house.player.transform->getPosition());
    EXPECT_LT(senses.getVagueness(), 0.5f);
    EXPECT_NEAR(senses.getClarity(), 1.f, 0.05f);
    EXPECT_STREQ(senses.tell().toCString(), "sees the player 4 m to the north, sure");
}

TEST(Perception, WhatIsFarAtTheRimOfTheViewOrHalfHiddenIsSeenLessClearlyAndWhatIsHiddenNotAtAll)
{
    const auto clarity = [](Vec4 place, float yaw, float hiddenUpTo)
    {
        Haunted house;
        house.wall(2, 4, 2, 2.2f, 0, hiddenUpTo);
        house.settle();
        PerceptionComponent &senses = house.creature(place, yaw);
        house.pass(0.3);
        return senses.getClarity();
    };
    const Vec4 near(3, 0.9f, 0, 1);
    const float whole = clarity(near, 0, 0.01f);
    EXPECT_GT(whole, 0.9f);
    EXPECT_EQ(clarity(near, PI, 0.01f), 0.f) << "behind its back";
    EXPECT_EQ(clarity(near, 0, 3.f), 0.f) << "behind a wall";
    const float rim = clarity(near, 1.0f, 0.01f), half = clarity(near, 0, 0.9f);
    EXPECT_TRUE(0.1f < rim && rim < 0.7f) << rim;
    EXPECT_TRUE(0.2f < half && half < 0.9f) << half;
    const float far = clarity(Vec4(3, 0.9f, -10, 1), 0, 0.01f);
    EXPECT_TRUE(0.05f < far && far < 0.5f) << far;
}

TEST(Perception, TheLeafOfADoorHidesAndAPaneOfGlassDoesNot)
{
    Haunted house;
    house.divide({3});
    DoorPhysics &leaf = house.door<DoorPhysics>(3);
    PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, -5, 1));
    house.pass(0.5);
    EXPECT_FALSE(senses.getSeen());
    BoundingVolume &volume = *handle_cast<BoundingVolume>(leaf.getSibling(SCS("boundingVolume"))).lookup();
    volume.setSeeThrough(true);
    house.pass(0.7);
    EXPECT_TRUE(senses.getSeen());
    EXPECT_TRUE(isLineFree(house.world.map, Vec4(3, 1, -4, 1), Vec4(3, 1, 3, 1)));
    volume.setSeeThrough(false);
    EXPECT_FALSE(isLineFree(house.world.map, Vec4(3, 1, -4, 1), Vec4(3, 1, 3, 1)));
    EXPECT_FALSE(isLineFree(house.world.map, Vec4(5, 5, -2.15f, 1), Vec4(5, 1, -2.15f, 1)))
        << "straight down on a wall";
}

TEST(Perception, SuspicionIsTheSameAtAnyFrameRate)
{
    struct Course
    {
        float seeing, drained;
    };
    const auto course = [](int rate)
    {
        Haunted house;
        house.useRate(rate);
        PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, -7, 1));
        senses.setSightGain(0.3f);
        senses.setPatience(0.5f);
        house.pass(1.0, rate);
        house.sound(Vec4(3, 1, -4, 1), STEP, house.player.entity);
        house.pass(1.0, rate);
        Course found{senses.getSuspicion(), 0};
        house.player.transform->setPosition(Vec4(3, 0.9f, -11, 1));
        house.pass(3.0, rate);
        found.drained = senses.getSuspicion();
        return found;
    };
    const Course usual = course(60);
    EXPECT_GT(usual.seeing, 0.2f);
    EXPECT_LT(usual.seeing, 0.95f);
    EXPECT_NEAR(usual.drained, usual.seeing - 2.5f * 0.08f, 0.03f);
    for (const int rate : {30, 144})
    {
        const Course other = course(rate);
        EXPECT_NEAR(other.seeing, usual.seeing, 0.04f) << rate;
        EXPECT_NEAR(other.drained, usual.drained, 0.05f) << rate;
    }
}

TEST(Perception, AStepIsHeardByItsWayAroundTheWallAndHardlyThroughAClosedDoor)
{
    const auto heard = [](bool hasDoor, float loudness)
    {
        Haunted house;
        house.divide({3});
        if (hasDoor)
            house.door<DoorPhysics>(3);
        PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, -7, 1));
        senses.setHasEyes(false);
        house.settle();
        house.sound(Vec4(4, 1, 1, 1), loudness);
        house.pass(0.1);
        return senses.getSuspicion();
    };
    EXPECT_GT(heard(false, STEP), 0.1f);
    EXPECT_EQ(heard(true, STEP), 0.f);
    EXPECT_GT(heard(true, 20 * STEP), 0.1f);
    EXPECT_LT(heard(false, STEP), heard(false, 2 * STEP));
    EXPECT_EQ(heard(false, 0.1f * STEP), 0.f);
}

TEST(Perception, NobodyIsAlarmedByItsOwnNoiseNorByOthersOfItsKind)
{
    Haunted house;
    PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, -7, 1), PI);
    PerceptionComponent &other = house.creature(Vec4(6, 0.9f, -7, 1), PI);
    house.pass(0.1);
    house.sound(Vec4(3, 1, -7, 1), STEP, senses.getParent());
    house.sound(Vec4(6, 1, -7, 1), STEP, other.getParent());
    house.sound(Vec4(3.5f, 1, -7, 1), STEP); // a door that it opens
    house.pass(0.1);
    EXPECT_EQ(senses.getSuspicion(), 0.f);
    house.sound(Vec4(3.5f, 1, -7, 1), STEP, house.player.entity);
    house.pass(0.1);
    EXPECT_GT(senses.getSuspicion(), 0.3f) << "who sneaks up is heard";
    EXPECT_TRUE(senses.getHeard());
    senses.forget();
    senses.setHearsCreatures(true);
    house.sound(Vec4(6, 1, -7, 1), STEP, other.getParent());
    house.pass(0.1);
    EXPECT_STREQ(senses.tell().toCString(), "heard \"StepStoneWalk\" 3 m to the east, unsure");
}

TEST(Perception, WhatWasPerceivedGrowsVaguerAndIsForgottenAtLast)
{
    Haunted house;
    PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, 0, 1));
    senses.setMemoryTime(12);
    senses.setMostVagueness(4);
    house.pass(1);
    ASSERT_TRUE(senses.getKnows());
    house.player.transform->setPosition(Vec4(3, 0.9f, -11, 1));
    house.pass(2);
    EXPECT_NEAR(senses.getVagueness(), 0.3f + 0.4f * 2, 0.1f);
    EXPECT_EQ(senses.getPlace(), Vec4(3, 0.9f, 4, 1)) << "it knows no more than it saw";
    EXPECT_EQ(std::string(senses.tell().toCString()).find("remembers the player of 2 s ago, 4 m to the north"), 0u)
        << senses.tell().toCString();
    house.pass(9);
    EXPECT_TRUE(senses.getKnows());
    EXPECT_EQ(senses.getVagueness(), 4.f);
    house.pass(1.5);
    EXPECT_FALSE(senses.getKnows());
    EXPECT_TRUE(senses.tell().empty());
}

TEST(Perception, NothingThatIsNowhereIsPerceivedAndNothingBreaks)
{
    Haunted house;
    PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, 0, 1));
    const Handle<MapRootEntity> elsewhere = house.world.level.map("elsewhere", Vec4(500, 0, 0, 1), Vec4(10, 10, 10, 0));
    TestBox stranger = house.person("stranger", Vec4(3, 0.9f, 3, 1));
    const auto perceives = [&]
    {
        senses.forget();
        house.pass(0.4);
        return senses.getSeen() || senses.getSuspicion() > 0.f;
    };
    senses.setTarget(stranger.entity);
    EXPECT_TRUE(perceives());
    stranger.transform->setPosition(Vec4(NO_NUMBER, 0, 3, 1));
    EXPECT_FALSE(perceives());
    stranger.transform->setPosition(Vec4(3, 0.9f, 3, 1));
    stranger.entity.lookup()->setParent(elsewhere);
    EXPECT_FALSE(perceives()) << "in another map";
    stranger.entity.lookup()->setParent(house.world.map);
    EXPECT_TRUE(perceives());
    senses.setSightRange(0);
    EXPECT_FALSE(perceives());
    senses.setSightRange(18);
    senses.setTarget(handle_cast<Entity>(senses.getParent()));
    EXPECT_FALSE(perceives()) << "itself";
    senses.setTarget(stranger.entity);
    stranger.entity.lookup()->murder();
    house.pass(0.4);
    EXPECT_EQ(senses.getTarget(), house.player.entity) << "the player again";
    house.sound(Vec4(NO_NUMBER, 0, 0, 1), STEP);
    house.sound(Vec4(3, 0, 0, 1), NO_NUMBER);
    house.manager().makeNoise(SCS("Thud"), Vec4(3, 0, 0, 1), -1.f, Handle<Object>());
    EXPECT_TRUE(perceives());
    EXPECT_TRUE(isFinite(senses.getPlace()));

    const float range = senses.getSightRange();
    const std::size_t before = countLogLines("give it");
    senses.setSightRange(NO_NUMBER);
    senses.setSightRange(-1);
    senses.alarm(Vec4(NO_NUMBER, 0, 0, 1), 1);
    EXPECT_EQ(senses.getSightRange(), range);
    EXPECT_EQ(countLogLines("give it"), before + 3);
}

TEST(Perception, LooksAreSpreadOverTheFramesAndTakeNoMemory)
{
    Haunted house;
    std::vector<PerceptionComponent *> crowd;
    for (int i = 0; i < 60; ++i)
        crowd.push_back(&house.creature(Vec4(-6.f + 0.3f * static_cast<float>(i), 0.9f, -10, 1)));
    house.pass(1);
    int most = 0;
    for (int frame = 0; frame < 30; ++frame)
    {
        house.player.transform->setPosition(Vec4(3 + 0.02f * static_cast<float>(frame), 0.9f, 4, 1));
        const int before = house.manager().getSightLines();
        house.pass(1.0 / 64);
        most = std::max(most, house.manager().getSightLines() - before);
    }
    EXPECT_GT(most, 0);
    EXPECT_LE(most, 5 * 60 / 6 + 20) << "a sixth of them look in one frame, at five points";
    const auto step = [&]
    {
        house.player.transform->setPosition(house.player.transform->getPosition() + Vec4(0.02f, 0, 0, 0));
        house.sound(Vec4(3, 1, 0, 1), STEP, house.player.entity);
        house.manager().doFrame();
    };
    heapAllocationsOf(step, 20);
    EXPECT_EQ(heapAllocationsOf(step, 20), 0u);
}

TEST(Perception, ItIsWatchedWhileItStandsInViewOfThePlayerInLight)
{
    Haunted house;
    PerceptionComponent &senses = house.creature(Vec4(3, 0.9f, -5, 1));
    senses.setWatchedLight(0); // nothing is drawn here, and so nothing is lit
    const auto isWatched = [&](float playersYaw)
    {
        house.player.transform->setOrientation(turned(playersYaw));
        house.pass(0.05);
        return senses.getWatched();
    };
    EXPECT_TRUE(isWatched(PI));
    EXPECT_FALSE(isWatched(0));
    senses.setWatchedLight(0.01f);
    EXPECT_FALSE(isWatched(PI));
    senses.setWatchedLight(0);
    house.wall(2, 4, -1, -0.8f);
    EXPECT_FALSE(isWatched(PI));
}

} // namespace
