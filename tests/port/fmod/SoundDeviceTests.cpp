#include "port/fmod/SoundWorld.h"
#include "port/fmod/output/AudioHost.h"

#include <AL/al.h>
#include <AL/alext.h>
#include <gtest/gtest.h>

#include <cmath>

namespace
{

/// A computer whose sound device is plugged in and out, and whose time passes as it is told.
struct Computer
{
    bool plugged = true;
    bool connected = true;
    double time = 0;
    ALCdevice *device = nullptr;
    int asked = 0;
    std::string wanted; ///< name of a device
};

class FakeDevices : public port::AudioHost
{
public:
    explicit FakeDevices(Computer &computer) : computer(computer) {}

    bool isWanted() const override { return true; }
    void choose(const std::string &name) override { computer.wanted = name; }
    ALCdevice *open() override
    {
        ++computer.asked;
        if (!computer.plugged)
            return nullptr;
        const auto openLoopback =
            reinterpret_cast<LPALCLOOPBACKOPENDEVICESOFT>(alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
        computer.connected = true;
        return computer.device = openLoopback(nullptr);
    }
    bool isConnected(ALCdevice *) override { return computer.connected; }
    std::vector<ALCint> getAttributes() const override
    {
        return {ALC_FORMAT_CHANNELS_SOFT, ALC_STEREO_SOFT, ALC_FORMAT_TYPE_SOFT,
                ALC_FLOAT_SOFT,           ALC_FREQUENCY,   SoundWorld::RATE};
    }
    double getTime() override { return computer.time; }
    double getLatency() const override { return 0.03; }

private:
    Computer &computer;
};

/// A loop whose second half is an octave higher, and music.
class SoundDevices : public testing::Test
{
protected:
    SoundDevices()
    {
        port::setAudioHostMaker([this] { return std::make_unique<FakeDevices>(computer); });
        port::setAudioOutput({port::AudioOutput::DEVICE, SoundWorld::RATE, false});
        world.sound("halves.wav", twoHalves());
        world.tone("music.wav", 1764, 1, 2, 0.3F);
    }
    ~SoundDevices() override
    {
        world.end();
        port::setAudioHostMaker({});
    }

    void load()
    {
        world.load("group sfx\nevent Round\n mode loop\n layer a\n sample halves.wav\n"
                   "event Music\n music 120\n segment on music.wav next on\n");
    }
    /// What the device plays while the game stands still, or not even that.
    Heard listen(double seconds)
    {
        const auto frames = std::lround(seconds * SoundWorld::RATE);
        computer.time += seconds;
        Heard heard;
        heard.stereo.resize(static_cast<std::size_t>(frames) * 2);
        const auto render =
            reinterpret_cast<LPALCRENDERSAMPLESSOFT>(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
        if (computer.plugged && computer.connected && !world.counters().silent)
            render(computer.device, heard.stereo.data(), static_cast<int>(frames));
        return heard;
    }
    Heard run(double seconds)
    {
        Heard all;
        for (long left = std::lround(seconds / SoundWorld::FRAME); left > 0; --left)
        {
            world.update();
            all += listen(SoundWorld::FRAME);
        }
        return all;
    }

    Computer computer;
    SoundWorld world;
};

} // namespace

TEST_F(SoundDevices, ALoopGoesOnAtTheNextDeviceWhereItIsByThenAndTheLossIsToldOnce)
{
    load();
    world.play("Round");
    world.play("Music");
    EXPECT_GT(run(0.9).at(441), 0.1F);
    computer.connected = false;
    const Heard after = run(0.9).part(0.4, 0.4);
    EXPECT_GT(after.at(882), 10 * after.at(441));
    EXPECT_GT(after.at(1764), 0.3F);
    EXPECT_EQ(world.counters().devices, 2);
    EXPECT_EQ(world.told("is gone"), 1);
    EXPECT_EQ(world.told("goes on at a new device"), 1);
    computer.connected = false;
    run(0.5);
    EXPECT_EQ(world.notices.size(), 2u);
}

TEST_F(SoundDevices, WithoutADeviceTheGameGoesOnInSilenceAndTakesTheOneThatAppears)
{
    computer.plugged = false;
    load();
    world.play("Round");
    world.play("Music");
    EXPECT_EQ(run(5.2).level(), 0);
    EXPECT_TRUE(world.counters().silent);
    EXPECT_EQ(world.counters().playing, 2);
    EXPECT_EQ(computer.asked, 3) << "every two seconds";
    EXPECT_EQ(world.told("No sound device"), 1);
    computer.plugged = true;
    run(1.9);
    EXPECT_FALSE(world.counters().silent);
    const Heard first = run(0.7).part(0.2, 0.5);
    EXPECT_GT(first.at(882), 10 * first.at(441)) << "after seven seconds of a loop of two";
    EXPECT_GT(first.at(1764), 0.3F);
}

TEST_F(SoundDevices, UnpluggedForGoodItWaitsAndComesBack)
{
    load();
    world.play("Round");
    run(0.5);
    computer.connected = computer.plugged = false;
    run(4);
    EXPECT_TRUE(world.counters().silent);
    computer.plugged = true;
    run(2.1);
    EXPECT_FALSE(world.counters().silent);
    EXPECT_GT(run(0.5).level(), 0.1F);
}

TEST_F(SoundDevices, AHitchOfTheGameDoesNotEndTheMusic)
{
    load();
    world.play("Music");
    run(1);
    const Heard hitch = listen(1.5);
    EXPECT_GT(hitch.part(1.3, 0.2).at(1764), 0.3F) << "read ahead";
    EXPECT_GT(run(0.5).at(1764), 0.3F);
    listen(4);
    run(0.2);
    EXPECT_GT(run(0.5).at(1764), 0.3F) << "longer than what was read ahead: it goes on after the gap";
}

TEST_F(SoundDevices, WhatPlaysGoesOnAtTheDeviceThatIsChosenMeanwhile)
{
    load();
    world.play("Round");
    run(0.9);
    port::setAudioDevice(*world.system, "the other one");
    const Heard after = run(0.9).part(0.4, 0.4);
    EXPECT_EQ(computer.wanted, "the other one");
    EXPECT_GT(after.at(882), 10 * after.at(441));
    EXPECT_EQ(world.counters().devices, 2);
    EXPECT_EQ(world.told("is gone"), 0) << "nothing was lost";
}

TEST_F(SoundDevices, DirectionsByTheShapeOfAHeadAreSwitchedWhileItPlays)
{
    load();
    world.play("Round");
    run(0.2);
    EXPECT_TRUE(port::setHeadRelated(*world.system, true));
    EXPECT_GT(run(0.2).level(), 0.1F);
    EXPECT_TRUE(port::setHeadRelated(*world.system, false));
    EXPECT_GT(run(0.2).level(), 0.1F);
    EXPECT_EQ(world.counters().devices, 1);
}
