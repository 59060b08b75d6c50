#include "PhysicsWorld.h"
#include "ScriptedParts.h"
#include "SoundNote.h"

#include "engine/entities/ObjectGroupComponent.h"
#include "object/reflection/PartialFunctionApplication.h"
#include "physics/doors/DoorPhysics.h"
#include "physics/doors/SlidingDoorPhysics.h"
#include "support/TestKeyManager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

typedef ObjectGroupComponent Groups;

/// A trigger with a player inside it.
struct TouchedTrigger
{
    TouchedTrigger()
    {
        trap = world.box(BoundingVolume::BV_WALL, Vec4(0, 1, 0, 1));
        player = world.box(BoundingVolume::BV_PLAYER, Vec4(0.2f, 1, 0, 1));
        player.body->setAcceleration(0, 20, 0);
    }

    template <class T>
    T *part(const Handle<Entity> &entity, const char *key)
    {
        return world.level.component<T>(entity, key).lookup().ptr;
    }
    Handle<Entity> member(Groups::Group group)
    {
        const Handle<Entity> entity = world.level.entity("member", world.map);
        part<Groups>(entity, "objectGroup")->setGroup(group);
        return entity;
    }
    ScriptedPart *light(const Handle<Entity> &entity)
    {
        const Handle<TestKeyManager> manager = construct<TestKeyManager>(defaultAllocationCategory);
        manager.lookup()->setParent(world.level.level);
        manager.lookup()->setKey(SCS("graphics2"));
        return handle_cast<ScriptedPart>(manager.lookup()->addComponentToEntity(ScriptedPart::staticType, entity))
            .lookup()
            .ptr;
    }
    template <class Door>
    Door *door(const Handle<Entity> &entity)
    {
        world.level.transform(entity, Vec4(9, 1, 0, 1));
        part<BoundingVolume>(entity, "boundingVolume")->setVolumeType(BoundingVolume::BV_DOOR);
        Door *const made = part<Door>(entity, "physics");
        made->onLoadComplete();
        return made;
    }
    /// Runs some frames with a function of an object on the trigger, some of its arguments given.
    template <class... Arguments>
    void touch(int frames, Object &object, const char *function, const Arguments &...arguments)
    {
        trap.volume->setTriggerFunc(
            PartialFunctionApplication::construct(object.bind(String::copyFrom(function)), arguments...));
        run(frames);
    }
    void run(int frames)
    {
        for (int i = 0; i < frames; ++i)
            world.level.frame();
    }

    PhysicsWorld world;
    TestBox trap, player;
};

} // namespace

TEST(Scripted, DoorsOfAGroupSlamOnce)
{
    TouchedTrigger scene;
    DoorPhysics *const hinged = scene.door<DoorPhysics>(scene.member(Groups::SLAMMING_DOOR_0));
    SlidingDoorPhysics *const sliding = scene.door<SlidingDoorPhysics>(scene.member(Groups::SLAMMING_DOOR_0));
    SoundNote *const sounds = scene.part<SoundNote>(handle_cast<Entity>(hinged->getParent()), "sound");
    scene.member(Groups::SLAMMING_DOOR_0); // a chair
    hinged->setOpen(true);
    sliding->setOpen(true);
    DoorPhysics *const elsewhere = scene.door<DoorPhysics>(scene.member(Groups::WALL));
    elsewhere->setOpen(true);
    scene.touch(5, *scene.trap.volume, "slamDoors", Groups::SLAMMING_DOOR_0);
    scene.trap.volume->setTrigger(false);
    EXPECT_FALSE(hinged->getOpen());
    EXPECT_FALSE(sliding->getOpen());
    EXPECT_TRUE(elsewhere->getOpen()) << "of another group";
    EXPECT_EQ(sounds->sounds.size(), 1u) << "not in every frame";
    scene.run(25);
    EXPECT_EQ(hinged->getPrevAngle(), 0.f) << "shut with a bang, in half a second";
    hinged->setOpen(true);
    hinged->closeDoor(Handle<Object>());
    scene.run(25);
    EXPECT_GT(hinged->getPrevAngle(), 0.5f) << "and gently the next time";
    EXPECT_EQ(countLogLines("is in the group and has no DoorPhysics or SlidingDoorPhysics"), 1u) << "the chair, once";
    EXPECT_TRUE(scene.trap.volume->getTriggerFunc());
}

TEST(Scripted, LightsPulseWhileThePlayerTouchesTheTriggerAndEndAtFullStrength)
{
    TouchedTrigger scene;
    ScriptedPart *const light = scene.light(scene.member(Groups::PULSING_LIGHT));
    const Vec4 full = light->getDiffuseColor();
    scene.touch(0, *scene.trap.volume, "pulseLights", Groups::PULSING_LIGHT, 4.f);
    std::vector<float> strengths;
    for (int i = 0; i < 64; ++i) // a second
    {
        scene.run(1);
        strengths.push_back(light->getDiffuseColor().x);
    }
    EXPECT_LT(*std::min_element(strengths.begin(), strengths.end()), 0.05f);
    EXPECT_GT(*std::max_element(strengths.begin() + 8, strengths.end()), 1.95f);
    int dark = 0;
    for (std::size_t i = 1; i < strengths.size(); ++i)
        dark += strengths[i] < 1 && strengths[i - 1] >= 1;
    EXPECT_EQ(dark, 4) << "beats a second";
    scene.player.transform->setPosition(Vec4(6, 1, 6, 1));
    scene.run(32);
    EXPECT_EQ(light->getDiffuseColor(), full);
    scene.run(8);
    EXPECT_EQ(light->getDiffuseColor(), full) << "and it stays";
    scene.trap.volume->pulseLights(Groups::PULSING_LIGHT, 1);
    scene.run(20);
    EXPECT_LT(light->getDiffuseColor().x, 1.f);
    scene.trap.volume->pulseLights(Groups::PULSING_LIGHT, 0);
    EXPECT_EQ(light->getDiffuseColor(), full);
}

TEST(Scripted, FollowersAndSpawnersAreReachedByNameAndWhatIsNoneIsNamedOnce)
{
    TouchedTrigger scene;
    ScriptedPart *const mannequin = scene.part<ScriptedPart>(scene.member(Groups::PLAYER_FOLLOW), "behaviors");
    scene.member(Groups::PLAYER_FOLLOW); // a statue
    scene.touch(3, *scene.trap.volume, "followPlayer", Groups::PLAYER_FOLLOW);
    EXPECT_EQ(mannequin->followed, 3);
    EXPECT_EQ(countLogLines("is in the group and has no followPlayer under \"behaviors\""), 1u);

    scene.touch(3, *scene.trap.body, "useObjectSpawner");
    EXPECT_EQ(countLogLines("there is no ObjectSpawner under \"trigger\" beside it"), 1u);
    ScriptedPart *const spawner = scene.part<ScriptedPart>(scene.trap.entity, "trigger");
    scene.run(1);
    EXPECT_EQ(spawner->spawnedFor, getHandle(scene.player.body));
}

TEST(Scripted, LightSwitchTogglesItsLightAndCountsItsUses)
{
    TouchedTrigger scene;
    ScriptedPart *const counter = scene.part<ScriptedPart>(scene.trap.entity, "interactCounter");
    scene.trap.volume->setInteractFunc(scene.trap.volume->bind(SCS("lightSwitchInteract")));
    scene.trap.volume->interactWithPlayer(getHandle(scene.player.body));
    scene.trap.volume->interactWithPlayer(getHandle(scene.player.body));
    EXPECT_EQ(countLogLines("there is no light at \"lightSwitchLight/graphics2\" below it"), 1u);
    const Handle<Entity> lamp = scene.world.level.entity("lightSwitchLight", scene.trap.entity);
    ScriptedPart *const light = scene.light(lamp);
    for (const bool lit : {false, true, false})
    {
        scene.trap.volume->interactWithPlayer(getHandle(scene.player.body));
        EXPECT_EQ(light->getVisible(), lit);
    }
    EXPECT_EQ(counter->interactCounter, 5);
}

TEST(Scripted, TriggerBelowADoorOpensAndClosesIt)
{
    TouchedTrigger scene;
    const Handle<Entity> doorway = scene.world.level.entity("doorway", scene.world.map);
    DoorPhysics *const door = scene.door<DoorPhysics>(doorway);
    scene.trap.volume->openParentDoor(getHandle(scene.player.body), scene.trap.entity);
    scene.trap.volume->openParentDoor(getHandle(scene.player.body), scene.trap.entity);
    EXPECT_EQ(countLogLines("is no door. Hang the trigger's entity below the door's"), 1u);

    const Handle<Entity> mat = scene.world.level.entity("mat", doorway);
    BoundingVolume &volume = *scene.part<BoundingVolume>(mat, "boundingVolume");
    PhysicsComponent &body = *scene.part<RigidBody>(mat, "physics");
    volume.openParentDoor(getHandle(scene.player.body), mat);
    EXPECT_TRUE(door->getOpen());
    volume.closeParentDoor(mat, getHandle(scene.player.body));
    EXPECT_FALSE(door->getOpen()) << "in either order";
    scene.touch(1, body, "openParentDoor");
    EXPECT_TRUE(door->getOpen());
    scene.touch(1, body, "closeParentDoor");
    EXPECT_FALSE(door->getOpen());
    volume.setInteractFunc(volume.bind(SCS("openParentDoor")));
    volume.interactWithPlayer(getHandle(scene.player.body));
    EXPECT_TRUE(door->getOpen()) << "by the player's hand";
    door->setOpen(false);

    SoundNote *const sounds = scene.part<SoundNote>(doorway, "sound");
    DoorPhysics *const other = scene.door<DoorPhysics>(scene.world.level.entity("other", scene.world.map));
    PhysicsComponent &otherMat =
        *scene.part<RigidBody>(scene.world.level.entity("mat", handle_cast<Entity>(other->getParent())), "physics");
    SoundNote *const otherSounds = scene.part<SoundNote>(handle_cast<Entity>(other->getParent()), "sound");
    door->setLocked(true);
    other->setLocked(true);
    scene.trap.volume->setTrigger(false);
    const std::vector<std::string> once = {"DoorLocked"};
    for (int frame = 0; frame < 5; ++frame) // on two mats of one door, and on one of another
    {
        for (PhysicsComponent *const touched : {&body, &body, &otherMat})
            touched->openParentDoor(getHandle(scene.player.body));
        scene.run(1);
    }
    EXPECT_EQ(sounds->sounds, once) << "once a touch";
    EXPECT_EQ(otherSounds->sounds, once);
}

TEST(Scripted, SoundsAndCreditsComeOnceForATouch)
{
    TouchedTrigger scene;
    SoundNote *const sounds = scene.part<SoundNote>(scene.trap.entity, "sound");
    scene.trap.entity.lookup()->setName(SCS("Creak"));
    scene.touch(4, *scene.trap.body, "playSound");
    EXPECT_EQ(sounds->sounds, std::vector<std::string>{"Creak"});
    EXPECT_TRUE(scene.trap.volume->getTrigger()) << "it goes on letting the player through";
    scene.touch(4, *scene.trap.body, "hitCreditsTrigger");
    EXPECT_EQ(countLogLines("there is no level Credits"), 1u);
}
