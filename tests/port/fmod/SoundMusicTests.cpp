#include "port/fmod/SoundWorld.h"

#include <gtest/gtest.h>

namespace
{

constexpr float QUIET = 0.002F;

/// One sine of 441 Hz cut into a beginning and a loop of a second, and its opposite as a layer.
class SoundMusic : public testing::Test
{
protected:
    SoundMusic()
    {
        world.sound("intro.wav", sine(441, 0, 0.7, 0.4F, 2), 2);
        world.sound("loop.wav", sine(441, 0.7, 1.7, 0.4F, 2), 2);
        world.sound("opposite.wav", sine(441, 0.7, 1.7, -0.4F, 2), 2);
        world.sound("high.wav", sine(1764, 0, 2, 0.2F, 2), 2);
        world.load("group sfx\n"
                   "event Going\n fade 0 0.5\n music 120 4\n segment begin intro.wav next on\n"
                   " segment on loop.wav next on\n"
                   "event Ending\n music 120\n segment begin intro.wav next on\n segment on loop.wav\n"
                   "event Dread\n music 120\n segment calm high.wav next calm\n segment low loop.wav layer 0.3\n"
                   " segment mid opposite.wav layer 0.6\n parameter tension 0 1\n"
                   "event Opposed\n music 120\n segment one loop.wav next one\n segment two opposite.wav layer 0.5\n"
                   " parameter tension 0 1 1\n");
        EXPECT_TRUE(world.notices.empty());
    }

    SoundWorld world;
};

} // namespace

TEST_F(SoundMusic, SegmentsFollowAndLoopWithoutAGapOrAStep)
{
    FMOD::Event &music = world.play("Going");
    const Heard heard = world.render(5);
    EXPECT_LT(heard.largestStep(), 1.05F * heard.part(0.1, 0.3).largestStep());
    EXPECT_NEAR(heard.at(441), 0.8F, 0.01F);
    music.stop();
    const Heard fading = world.render(0.6);
    EXPECT_NEAR(fading.part(0.2, 0.1).level(), heard.level() / 2, heard.level() / 10);
    EXPECT_LT(fading.largestStep(), 1.05F * heard.part(0.1, 0.3).largestStep());
    EXPECT_EQ(world.render(0.2).level(), 0);
    EXPECT_FALSE(SoundWorld::plays(music));
}

TEST_F(SoundMusic, AfterASegmentThatNothingFollowsItIsOver)
{
    FMOD::Event &music = world.play("Ending");
    EXPECT_GT(world.render(1.65).part(1.5, 0.1).level(), 0.1F);
    world.render(0.2);
    EXPECT_FALSE(SoundWorld::plays(music));
    EXPECT_EQ(world.render(0.2).level(), 0);
    for (const port::EventFacts &facts : port::listEvents(*world.project))
        EXPECT_EQ(facts.loops, facts.name != "Ending") << facts.name;
}

TEST_F(SoundMusic, LayersComeAndGoWithTheTensionWithinABeatFromABeatOn)
{
    FMOD::Event &music = world.play("Dread");
    EXPECT_LT(world.render(1.1).at(441), QUIET);
    SoundWorld::set(music, "tension", 0.4F);
    const Heard rising = world.render(1.4);
    EXPECT_LT(rising.part(0, 0.35).at(441), QUIET) << "waits for the beat at 1.5 s";
    EXPECT_NEAR(rising.part(0.6, 0.1).at(441), 0.4F, 0.1F) << "half way at 1.75 s";
    EXPECT_NEAR(rising.part(1.0, 0.4).at(441), 0.8F, 0.02F);
    EXPECT_NEAR(rising.at(1764), 0.4F, 0.01F) << "the leading segment stays";
    SoundWorld::set(music, "tension", 0);
    world.render(1.2);
    EXPECT_LT(world.render(0.3).at(441), QUIET);
}

TEST_F(SoundMusic, LayersAreInStepToTheSampleAlsoAfterASilence)
{
    FMOD::Event &music = world.play("Opposed");
    EXPECT_LT(world.render(3.3).part(0.1, 3).level(), QUIET) << "a sound and its opposite cancel out";
    music.setPaused(true);
    world.render(0.33);
    music.setPaused(false);
    EXPECT_LT(world.render(2).part(0.1, 1.9).level(), QUIET);
}

TEST_F(SoundMusic, AReleaseWhileItStreamsIsSilentWithoutAClick)
{
    FMOD::Event &music = world.play("Going");
    Heard heard = world.render(1);
    const float undisturbed = heard.largestStep();
    music.release();
    heard += world.render(0.2);
    EXPECT_LT(heard.largestStep(), 1.2F * undisturbed);
    EXPECT_EQ(world.render(0.2).level(), 0);
}

TEST_F(SoundMusic, SegmentsOfAnotherRateEndItAndAreTold)
{
    world.tone("slow.wav", 441, 1, 2, 0.5F, 22050);
    world.load("group sfx\nevent Mixed\n music 120\n segment one intro.wav next two\n segment two slow.wav next one\n");
    world.play("Mixed");
    world.render(1.5);
    EXPECT_EQ(world.told("slow.wav' has another rate or number of channels"), 1);
}
