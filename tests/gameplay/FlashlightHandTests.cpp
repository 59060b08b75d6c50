#include "gameplay/PlayerWorld.h"

#include "gameplay/light/FlashlightHand.h"

#include <gtest/gtest.h>

#include <cmath>

namespace
{

/// A flashlight in the hand of a player whose head a test turns.
class Hand : public testing::Test
{
protected:
    Hand()
    {
        torch = world.level.entity("flashlight", world.camera);
        world.level.transform(torch);
        follower = world.level.component<TransformOffsetComponent>(torch, "parentFollower").lookup().ptr;
        hand = world.level.component<FlashlightHand>(torch, "hand").lookup().ptr;
    }

    /// The hand's part of a frame at some rate, with the view at some heading, radians.
    void frame(int rate, double heading)
    {
        world.level.coordinator().getTimer(SCS("master")).newFrame(TimerTicks(4096 / rate));
        world.place->setOrientation(Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), static_cast<float>(heading)));
        hand->doFrame();
    }
    /// How far the beam is off the view, radians.
    float off() const
    {
        const Vec4 beam = follower->getOrientationOffset().generateRotation().getColumn(2);
        return std::acos(std::min(beam.z, 1.f));
    }

    PlayerWorld world;
    Handle<Entity> torch;
    TransformOffsetComponent *follower = nullptr;
    FlashlightHand *hand = nullptr;
};

} // namespace

TEST_F(Hand, BeamTrailsTheViewAlikeAtEveryFrameRate)
{
    // Half a second of turning to the right, then the view stands.
    constexpr double speed = 1.5, turning = 0.5;
    std::vector<std::vector<float>> courses;
    for (const int rate : {32, 64, 128, 256})
    {
        frame(rate, 40.0); // from wherever the view was: set, and not turned
        frame(rate, 0.0);
        std::vector<float> course;
        for (int step = 1; step <= 2 * rate; ++step)
        {
            frame(rate, speed * std::min(double(step) / rate, turning));
            if (step % (rate / 16) == 0)
                course.push_back(hand->getLag().x);
        }
        courses.push_back(course);
    }
    for (const std::vector<float> &course : courses)
        for (std::size_t i = 0; i < course.size(); ++i)
            EXPECT_NEAR(course[i], courses[0][i], 0.002f) << i;
    EXPECT_LT(courses[0][5], -0.05f) << "it trails";
    float most = 0;
    for (const float lag : courses[0])
        most = std::max(most, lag);
    EXPECT_GT(most, 0.002f) << "it swings over a little";
    EXPECT_NEAR(courses[0].back(), 0, 0.001f) << "and comes to rest";
}

TEST_F(Hand, BeamStaysInThePictureHoweverFastTheViewTurns)
{
    frame(64, 0);
    for (int step = 1; step < 64; ++step)
    {
        frame(64, step * 0.6);
        EXPECT_LT(off(), 0.23f);
    }
}

TEST_F(Hand, BlowShakesTheBeamAndPasses)
{
    frame(64, 0);
    float still = 0, shaken = 0;
    for (int step = 0; step < 64; ++step)
    {
        frame(64, 0);
        still = std::max(still, off());
    }
    hand->shake(0.8f);
    hand->shake(NAN);
    for (int step = 0; step < 64; ++step)
    {
        frame(64, 0);
        shaken = std::max(shaken, off());
    }
    EXPECT_LT(still, 0.01f);
    EXPECT_GT(shaken, 0.03f);
    EXPECT_EQ(hand->getShaking(), 0.f);
}

TEST_F(Hand, FlashlightThatLiesSomewhereIsLeftAlone)
{
    const Quaternion laid = Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), 1.f);
    torch.lookup()->setParent(world.map).ignoreError();
    follower->setOrientationOffset(laid);
    for (int step = 0; step < 8; ++step)
        frame(64, step * 0.1);
    EXPECT_EQ(follower->getOrientationOffset(), laid);
}
