#include "object/tree/Obituaries.h"

#include "object/tree/Object.h"
#include "support/Probe.h"

#include <gtest/gtest.h>

namespace
{
Handle<Object> make(const char *name, Handle<Object> parent = Handle<Object>())
{
    const Handle<Object> made = construct<Probe>(defaultAllocationCategory);
    made.lookup()->setName(SCS(name));
    made.lookup()->setParent(parent);
    return made;
}
} // namespace

TEST(Obituaries, TellWhatWasGoneWithWhomAndWhen)
{
    const Handle<Object> house = make("house");
    const Handle<Object> room = make("room", house);
    const Handle<Object> chair = make("chair", room);
    const Handle<Object> leg = make("leg", chair);
    Obituaries::setFrame(7);
    room.lookup()->murder();
    EXPECT_EQ(Obituaries::of(chair), String()) << "still there";
    cremateDeadObjects();
    EXPECT_EQ(
        Obituaries::of(leg),
        SCS("It was the Probe house/room/chair/leg, gone in frame 7, when house/room was murdered by the engine"));
    EXPECT_EQ(Obituaries::of(room),
              SCS("It was the Probe house/room, gone in frame 7, when it was murdered by the engine"));
    EXPECT_EQ(Obituaries::of(Handle<Object>()), String());

    const Handle<Object> guest = make("guest", house);
    Obituaries::setFrame(8);
    house.lookup()->omnifilicide();
    cremateDeadObjects();
    EXPECT_EQ(Obituaries::of(guest),
              SCS("It was the Probe house/guest, gone in frame 8, when all below house was murdered by the engine"));
    house.lookup()->murder();
    cremateDeadObjects();
}

TEST(Obituaries, OldestAreForgotten)
{
    const Handle<Object> first = make("first");
    first.lookup()->murder();
    cremateDeadObjects();
    for (std::uint32_t i = 1; i < Obituaries::CAPACITY; ++i)
        make("other").lookup()->murder();
    cremateDeadObjects();
    EXPECT_NE(Obituaries::of(first), String());
    make("last").lookup()->murder();
    cremateDeadObjects();
    EXPECT_EQ(Obituaries::of(first), String());
}
