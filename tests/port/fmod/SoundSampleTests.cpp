#include "port/fmod/SoundWorld.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <iterator>

namespace
{

/// One event of one sample, with a place in the world.
std::string eventOf(const std::string &name, const std::string &more = "")
{
    return "event " + name + "\n layer a\n sample " + name + "\n" + more + " parameter distance 0 10\n";
}

std::string bytesOf(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace

TEST(SoundSamples, WhatCannotBePlayedIsToldOnceWithItsLineAndStaysSilent)
{
    SoundWorld world;
    world.tone("fast.wav", 441, 0.1, 1, 0.5F, 400000);
    world.tone("slow.wav", 441, 0.1, 1, 0.5F, 4000);
    world.tone("six.wav", 441, 0.1, 6);
    world.sound("empty.wav", {});
    world.file("words.ogg", "This is no sound.");
    std::filesystem::create_directory(world.path("folder.ogg"));
    const struct
    {
        const char *file, *told;
    } cases[] = {{"fast.wav", "its rate of 400000 Hz"},
                 {"slow.wav", "its rate of 4000 Hz"},
                 {"six.wav", "it has 6 channels"},
                 {"empty.wav", "it has no length"},
                 {"words.ogg", "it is no Ogg, WAV or FLAC file"},
                 {"folder.ogg", "is no file"},
                 {"gone.ogg", "test.fev:22: "}};
    std::string text = "group sfx\n";
    for (const auto &each : cases)
        text += eventOf(each.file, each.file == std::string("empty.wav") ? " mode loop\n" : "");
    world.load(text);
    for (int round = 0; round < 2; ++round)
        for (const auto &each : cases)
        {
            FMOD::Event &event = world.play(each.file);
            EXPECT_EQ(world.render(0.1).level(), 0) << each.file;
            EXPECT_FALSE(SoundWorld::plays(event)) << each.file;
        }
    for (const auto &each : cases)
        EXPECT_EQ(world.told(each.told), 1) << each.told;
    EXPECT_EQ(world.notices.size(), std::size(cases));
}

TEST(SoundSamples, AMissingSampleLeavesTheOthersOfItsLayer)
{
    SoundWorld world;
    world.tone("there.wav", 441, 0.2);
    world.load("group sfx\nevent Step\n layer a\n sample Tehre.wav\n sample there.wav\n");
    EXPECT_EQ(world.told("test.fev:5: "), 1);
    for (int i = 0; i < 5; ++i)
    {
        world.play("Step");
        EXPECT_GT(world.render(0.3).at(441), 0.1F);
    }
}

TEST(SoundSamples, ATruncatedFilePlaysWhatIsThere)
{
    SoundWorld world;
    world.tone("whole.ogg", 441, 20);
    world.tone("whole.wav", 441, 2);
    for (const std::string kind : {"ogg", "wav"})
    {
        const std::string bytes = bytesOf(world.path("whole." + kind));
        world.file("cut." + kind, bytes.substr(0, bytes.size() / 2));
        world.file("stub." + kind, bytes.substr(0, 60));
    }
    world.load("group sfx\n" + eventOf("cut.ogg") + eventOf("cut.wav") + eventOf("stub.ogg") + eventOf("stub.wav"));
    for (const char *name : {"cut.ogg", "cut.wav"})
    {
        FMOD::Event &cut = world.play(name);
        EXPECT_GT(world.render(0.3).at(441), 0.3F) << name;
        world.pass(15);
        EXPECT_FALSE(SoundWorld::plays(cut));
        EXPECT_EQ(world.told(std::string(name) + "' is cut off after"), name == std::string("cut.ogg") ? 1 : 0)
            << "a WAV file without its end looks like a shorter one";
    }
    world.play("stub.ogg");
    world.play("stub.wav");
    EXPECT_LT(world.render(0.2).level(), 0.2F);
}

TEST(SoundSamples, WhatHasAPlaceIsMixedDownAndToldWhatHasNoneKeepsItsSides)
{
    SoundWorld world;
    std::vector<float> sides = sine(441, 0, 1, 0.5F, 2);
    for (std::size_t i = 1; i < sides.size(); i += 2)
        sides[i] = 0;
    world.sound("sides.wav", sides, 2);
    world.load("group sfx\nevent Bed\n mode loop\n layer a\n sample sides.wav\n"
               "event Thing\n mode loop\n layer a\n sample sides.wav\n parameter distance 0 10\n"
               "event Long\n mode loop\n layer a\n sample sides.wav\n stream\n parameter distance 0 10\n");
    world.play("Bed");
    const Heard bed = world.render(0.5);
    EXPECT_GT(bed.left(), 0.3F);
    EXPECT_LT(bed.right(), 0.001F);
    EXPECT_EQ(world.notices.size(), 0u);
    world.end();
    for (const char *name : {"Thing", "Long"})
    {
        world.load(bytesOf(world.path("test.fev")).substr(15));
        SoundWorld::place(world.play(name), 2, 0, 0);
        const Heard thing = world.render(0.5);
        EXPECT_GT(thing.right(), 2 * thing.left()) << name;
        world.end();
    }
    EXPECT_EQ(world.told("has two channels"), 1);
}

TEST(SoundSamples, AStreamLoopsWithoutAStepFromAnOggFile)
{
    SoundWorld world;
    world.tone("bed.ogg", 441, 1, 2);
    world.load("group sfx\nevent Bed\n mode loop\n layer a\n sample bed.ogg\n stream\n");
    world.play("Bed");
    const Heard heard = world.render(4);
    EXPECT_LT(heard.largestStep(), 1.3F * heard.part(0.3, 0.4).largestStep());
    EXPECT_GT(heard.part(3.5, 0.4).at(441), 0.8F);
}

TEST(SoundSamples, AOneShotThatIsCutOutOfASoundDoesNotClickAtItsEnds)
{
    SoundWorld world;
    world.sound("cut.wav", sine(250, 0.001, 0.203));
    world.load("group sfx\nevent Cut\n layer a\n sample cut.wav\n");
    world.play("Cut");
    EXPECT_LT(world.render(0.5).largestStep(), 0.05F);
}

TEST(SoundSamples, AProjectThatIsMissingOrNoTextIsToldOnceAndLeavesTheSystemInOrder)
{
    SoundWorld world;
    world.tone("hum.wav", 441, 1);
    world.load("group sfx\nevent Hum\n mode loop\n layer a\n sample hum.wav\n");
    world.file("binary.fev", std::string("project b 1\n\0\0", 14));
    FMOD::EventProject *none = world.project;
    for (int i = 0; i < 2; ++i)
    {
        EXPECT_EQ(world.system->load("Test.fev", nullptr, &none), FMOD_ERR_FILE_NOTFOUND);
        EXPECT_EQ(none, nullptr);
        EXPECT_EQ(world.system->load("binary.fev", nullptr, &none), FMOD_ERR_FORMAT);
    }
    EXPECT_EQ(world.told("Test.fev cannot be read"), 1);
    EXPECT_EQ(world.told("is not text"), 1);
    FMOD::EventGroup *group = world.group;
    EXPECT_NE(world.project->getGroup("test/no", false, &group), FMOD_OK);
    EXPECT_EQ(group, nullptr);
    world.play("Hum");
    EXPECT_GT(world.render(0.2).level(), 0.1F);
}

TEST(SoundSamples, NumbersThatAreNoneChangeNothing)
{
    SoundWorld world;
    world.tone("hum.wav", 441, 1);
    world.load(
        "group sfx\nevent Hum\n mode loop\n layer a\n sample hum.wav\n parameter distance 0 10\n volume 0:1 10:0\n");
    FMOD::Event &hum = world.play("Hum");
    const float before = world.render(0.5).part(0.1, 0.4).level();
    const float none = std::nanf("");
    const FMOD_VECTOR nowhere = {none, 0, HUGE_VALF};
    FMOD::EventParameter *distance = nullptr;
    hum.getParameter("distance", &distance);
    EXPECT_EQ(distance->setValue(none), FMOD_ERR_INVALID_FLOAT);
    EXPECT_EQ(hum.setVolume(none), FMOD_ERR_INVALID_FLOAT);
    EXPECT_EQ(hum.set3DAttributes(&nowhere, nullptr), FMOD_ERR_INVALID_FLOAT);
    EXPECT_EQ(hum.set3DOcclusion(none, 0), FMOD_ERR_INVALID_FLOAT);
    EXPECT_EQ(world.system->set3DListenerAttributes(0, &nowhere, nullptr, nullptr, nullptr), FMOD_ERR_INVALID_FLOAT);
    port::setSoundPath(hum, {nowhere, none, none, none});
    FMOD_REVERB_PROPERTIES room;
    room.DecayTime = room.Density = none;
    room.Room = 1 << 30;
    port::setReverbZones(*world.system, room, room, none);
    EXPECT_NEAR(world.render(0.5).part(0.1, 0.4).at(441), before * 1.41F, 0.5F);
    hum.setVolume(7);
    float volume = 0;
    hum.getVolume(&volume);
    EXPECT_EQ(volume, 1);
}
