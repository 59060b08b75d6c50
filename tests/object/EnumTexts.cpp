// The texts of enums: both spellings, both ways.
#include "object/reflection/EnumText.h"
#include "object/reflection/Reflection.h"

#include "object/ReflectedShapes.h"

#include <gtest/gtest.h>

TEST(EnumText, AnEnumeratorHasAShortAndAFullSpelling)
{
    EXPECT_EQ(enumToString(IReflectedThing::NON_VIRTUAL), SCS("NON_VIRTUAL"));
    EXPECT_EQ(enumToString(IReflectedThing::NON_VIRTUAL, true), SCS("IReflectedThing::VirtualMode::NON_VIRTUAL"));
    EXPECT_EQ(enumToString(ReflectedShape::Finish::GLOSSY, true), SCS("ReflectedShape::Finish::GLOSSY"));
    EXPECT_EQ(enumToString(SM_GLASS, true), SCS("ShapeMaterial::SM_GLASS"));
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
    EXPECT_EQ(enumToString(static_cast<IReflectedThing::Kind>(99)), SCS("<invalid enum value>"));
    EXPECT_EQ(enumToString(static_cast<ShapeMaterial>(3), true), SCS("<invalid enum value>"));
}

TEST(EnumText, OfSeveralNamesForOneNumberTheFirstIsShownAndAllAreRead)
{
    EXPECT_EQ(enumToString(SM_METAL), SCS("SM_IRON"));
    EXPECT_EQ(enumToString(IReflectedThing::STRUCT), SCS("CLASS"));
    EXPECT_EQ(stringToEnum<ShapeMaterial>(SCS("SM_METAL")).value, SM_IRON);
    EXPECT_EQ(stringToEnum<IReflectedThing::Kind>(SCS("VARIABLE")).value, IReflectedThing::DIR);
}

TEST(EnumText, BothSpellingsAreReadAndNothingElseIs)
{
    EXPECT_EQ(stringToEnum<ReflectedShape::Faces>(SCS("SIDES")).value, ReflectedShape::SIDES);
    EXPECT_EQ(stringToEnum<ReflectedShape::Faces>(SCS("ReflectedShape::Faces::BACK")).value, ReflectedShape::BACK);
    for (const char *text : {"", "sides", "Faces::BACK", "SIDES ", "4"})
    {
        EXPECT_EQ(stringToEnum<ReflectedShape::Faces>(String::copyFrom(text)).code.getCode(),
                  ErrorCode::NOT_AN_ENUMERANT)
            << text;
    }
}

TEST(EnumText, EnumeratorsAreRecordsWithTheirNumbers)
{
    const ReflectorPtr faces = Reflection().getType(SCS("ReflectedShape::Faces"));
    ASSERT_EQ(faces->getMemberList().size(), 3u);
    EXPECT_EQ(faces->getMember(SCS("SIDES"))->getEnumValue(), 4);
    EXPECT_EQ(faces->getMember(SCS("SIDES"))->getKind(), IReflectedThing::ENUMVALUE);
    EXPECT_EQ(faces->getMember(SCS("SIDES"))->getQualifiedName(), SCS("ReflectedShape::Faces::SIDES"));
    EXPECT_EQ(Reflection().getType(SCS("ReflectedShape::Bookkeeping"))->getMember(SCS("CLOSED"))->getEnumValue(), 7);
    EXPECT_EQ(faces->getEnumValue(), 0);
}
