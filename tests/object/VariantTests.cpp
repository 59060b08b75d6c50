// Variant: what converts into what, and that counted alternatives are counted.
#include "object/reflection/Variant.h"

#include "support/Probe.h"

#include <gtest/gtest.h>

#include <limits>

TEST(Variant, NumbersConvertIntoEachOtherAndTextDoesNot)
{
    EXPECT_EQ(Variant(3.7).get<int>().value, 3);
    EXPECT_EQ(Variant(true).get<float>().value, 1.0f);
    EXPECT_EQ(Variant('c').getType(), Variant::VT_INT64);
    EXPECT_EQ(Variant(IReflectedThing::VIRTUAL).getType(), Variant::VT_INT64);
    EXPECT_EQ(Variant(-1).get<unsigned char>().value, 255);
    EXPECT_EQ(Variant(0.25f).get<bool>().value, true);
    EXPECT_EQ(Variant(String(SCS("7"))).get<int>().code.getCode(), ErrorCode::NOT_CONVERTIBLE);
    EXPECT_EQ(Variant(7).get<String>().code.getCode(), ErrorCode::NOT_CONVERTIBLE);
    EXPECT_EQ(Variant(Vec4(1, 2, 3, 4)).get<Quaternion>().code.getCode(), ErrorCode::NOT_CONVERTIBLE);
}

TEST(Variant, NumbersBeyondAnIntegerEndAtItsBounds)
{
    EXPECT_EQ(Variant(1e300).get<int>().value, std::numeric_limits<int>::max());
    EXPECT_EQ(Variant(-1e300).get<std::int64_t>().value, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(Variant(std::numeric_limits<double>::quiet_NaN()).get<int>().value, 0);
    EXPECT_EQ(Variant(-5.0).get<unsigned>().value, 0u);
}

TEST(Variant, TheEmptyOneConvertsToItselfOnly)
{
    EXPECT_EQ(Variant().getType(), Variant::VT_INVALID);
    EXPECT_TRUE(Variant().get<Variant>().succeeded());
    EXPECT_EQ(Variant().get<int>().code.getCode(), ErrorCode::NOT_CONVERTIBLE);
    EXPECT_EQ(Variant().toString(), SCS("<variant>"));
}

TEST(Variant, HandlesKeepTheirNumberThroughTheBase)
{
    const Handle<Probe> h = spawn("thing");
    const Variant v(h);
    EXPECT_EQ(v.get<Handle<Object>>().value.getNumber(), h.getNumber());
    EXPECT_EQ(v.get<Handle<Probe>>().value, h);
    h.lookup()->murder();
    cremateDeadObjects();
}

TEST(Variant, CopiesOfTextOutliveTheirOriginal)
{
    Variant copy;
    {
        Variant original(String::copyFrom("a text that is long enough to stand on the heap"));
        copy = original;
        original = Variant(1);
    }
    Variant moved = std::move(copy);
    EXPECT_EQ(copy.getType(), Variant::VT_INVALID);
    moved = static_cast<const Variant &>(moved);
    EXPECT_EQ(moved.get<String>().value, SCS("a text that is long enough to stand on the heap"));
    moved.set(Vec4(1, 2, 3, 4));
    EXPECT_EQ(moved.get<Vec4>().value.z, 3.0f);
}
