#include "PhysicsWorld.h"

#include "physics/acoustics/ReverbManager.h"
#include "physics/acoustics/ReverbVolume.h"

#include "engine/entities/ComponentOf.h"
#include "support/AllocationCount.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <string_view>

namespace
{
struct Rooms
{
    ReverbVolume &room(Vec4 place, Vec4 size, const char *preset)
    {
        const Handle<Entity> entity = world.level.entity("room", world.map);
        world.level.transform(entity, place);
        ReverbVolume &volume = *world.level.component<ReverbVolume>(entity, "reverb").lookup();
        volume.setSize(size);
        volume.setPreset(String::copyFrom(preset));
        return volume;
    }
    ReverbManager &manager()
    {
        return *handle_cast<ReverbManager>(world.level.level.lookup()->getManager(SCS("reverb"))).lookup();
    }
    /// The zones at a place as a text: the stronger one, the other one, and the percentage of that.
    std::string at(float x, float z)
    {
        const ReverbShare share = manager().zonesAt(Vec4(x, 1, z, 1), world.map);
        return std::string(share.first->name) + " " + share.second->name + " " +
               std::to_string(static_cast<int>(std::lround(share.share * 100.f)));
    }

    PhysicsWorld world;
};
} // namespace

TEST(Reverb, TheSmallerRoomComesFirstAndSharesWithWhatIsAroundItNearItsFaces)
{
    Rooms rooms;
    rooms.room(Vec4(0, 1, 0, 1), Vec4(20, 6, 20, 0), "hall").setFade(2.f);
    ReverbVolume &cupboard = rooms.room(Vec4(4, 1, 0, 1), Vec4(4, 3, 2, 0), "smallRoom");
    cupboard.setFade(0.5f);
    EXPECT_EQ(rooms.at(-4, 0), "hall hall 0");
    EXPECT_EQ(rooms.at(4, 0), "smallRoom smallRoom 0");
    EXPECT_EQ(rooms.at(5.8f, 0), "hall smallRoom 40") << "0.2 m inside of the cupboard";
    EXPECT_EQ(rooms.at(-9.5f, 0), "outdoors hall 25") << "0.5 m inside of the hall";
    EXPECT_EQ(rooms.at(30, 0), "outdoors outdoors 0");
    EXPECT_EQ(rooms.at(NAN, 0), "outdoors outdoors 0");
    rooms.manager().setSurroundings(SCS("cellar"));
    EXPECT_EQ(rooms.at(30, 0), "cellar cellar 0");

    componentOf<TransformComponent>(cupboard.getParent(), SCS("transform"))
        ->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 1.5707964f));
    EXPECT_EQ(rooms.at(5.8f, 0), "hall hall 0") << "the cupboard has turned";
    EXPECT_EQ(rooms.at(4, 1.4f), "smallRoom smallRoom 0");
    EXPECT_EQ(allocationsOf([&] { rooms.manager().zonesAt(Vec4(4, 1, 1.4f, 1), rooms.world.map); }), 0u);

    const Handle<MapRootEntity> other = rooms.world.level.map("other", Vec4(0, 0, 0, 1), Vec4(9, 9, 9, 0));
    EXPECT_STREQ(rooms.manager().zonesAt(Vec4(4, 1, 0, 1), other).first->name, "cellar") << "of another map";
    cupboard.getParent().lookup()->murder();
    EXPECT_EQ(rooms.at(4, 1.4f), "hall hall 0");
}

TEST(Reverb, SharesGoOverSmoothlyAlongAWalk)
{
    Rooms rooms;
    rooms.room(Vec4(-4, 1, 0, 1), Vec4(8, 4, 8, 0), "cellar");
    rooms.room(Vec4(4, 1, 0, 1), Vec4(8, 4, 8, 0), "hall");
    float last = NAN;
    for (float x = -6; x < 6; x += 0.05f)
    {
        const ReverbShare share = rooms.manager().zonesAt(Vec4(x, 1, 0, 1), rooms.world.map);
        const auto part = [&](const char *name)
        {
            return (share.first->name == std::string_view(name) ? 1.f - share.share : 0.f) +
                   (share.second->name == std::string_view(name) && share.share > 0.f ? share.share : 0.f);
        };
        const float outdoors = part("outdoors");
        EXPECT_FALSE(std::fabs(outdoors - last) > 0.08f) << x;
        last = outdoors;
    }
}

TEST(Reverb, WhatMeansNothingIsToldAndNotTaken)
{
    Rooms rooms;
    ReverbVolume &room = rooms.room(Vec4(0, 1, 0, 1), Vec4(4, 3, 4, 0), "hall");
    const std::size_t told = countLogLines("there are none, smallRoom, woodRoom, hall");
    room.setPreset(SCS("bathroom"));
    rooms.manager().setSurroundings(SCS("moon"));
    EXPECT_EQ(countLogLines("there are none, smallRoom, woodRoom, hall"), told + 2);
    room.setSize(Vec4(-1, 3, 4, 0));
    room.setSize(Vec4(NAN, 3, 4, 0));
    room.setFade(-1.f);
    EXPECT_EQ(room.getPreset(), SCS("hall"));
    EXPECT_EQ(room.getSize(), Vec4(4, 3, 4, 0));
    EXPECT_FLOAT_EQ(room.getFade(), 0.7f);
    room.setFade(0.f);
    EXPECT_EQ(rooms.at(1.99f, 0), "hall hall 0") << "without a fade it is whole at once";
}
