// The texts of enums: both spellings, both ways.
#include "object/reflection/EnumText.h"
#include "object/reflection/Reflection.h"

#include "support/Probe.h"

#include <gtest/gtest.h>

TEST(EnumText, AnEnumeratorHasAShortAndAFullSpelling)
{
    EXPECT_EQ(enumToString(IReflectedThing::NON_VIRTUAL), SCS("NON_VIRTUAL"));
    EXPECT_EQ(enumToString(IReflectedThing::NON_VIRTUAL, true), SCS("IReflectedThing::VirtualMode::NON_VIRTUAL"));
    EXPECT_EQ(enumToString(AbstractProbe::Finish::GLOSSY, true), SCS("AbstractProbe::Finish::GLOSSY"));
    EXPECT_EQ(enumToString(PM_GLASS, true), SCS("ProbeMaterial::PM_GLASS"));
}

TEST(EnumText, SomeEnumsHaveTheShortSpellingOnly)
{
    EXPECT_EQ(enumToString(IReflectedThing::FUNCTION, true), SCS("FUNCTION"));
    EXPECT_EQ(enumToString(Variant::VT_HANDLE, true), SCS("VT_HANDLE"));
    EXPECT_EQ(enumToString(IReflectedThing::BAD_THIS_POINTER, true), SCS("BAD_THIS_POINTER"));
    EXPECT_EQ(stringToEnum<IReflectedThing::Kind>(SCS("IReflectedThing::Kind::FUNCTION")).code.getCode(),
              ErrorCode::NOT_AN_ENUMERANT);
}

TEST(EnumText, ANumberOutsideTheEnumIsInvalid)
{
    EXPECT_EQ(enumToString(static_cast<IReflectedThing::Kind>(15)), SCS("<invalid enum value>"));
    EXPECT_EQ(enumToString(static_cast<ProbeMaterial>(3), true), SCS("<invalid enum value>"));
}

TEST(EnumText, OfSeveralNamesForOneNumberTheFirstIsShownAndAllAreRead)
{
    EXPECT_EQ(enumToString(PM_METAL), SCS("PM_IRON"));
    EXPECT_EQ(enumToString(IReflectedThing::STRUCT), SCS("CLASS"));
    EXPECT_EQ(stringToEnum<ProbeMaterial>(SCS("PM_METAL")).value, PM_IRON);
    EXPECT_EQ(stringToEnum<IReflectedThing::Kind>(SCS("VARIABLE")).value, IReflectedThing::DIR);
}

TEST(EnumText, BothSpellingsAreReadAndNothingElseIs)
{
    EXPECT_EQ(stringToEnum<AbstractProbe::Faces>(SCS("SIDES")).value, AbstractProbe::SIDES);
    EXPECT_EQ(stringToEnum<AbstractProbe::Faces>(SCS("AbstractProbe::Faces::BACK")).value, AbstractProbe::BACK);
    for (const char *text : {"", "sides", "Faces::BACK", "SIDES ", "4"})
    {
        EXPECT_EQ(stringToEnum<AbstractProbe::Faces>(String::copyFrom(text)).code.getCode(),
                  ErrorCode::NOT_AN_ENUMERANT)
            << text;
    }
    EXPECT_FALSE(stringToEnum<AbstractProbe::Faces>(String::copyFrom("SIDES\0rest", 10)).code.succeeded());
}

TEST(EnumText, EnumeratorsAreRecordsWithTheirNumbers)
{
    const ReflectorPtr faces = Reflection().getType(SCS("AbstractProbe::Faces"));
    ASSERT_EQ(faces->getMemberList().size(), 3u);
    EXPECT_EQ(faces->getMember(SCS("SIDES"))->getEnumValue(), 4);
    EXPECT_EQ(faces->getMember(SCS("SIDES"))->getKind(), IReflectedThing::ENUMVALUE);
    EXPECT_EQ(faces->getMember(SCS("SIDES"))->getQualifiedName(), SCS("AbstractProbe::Faces::SIDES"));
    EXPECT_EQ(Reflection().getType(SCS("AbstractProbe::Bookkeeping"))->getMember(SCS("CLOSED"))->getEnumValue(), 7);
    EXPECT_EQ(faces->getEnumValue(), 0);
}
