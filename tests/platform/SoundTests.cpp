#include "platform/RecordingAudio.h"
#include "support/AllocationCount.h"
#include "support/TestLevel.h"

#include "platform/sound/BodySounds.h"
#include "platform/sound/SoundSystem.h"
#include "platform/sound/SoundTrigger.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "physics/bodies/RigidBody.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <optional>

using testing::Contains;
using testing::ElementsAre;

namespace
{
constexpr float NOT_A_NUMBER = std::numeric_limits<float>::quiet_NaN();

/// A level over an audio library that notes what it is asked for.
class Sound : public testing::Test
{
protected:
    Sound()
    {
        getSystemDeref<SoundSystem>();
        manager = handle_cast<SoundManager>(world->coordinator().getManager(SCS("sound")));
    }

    SoundSystem &system() { return getSystemDeref<SoundSystem>(); }
    SoundManager &sounds() { return *manager.lookup(); }

    /// An entity with a place and a sound component.
    SoundComponent &thing(const char *name, Vec4 at = Vec4(0, 0, 0, 1))
    {
        const Handle<Entity> entity = world->entity(name);
        world->transform(entity, at);
        return *world->component<SoundComponent>(entity, "sound").lookup();
    }
    /// What was done to an event since the last time.
    std::string deeds(const char *name) { return std::exchange(audio.event(name).deeds, {}); }
    static Handle<Entity> entityOf(SoundComponent &component) { return handle_cast<Entity>(component.getParent()); }
    TransformComponent &transformOf(SoundComponent &component)
    {
        return *handle_cast<TransformComponent>(component.getSibling(SCS("transform"))).lookup();
    }

    RecordingAudio audio;
    std::optional<TestLevel> world{std::in_place};
    Handle<SoundManager> manager;
};
} // namespace

TEST_F(Sound, StartsAndEndsTheLibraryInItsOrder)
{
    EXPECT_THAT(audio.calls,
                ElementsAre("FMOD_EventSystem_Create", "getSystemObject", "getDriverCaps 0", "setSpeakerMode 5",
                            "init 64 26", "set3DSettings 0 1 0", "setMediaPath ..\\assets\\sound\\fmod\\",
                            "load kaVel.fev", "getGroup kaVel/sfx", "getGroup kaVel/music", "createDSPByType low-pass",
                            "DSP::setParameter 0 1000", "DSP::setBypass", "addDSP"));
    EXPECT_FLOAT_EQ(system().getSoundEffectVolume(), 0.9f);
    EXPECT_FLOAT_EQ(system().getMusicVolume(), 0.9f);
    audio.calls.clear();
    world.reset();
    EXPECT_THAT(audio.calls, ElementsAre("Project::release", "unload", "EventSystem::release", "System::release"));
}

TEST(SoundWithoutProject, IsSilentAndTellsItOnceWhateverIsAskedFor)
{
    RecordingAudio audio;
    audio.hasProject = audio.hasGroups = false;
    TestLevel world;
    const Handle<SoundComponent> sound = world.component<SoundComponent>(world.entity("bell"), "sound");
    const std::size_t told = countLogLines("The game is silent"), lines = countLogLines("pEvent value: ");
    sound.lookup()->addSoundEffect(SCS("Ring"));
    sound.lookup()->addMusic(SCS("Carol"));
    sound.lookup()->playSoundEffect(SCS("Ring"));
    sound.lookup()->setParam(SCS("Ring"), SCS("distance"), 1);
    sound.lookup()->pauseAllSound();
    sound.lookup()->stopAllSound();
    getSystemDeref<SoundSystem>().setMusicVolume(0.5f);
    world.frame();
    EXPECT_EQ(countLogLines("pEvent value: "), lines + 1);
    EXPECT_EQ(countLogLines("The game is silent"), told);
    sound.lookup()->getParent().lookup()->murder();
    world.frame();
}

TEST_F(Sound, HearsWithThePlayersEarsAndElseStaysWhereItWas)
{
    const Handle<Entity> player = world->entity("Player");
    const auto transform = world->transform(player, Vec4(1, 2, 3, 1)).lookup();
    world->component<RigidBody>(player, "physics").lookup()->setVelocity(Vec4(0, 0, 5, 0));
    transform->setOrientation(Quaternion(std::sqrt(0.5f), 0, std::sqrt(0.5f), 0)); // a quarter turn to the right
    sounds().doFrame();
    EXPECT_EQ(sounds().getGlobalListener().directionVector, Vec4(1, 0, 0, 0));
    EXPECT_EQ(sounds().getGlobalListener().velocity, Vec4(0, 0, 5, 0));
    EXPECT_FLOAT_EQ(audio.listener.z, 3);
    EXPECT_NEAR(audio.forward.x, 1, 1e-6);
    EXPECT_NEAR(audio.up.y, 1, 1e-6);
    EXPECT_EQ(sounds().getGlobalListener().seen(Vec4(1, 2, 1, 1)), Vec4(2, 0, 0, 0)) << "south is to the right";

    transform->setPosition(Vec4(NOT_A_NUMBER, 0, 0, 1));
    sounds().doFrame();
    EXPECT_FLOAT_EQ(audio.listener.x, 1);
}

TEST_F(Sound, EventsFollowTheirEntityAndKnowTheirDistance)
{
    SoundComponent &crate = thing("crate", Vec4(3, 0, 4, 1));
    world->component<RigidBody>(entityOf(crate), "physics").lookup()->setVelocity(Vec4(1, 0, 0, 0));
    crate.addSoundEffect(SCS("Scrape"));
    crate.addMusic(SCS("Organ"));
    sounds().doFrame();
    EXPECT_FLOAT_EQ(audio.event("Scrape").distance.value, 5);
    EXPECT_FLOAT_EQ(audio.event("Scrape").velocity.x, 1);
    EXPECT_FLOAT_EQ(audio.event("Organ").position.z, 4);

    transformOf(crate).setPosition(Vec4(NOT_A_NUMBER, 0, 0, 1));
    sounds().doFrame();
    EXPECT_FLOAT_EQ(audio.event("Scrape").position.x, 3) << "what is at no place stays where it was";

    crate.placeEvent(SCS("Scrape"), Vec4(0, 0, 2, 1));
    transformOf(crate).setPosition(Vec4(9, 0, 0, 1));
    sounds().doFrame();
    EXPECT_FLOAT_EQ(audio.event("Scrape").distance.value, 2);
    EXPECT_FLOAT_EQ(audio.event("Organ").position.x, 9);
    crate.unplaceEvent(SCS("Scrape"));
    sounds().doFrame();
    EXPECT_FLOAT_EQ(audio.event("Scrape").distance.value, 9);
}

TEST_F(Sound, PlayingWhatIsPausedBeginsAnew)
{
    SoundComponent &bell = thing("bell");
    bell.addSoundEffect(SCS("Ring"));
    bell.playSoundEffect(SCS("Ring"));
    bell.playSoundEffect(SCS("Gong")); // was not added
    EXPECT_EQ(deeds("Ring"), "start ");
    bell.pauseSoundEffect(SCS("Ring"));
    bell.unpauseSoundEffect(SCS("Ring"));
    EXPECT_EQ(deeds("Ring"), "pause unpause ");
    bell.pauseAllSoundEffects();
    bell.playSoundEffect(SCS("Ring"));
    EXPECT_EQ(deeds("Ring"), "pause stop unpause start ");
    bell.stopMusic(SCS("Ring")); // is no music
    EXPECT_EQ(deeds("Ring"), "");
    bell.stopSoundEffect(SCS("Ring"));
    EXPECT_EQ(deeds("Ring"), "stop ");
}

TEST_F(Sound, ParametersOfEffectsAndOfMusicAreSetApart)
{
    SoundComponent &runner = thing("runner");
    runner.addSoundEffect(SCS("Sprint"));
    runner.addMusic(SCS("March"));
    const String fatigue = SCS("fatigue");
    runner.setParam(SCS("Sprint"), fatigue, 0.75f);
    runner.setParam(SCS("March"), fatigue, 0.75f);
    runner.setParam(SCS("Sprint"), SCS("hunger"), 1);
    runner.setParam(SCS("Walk"), fatigue, 1);
    EXPECT_FLOAT_EQ(audio.event("Sprint").fatigue.value, 0.75f);
    EXPECT_FLOAT_EQ(audio.event("March").fatigue.value, -1);
    runner.setMusicParam(SCS("March"), fatigue, 0.5f);
    runner.setMusicParam(SCS("Sprint"), fatigue, 0.5f);
    EXPECT_FLOAT_EQ(audio.event("March").fatigue.value, 0.5f);
    EXPECT_FLOAT_EQ(audio.event("Sprint").fatigue.value, 0.75f);
    EXPECT_FLOAT_EQ(runner.getParamRange(SCS("Sprint"), fatigue).most, 40);
    EXPECT_FLOAT_EQ(runner.getParamRange(SCS("Sprint"), SCS("hunger")).most, 0);
}

TEST_F(Sound, VolumesOfPlayerLevelComponentAndEventMultiply)
{
    SoundComponent &bell = thing("bell");
    bell.addSoundEffect(SCS("Ring"));
    bell.addMusic(SCS("Carol"));
    EXPECT_FLOAT_EQ(audio.event("Ring").volume, 0.9f) << "what is added late is as loud as the rest";
    system().setSoundEffectVolume(0.5f);
    bell.setEventVolume(SCS("Ring"), 0.5f);
    EXPECT_FLOAT_EQ(audio.event("Ring").volume, 0.25f);
    EXPECT_FLOAT_EQ(audio.event("Carol").volume, 0.9f);

    const std::size_t told = countLogLines("lies in 0..1");
    bell.setMusicVolume(7);
    bell.setEventVolume(SCS("Ring"), NOT_A_NUMBER);
    EXPECT_FLOAT_EQ(audio.event("Carol").volume, 0.9f);
    EXPECT_FLOAT_EQ(audio.event("Ring").volume, 0.25f);
    EXPECT_EQ(countLogLines("lies in 0..1"), told + 2);
}

TEST_F(Sound, SilenceOutlastsNewVolumesAndEndsWithThem)
{
    SoundComponent &bell = thing("bell");
    bell.addSoundEffect(SCS("Ring"));
    sounds().setSilenced(true);
    system().setSoundEffectVolume(0.5f);
    EXPECT_FLOAT_EQ(audio.event("Ring").volume, 0);
    bell.addSoundEffect(SCS("Gong"));
    EXPECT_FLOAT_EQ(audio.event("Gong").volume, 0);
    system().setSilent(true); // another window comes in front
    sounds().setSilenced(false);
    EXPECT_FLOAT_EQ(audio.event("Ring").volume, 0);
    system().setSilent(false);
    EXPECT_FLOAT_EQ(audio.event("Ring").volume, 0.5f);
}

TEST_F(Sound, AStoppedLevelHoldsItsEffectsAndNothingElse)
{
    SoundComponent &bell = thing("bell");
    for (const char *name : {"Ring", "Hum", "Click"})
        bell.addSoundEffect(SCS(name));
    bell.addMusic(SCS("Carol"));
    bell.pauseSoundEffect(SCS("Hum"));
    world->coordinator().setLoopState(Coordinator::LOOP_STOP);
    world->frame();
    EXPECT_TRUE(audio.event("Ring").paused);
    EXPECT_FALSE(audio.event("Carol").paused);
    bell.playSoundEffect(SCS("Click"));
    EXPECT_FALSE(audio.event("Click").paused) << "what is played meanwhile is meant to be heard";
    world->coordinator().setLoopState(Coordinator::LOOP_RUN);
    world->frame();
    EXPECT_FALSE(audio.event("Ring").paused);
    EXPECT_TRUE(audio.event("Hum").paused) << "its owner has paused it";
}

TEST_F(Sound, OneShotOfTheDeadPlaysToItsEndWhereItWas)
{
    SoundComponent &cup = thing("cup", Vec4(0, 0, 7, 1));
    cup.addSoundEffect(SCS("Break"));
    cup.addSoundEffect(SCS("Roll"));
    cup.playSoundEffect(SCS("Break"));
    world->frame();
    cup.getParent().lookup()->murder();
    world->frame();
    EXPECT_TRUE(audio.event("Roll").released);
    EXPECT_EQ(deeds("Break"), "start ");
    audio.event("Break").distance.value = 0;
    world->frame();
    EXPECT_FLOAT_EQ(audio.event("Break").distance.value, 7);
    audio.event("Break").playing = false;
    world->frame();
    EXPECT_TRUE(audio.event("Break").released);
}

TEST_F(Sound, AllFadesWhereTheLevelEndsAndIsGivenBackAfterwards)
{
    SoundComponent &bell = thing("bell");
    bell.addSoundEffect(SCS("Ring"));
    bell.addMusic(SCS("Carol"));
    bell.playSoundEffect(SCS("Ring"));
    bell.playMusic(SCS("Carol"));
    world->coordinator().murder();
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(world->anotherCoordinator());
    world->frame();
    EXPECT_EQ(deeds("Carol"), "start stop ");
    EXPECT_EQ(deeds("Ring"), "start stop ");
    audio.event("Carol").playing = audio.event("Ring").playing = false;
    audio.calls.clear();
    world->frame();
    EXPECT_EQ(deeds("Carol"), "release ");
    EXPECT_EQ(deeds("Ring"), "release ");
    EXPECT_THAT(audio.calls, ElementsAre("update")) << "also in a level without sounds";
}

TEST_F(Sound, TheLowPassOfALevelEndsWithIt)
{
    audio.calls.clear();
    sounds().setMuffledCutoff(400);
    sounds().setMuffled(true);
    sounds().setMuffledCutoff(NOT_A_NUMBER);
    EXPECT_THAT(audio.calls, ElementsAre("DSP::setParameter 0 400", "DSP takes part"));
    world->coordinator().murder();
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(world->anotherCoordinator());
    world->frame();
    EXPECT_THAT(audio.calls, Contains("DSP::setBypass"));
}

TEST_F(Sound, TriggerPlaysWithWhoFiredItOrAtAPlaceOfItsOwn)
{
    SoundComponent &stair = thing("stair");
    SoundComponent &guest = thing("guest", Vec4(5, 0, 0, 1));
    const auto fired = world->component<RigidBody>(entityOf(guest), "physics");
    const auto mute = world->component<RigidBody>(world->entity("mute"), "physics");
    const Handle<SoundTrigger> creak = construct<SoundTrigger>(defaultAllocationCategory);
    creak.lookup()->setParent(stair.getParent());
    creak.lookup()->setSound(SCS("Creak"));

    creak.lookup()->playSound(fired);
    world->frame();
    EXPECT_TRUE(guest.isPlaying(SCS("Creak")));
    EXPECT_FLOAT_EQ(audio.event("Creak").position.x, 5);
    EXPECT_FALSE(stair.hasSoundEffect(SCS("Creak")));
    creak.lookup()->setPosition(Vec4(0, 0, 3, 1));
    creak.lookup()->setPositional(true);
    creak.lookup()->playSound(fired);
    world->frame();
    EXPECT_FLOAT_EQ(audio.event("Creak").position.z, 3);
    creak.lookup()->stopSound(fired);
    EXPECT_EQ(deeds("Creak"), "start start stop ");

    creak.lookup()->playSound(mute);
    EXPECT_TRUE(stair.isPlaying(SCS("Creak"))) << "who has no sounds leaves it to what the trigger hangs under";
    creak.lookup()->setSfx(false);
    creak.lookup()->playSound(mute);
    EXPECT_TRUE(stair.hasMusic(SCS("Creak")));
}

TEST_F(Sound, TheHardestContactsAreHeardAndNoMoreThanThereAreVoices)
{
    const Handle<Entity> cellar = world->entity("cellar");
    BodySounds &bodies = *world->component<BodySounds>(cellar, "sound").lookup();
    bodies.setVoices(2);
    std::vector<RigidBody *> crates;
    for (int i = 0; i < 4; ++i)
    {
        const Handle<Entity> crate = world->entity("crate");
        world->transform(crate, Vec4(float(i), 0, 0, 1));
        crates.push_back(world->component<RigidBody>(crate, "physics").lookup().ptr);
        crates.back()->setTransformComponent();
        crates.back()->setVelocity(Vec4(0, -1 - float(i), 0, 0));
        bodies.addBody(getHandle(crates.back()), SCS("Knock"), SCS("Scrape"));
    }
    EXPECT_EQ(audio.events.size(), 4u) << "two of each event, however many bodies there are";
    sounds().doFrame();
    EXPECT_FALSE(bodies.isPlaying(SCS("Knock 1")));
    for (RigidBody *const crate : crates)
        crate->setVelocity(Vec4());
    sounds().doFrame();
    EXPECT_FLOAT_EQ(audio.events[0].speed.value, 4);
    EXPECT_FLOAT_EQ(audio.events[0].position.x, 3);
    EXPECT_FLOAT_EQ(audio.events[1].speed.value, 3);

    // One slides over the ground, which takes what its weight gives it; another one falls as fast.
    crates[0]->setAccLastFrame(Vec4(0, -0.2f, 0, 0));
    crates[0]->setVelocity(Vec4(1.5f, 0, 0, 0));
    crates[1]->setVelocity(Vec4(1.5f, -3, 0, 0));
    sounds().doFrame();
    sounds().doFrame();
    EXPECT_EQ(audio.events[2].deeds, "start ");
    EXPECT_FLOAT_EQ(audio.events[2].speed.value, 1.5f);
    EXPECT_EQ(audio.events[3].deeds, "");
    crates[0]->getParent().lookup()->murder();
    world->frame();
    world->frame();
    EXPECT_EQ(audio.events[2].deeds, "start stop ");
    EXPECT_EQ(bodies.getBodyCount(), 3);
}

TEST_F(Sound, WhatALevelHasChangedEndsBeforeTheNextOneBegins)
{
    sounds().setMuffled(true);
    world->coordinator().murder();
    const Handle<Coordinator> next = world->anotherCoordinator();
    audio.calls.clear();
    handle_cast<SoundManager>(next.lookup()->getManager(SCS("sound"))).lookup()->setMuffled(true);
    getSystemDeref<GameLoopSystem>().setCurrentlyActiveCoordinator(next);
    world->frame();
    EXPECT_THAT(audio.calls, ElementsAre("DSP::setParameter 0 1000", "DSP::setBypass", "DSP::setParameter 0 1000",
                                         "DSP takes part", "update"));
}

TEST(SoundOfTheGame, AFrameOfPlayingSoundsAllocatesNothing)
{
    port::AudioOutput memory;
    memory.kind = port::AudioOutput::MEMORY;
    port::setAudioOutput(memory);
    {
        TestLevel world;
        const Handle<Entity> crate = world.entity("crate");
        world.transform(crate, Vec4(0, 0, 2, 1));
        const Handle<SoundComponent> sound = world.component<SoundComponent>(crate, "sound");
        for (const String &name : {SCS("ScrapeWood"), SCS("DoorCreak"), SCS("DoorSlide")})
        {
            sound.lookup()->addSoundEffect(name);
            sound.lookup()->playSoundEffect(name);
        }
        SoundManager &sounds = *handle_cast<SoundManager>(sound.lookup()->getManager()).lookup();
        for (int i = 0; i < 3; ++i)
            sounds.doFrame();
        EXPECT_EQ(getSystemDeref<SoundSystem>().getPlayingCount(), 3);
        EXPECT_EQ(allocationsOf([&] { sounds.doFrame(); }, 20), 0u);
    }
    port::setAudioOutput(port::AudioOutput());
}

TEST_F(Sound, DoorsAskTheComponentBesideThem)
{
    SoundComponent &door = thing("door");
    const auto body = world->component<RigidBody>(entityOf(door), "physics");
    door.addSoundEffect(SCS("DoorOpen"));
    requestSound(*body.lookup(), SCS("DoorOpen"));
    EXPECT_EQ(deeds("DoorOpen"), "start ");
    requestSound(*body.lookup(), SCS("DoorLocked"));
    EXPECT_GT(countLogLines("door asks for the sound \"DoorLocked\"; the sound component beside it has no such sound"),
              0u);
}
