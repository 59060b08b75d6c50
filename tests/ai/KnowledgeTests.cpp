#include "ai/knowledge/AIMessageComponent.h"
#include "ai/knowledge/AIObserverComponent.h"
#include "support/TestLevel.h"

#include "foundation/Random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace
{

class Messages : public testing::Test
{
protected:
    Messages()
        : message(*level.component<AIMessageComponent>(level.entity("note"), "aiMessage").lookup()),
          observer(level.component<AIObserverComponent>(level.entity("reader"), "aiObserver"))
    {
    }

    std::string decayed(const char *text, float confidence)
    {
        const ErrorReturn<Variant> left = message.decayValue(Variant(String::copyFrom(text)), MDT_STRING, confidence);
        EXPECT_TRUE(left.succeeded());
        return left.value.get<String>().value.toCString();
    }

    TestLevel level;
    AIMessageComponent &message;
    Handle<AIObserverComponent> observer;
};

TEST_F(Messages, ConfidenceIsNoNumberWhateverTheStrengthsAreAndTheDataComeBackWhole)
{
    message.setFalseConfidenceFactor(0.5f);
    for (const float strength : {0.f, 0.3f, 1.f})
    {
        message.setTimeDecayStrength(strength);
        message.setLinearDistanceDecayStrength(strength);
        message.setSquareDistanceDecayStrength(strength);
        message.setViewConeDecayStrength(strength);
        message.setAgentMemoryDecayStrength(strength);
        EXPECT_TRUE(std::isnan(message.calculateRealQFactor(observer)));
        EXPECT_TRUE(std::isnan(message.getConfidence(observer, 0)));
    }
    seedEngineRand(3);
    const int next = engineRand();
    seedEngineRand(3);
    message.setOriginalData(Variant(SCS("the cellar is flooded")));
    EXPECT_STREQ(message.getData(observer, 0).value.get<String>().value.toCString(), "the cellar is flooded");
    message.setDataType(MDT_POSITION);
    message.setOriginalData(Variant(Vec4(4, 0, 2, 1)));
    EXPECT_EQ(message.getData(observer, 0).value.get<Vec4>().value, Vec4(4, 0, 2, 1));
    EXPECT_EQ(engineRand(), next) << "nothing was left to chance";
}

TEST_F(Messages, ATextIsScrambledBySoManySwapsAsItsLengthAndTheConfidenceSay)
{
    const std::string text = "abcdefghijklmnopqrst";
    seedEngineRand(5);
    const std::string once = decayed(text.c_str(), 0.5f); // 20 * 0.5 * 0.5: five pairs
    std::string sorted = once;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, text);
    EXPECT_NE(once, text);

    seedEngineRand(5);
    std::string expected = text;
    for (int swap = 0; swap < 5; ++swap)
    {
        const std::size_t i = static_cast<std::size_t>(engineRand()) % 20,
                          j = static_cast<std::size_t>(engineRand()) % 20;
        std::swap(expected[i], expected[j]);
    }
    EXPECT_EQ(once, expected);

    EXPECT_EQ(decayed("", 1.f), "");
    for (const float nothing : {0.f, -1.f, std::nanf("")})
        EXPECT_EQ(decayed(text.c_str(), nothing), text);
    EXPECT_EQ(decayed(text.c_str(), std::numeric_limits<float>::infinity()).size(), text.size()) << "and it ends";
}

TEST_F(Messages, APlaceIsTrueFromHalfConfidenceOnAndADirectionAlways)
{
    const Variant place(Vec4(1, 2, 3, 1));
    EXPECT_EQ(message.decayValue(place, MDT_POSITION, 0.5f).value.get<Vec4>().value, Vec4(1, 2, 3, 1));
    EXPECT_EQ(message.decayValue(place, MDT_POSITION, 0.49f).value.get<Vec4>().value, Vec4(0, 0, 0, 0));
    EXPECT_EQ(message.decayValue(place, MDT_DIRECTION, 0.f).value.get<Vec4>().value, Vec4(1, 2, 3, 1));
}

TEST_F(Messages, WhatHasNoSuchTypeIsAFailureWithoutAValue)
{
    const ErrorReturn<Variant> unknown = message.decayValue(Variant(1), static_cast<MessageDataType>(3), 1.f);
    EXPECT_EQ(static_cast<int>(unknown.code.getCode()), 23);
    EXPECT_EQ(unknown.code.getHRESULT(), 0);
    EXPECT_EQ(unknown.value.getType(), Variant::VT_INVALID);
    message.setOriginalData(Variant(Handle<Object>()));
    const ErrorReturn<Variant> noText = message.getData(observer, 0);
    EXPECT_EQ(noText.code.getCode(), message.getOriginalData().get<String>().code.getCode());
    EXPECT_FALSE(noText.succeeded());
}

} // namespace
