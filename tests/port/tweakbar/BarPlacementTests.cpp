#include "port/tweakbar/BarPlacement.h"

#include <gtest/gtest.h>

namespace
{
bool overlap(const port::TweakPlace &a, const port::TweakPlace &b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}
} // namespace

TEST(BarPlacement, NewBarsComeUpInsideTheWindowBesideTheOthers)
{
    constexpr int width = 1280, height = 720;
    std::vector<port::TweakPlace> places;
    for (int i = 0; i < 40; ++i)
    {
        const port::TweakPlace place = port::findRoom(300, 340, width, height, places);
        EXPECT_TRUE(place.left >= 0 && place.top >= 0 && place.right <= width && place.bottom <= height) << i;
        // Four columns of two and the rows that are left hold eight; then there is no room of one's own.
        for (const port::TweakPlace &other : places)
            EXPECT_FALSE(i < 8 && overlap(place, other)) << i;
        places.push_back(place);
    }
    const port::TweakPlace beside{0, 0, 1280, 400};
    const port::TweakPlace below = port::findRoom(400, 600, width, height, {beside});
    EXPECT_GE(below.top, 400) << "made lower rather than put over another";
    EXPECT_LE(below.bottom, height);
}
