// Values by name: look-up by any ownership of the text, order and growth.
#include "foundation/NameMap.h"

#include <gtest/gtest.h>

TEST(NameMap, FindsByTextWhateverTheOwnership)
{
    NameMap<int> map;
    EXPECT_EQ(map.find(SCS("anything")), nullptr);
    map[String::copyFrom("speed")] = 1;
    map[SCS("mass")] = 2;
    map[String()] = 3;
    map[SCS("speed")] += 10;
    EXPECT_EQ(map.size(), 3u);
    EXPECT_EQ(*map.find(SCS("speed")), 11);
    EXPECT_EQ(*map.find(String::copyFrom("mass")), 2);
    EXPECT_EQ(*map.find(String()), 3);
    EXPECT_EQ(map.find(SCS("spee")), nullptr);
    EXPECT_EQ(map.find(String::copyFrom("a name that nobody ever interned")), nullptr);
}

TEST(NameMap, LookingForAnUnknownTextDoesNotInternIt)
{
    NameMap<int> map;
    map[SCS("known")] = 1;
    const String unknown = String::copyFrom("only ever looked for");
    map.find(unknown);
    EXPECT_TRUE(unknown.findInterned().empty());
}

TEST(NameMap, KeepsItsOrderAndValuesWhileItGrows)
{
    NameMap<int> map;
    for (int i = 0; i < 5000; ++i)
        map[String::format("entry %d", i)] = i;
    int expected = 0;
    for (const auto &[name, value] : map)
    {
        ASSERT_EQ(value, expected);
        ASSERT_EQ(*map.find(String::format("entry %d", expected)), expected);
        ++expected;
    }
    EXPECT_EQ(expected, 5000);
    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find(SCS("known")), nullptr);
}
