// Strings: emptiness, interning, comparison, hashing and slicing.
#include "foundation/Allocators.h"
#include "foundation/KVString.h"

#include <boost/format.hpp>
#include <gtest/gtest.h>

#include <cstring>
#include <string_view>

namespace
{

const String madeBeforeMain = SCS("made by ") + SCS("a static initialiser");

String copyOf(const char *text)
{
    return String::copyFrom(text);
}

const AllocationCategory &stringCategory()
{
    for (const AllocationCategory *category = AllocationCategory::getFirst(); category; category = category->getNext())
        if (std::string_view(category->getName()) == "strings")
            return *category;
    return defaultAllocationCategory;
}

} // namespace

TEST(String, WorksFromStaticInitialisers)
{
    EXPECT_STREQ(madeBeforeMain.toCString(), "made by a static initialiser");
}

TEST(String, EveryWayToMakeNothingGivesTheSameEmptyString)
{
    for (const String &nothing : {String(), SCS(""), String::copyFrom("", 0), copyOf(nullptr), SCS("ab").slice(1, 1),
                                  String::format("%s", ""), String::copyFrom(std::vector<char>())})
    {
        EXPECT_TRUE(nothing.empty());
        EXPECT_EQ(nothing, String());
        EXPECT_STREQ(nothing.toCString(), "");
        EXPECT_EQ(nothing.begin(), nothing.end());
        EXPECT_EQ(hash_value(nothing), 0u);
        EXPECT_EQ(nothing.intern(), String());
    }
}

TEST(String, LiteralsOfOneTextAreOneInternedStringThatIsNotCopied)
{
    static const char literal[] = "a literal met twice";
    const String first = String::fromStaticCString(literal);
    EXPECT_TRUE(first.isInterned());
    EXPECT_EQ(first.toCString(), literal);
    EXPECT_EQ(SCS("a literal met twice").toCString(), copyOf("a literal met twice").intern().toCString());
}

TEST(String, TextOutsideTheProgramIsCopiedEvenWhenItClaimsToBeALiteral)
{
    char passing[] = "first text";
    const String first = SCS(passing);
    std::memcpy(passing, "other text", sizeof passing);
    EXPECT_EQ(first, copyOf("first text"));
    EXPECT_EQ(SCS(passing), copyOf("other text"));
}

TEST(String, RepeatedUseOfALiteralAllocatesNothing)
{
    const auto use = [] { return SCS("used in every frame"); };
    use();
    const std::size_t before = stringCategory().allocationsEver;
    for (int frame = 0; frame < 3; ++frame)
    {
        const String name = use();
        const String copy = name;
        EXPECT_EQ(copy, use().intern());
    }
    EXPECT_EQ(stringCategory().allocationsEver, before);
}

TEST(String, LastOwnerFreesACopiedText)
{
    const std::size_t before = stringCategory().objectCount;
    {
        String first = copyOf("counted text");
        String second = first;
        first = String();
        first = second;
        second = std::move(first);
        String &alias = second;
        second = alias;
        EXPECT_EQ(second, copyOf("counted text"));
        EXPECT_EQ(stringCategory().objectCount, before + 1);
    }
    EXPECT_EQ(stringCategory().objectCount, before);
}

TEST(String, ComparesByTextWhateverTheOwnership)
{
    EXPECT_EQ(copyOf("name"), SCS("name"));
    EXPECT_EQ(copyOf("name"), copyOf("name"));
    EXPECT_NE(SCS("name"), SCS("nama"));
    EXPECT_NE(copyOf("name"), SCS("names"));
    EXPECT_NE(copyOf("name"), String());
    EXPECT_NE(String::copyFrom("a\0b", 3), String::copyFrom("a\0c", 3));
}

TEST(String, OrdersBytesUnsignedAndPrefixesFirst)
{
    EXPECT_LT(SCS("abc"), SCS("abcd"));
    EXPECT_LT(copyOf("abc"), copyOf("abd"));
    EXPECT_LT(SCS("z"), SCS("\xC3\xA4"));
    EXPECT_LT(String(), SCS("a"));
    EXPECT_FALSE(String() < String());
    EXPECT_FALSE(SCS("a") < String());
    EXPECT_FALSE(SCS("abc") < copyOf("abc"));
}

TEST(String, SliceCountsNegativeIndicesFromTheEndAndClamps)
{
    const String text = SCS("abcdef");
    EXPECT_EQ(text.slice(-3), SCS("def"));
    EXPECT_EQ(text.slice(0, -1), SCS("abcde"));
    EXPECT_EQ(text.slice(-100, 2), SCS("ab"));
    EXPECT_EQ(text.slice(1, 100), SCS("bcdef"));
    EXPECT_EQ(text.slice(), text);
    EXPECT_TRUE(text.slice(2, 2).empty());
    EXPECT_TRUE(text.slice(4, 2).empty());
    EXPECT_TRUE(text.slice(10).empty());
    EXPECT_TRUE(String().slice(-1).empty());
}

TEST(String, StartsWithHoldsForEveryPrefixAndForNothing)
{
    EXPECT_TRUE(SCS("prefix").startsWith(SCS("pre")));
    EXPECT_TRUE(SCS("prefix").startsWith(String()));
    EXPECT_TRUE(String().startsWith(String()));
    EXPECT_FALSE(String().startsWith(SCS("p")));
    EXPECT_FALSE(SCS("pre").startsWith(SCS("prefix")));
    EXPECT_FALSE(SCS("prefix").startsWith(SCS("fix")));
}

TEST(String, ConcatenationSharesTheOtherSideOfAnEmptyString)
{
    const String text = copyOf("shared");
    EXPECT_EQ((text + String()).toCString(), text.toCString());
    EXPECT_EQ((String() + text).toCString(), text.toCString());
    EXPECT_STREQ((text + SCS(" and joined")).toCString(), "shared and joined");
}

TEST(String, HashFollowsItsPublishedRuleAndIsSharedByAllOwnerships)
{
    // h ^= (h << 6) + (h >> 2) + c + 0x9E3779B9, with c signed, worked out by hand for one and two bytes.
    EXPECT_EQ(hash_value(SCS("a")), 0x9E377A1Au);
    EXPECT_EQ(hash_value(SCS("\xFF")), 0x9E3779B8u);
    std::uint32_t h = 0x9E377A1Au;
    h ^= (h << 6) + (h >> 2) + 'b' + 0x9E3779B9u;
    EXPECT_EQ(hash_value(SCS("ab")), h);
    EXPECT_EQ(hash_value(copyOf("ab")), h);
    EXPECT_EQ(std::hash<String>()(copyOf("ab").intern()), h);
}

TEST(String, ConvertsFromAndToTheContainersItMeets)
{
    EXPECT_EQ(String::copyFrom(std::string("a\0b", 3)).size(), 3u);
    EXPECT_EQ(String::copyFrom(boost::format("%1%-%2%") % 7 % "x"), SCS("7-x"));
    EXPECT_EQ(SCS("abc").toCharVector(), (std::vector<char>{'a', 'b', 'c'}));
    EXPECT_EQ(SCS("abc")[2], 'c');
    EXPECT_EQ(String::format(SCS("%s=%i"), "x", 3), SCS("x=3"));
}
