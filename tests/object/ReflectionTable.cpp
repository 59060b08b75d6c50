// The static table: what it says about classes, members, enums and properties.
#include "object/reflection/AutoReflector.h"
#include "object/reflection/Reflection.h"

#include "object/ReflectedShapes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{
const DoxyElement &record(const ReflectorPtr &type)
{
    return static_cast<const DoxyElement &>(*type);
}

std::vector<std::string> memberNames(const ReflectorPtr &type)
{
    std::vector<std::string> found;
    for (const ReflectorPtr &member : type->getMemberList())
        found.push_back(member->getName().toCString());
    return found;
}

std::ptrdiff_t placeOf(const std::vector<std::string> &list, const char *name)
{
    return std::find(list.begin(), list.end(), name) - list.begin();
}

ReflectorPtr typeNamed(const char *name)
{
    return Reflection().getType(String::copyFrom(name));
}
} // namespace

TEST(ReflectionTable, ClassesEnumsAndFunctionsAreFoundByQualifiedNameAndNothingElseIs)
{
    EXPECT_EQ(typeNamed("ReflectedBox"), ReflectedBox::staticType);
    EXPECT_EQ(typeNamed("ReflectedBox::Lid"), ReflectedBox::Lid::staticType);
    EXPECT_EQ(typeNamed("ReflectedShape::Finish")->getKind(), IReflectedThing::ENUM);
    EXPECT_EQ(typeNamed("doubledNumber")->getKind(), IReflectedThing::FUNCTION);
    EXPECT_EQ(typeNamed("PlainShape")->getKind(), IReflectedThing::STRUCT);
    EXPECT_FALSE(typeNamed("Millimetres"));
    EXPECT_FALSE(typeNamed("ReflectedShape::Finish::MATT"));
    EXPECT_FALSE(typeNamed("NoSuchClass"));
    EXPECT_FALSE(typeNamed(""));
}

TEST(ReflectionTable, ARecordTellsItsNameItsPlaceAndItsComment)
{
    const ReflectorPtr width = ReflectedBox::staticType->getMember(SCS("getWidth"));
    EXPECT_EQ(width->getName(), SCS("getWidth"));
    EXPECT_EQ(width->getQualifiedName(), SCS("ReflectedBox::getWidth"));
    EXPECT_EQ(width->getEnclosingScope(), ReflectedBox::staticType);
    EXPECT_TRUE(width->getDefinitionLocation().startsWith(SCS("tests/object/ReflectedShapes.h(")));
    EXPECT_EQ(width->getReflectionProvider(), &getAutoReflector());
    EXPECT_STREQ(record(ReflectedBox::staticType).getBriefDescription(), "A box with a width.");
    EXPECT_STREQ(record(width).getArgsString(), "() const");
    EXPECT_EQ(ReflectedBox::staticType->getEnclosingScope()->getKind(), IReflectedThing::FILE);
}

TEST(ReflectionTable, OwnMembersStandInDeclarationOrderBeforeInheritedOnes)
{
    const auto names = memberNames(ReflectedBox::staticType);
    EXPECT_LT(placeOf(names, "Lid"), placeOf(names, "area"));
    EXPECT_LT(placeOf(names, "area"), placeOf(names, "getWidth"));
    EXPECT_LT(placeOf(names, "getWidth"), placeOf(names, "setSecret"));
    EXPECT_LT(placeOf(names, "motto"), placeOf(names, "getLabel"));
    EXPECT_LT(placeOf(names, "getLabel"), placeOf(names, "setParent"));
    EXPECT_LT(placeOf(names, "setParent"), std::ptrdiff_t(names.size()));
}

TEST(ReflectionTable, AnOverrideStandsForWhatItOverrides)
{
    const auto names = memberNames(ReflectedBox::staticType);
    EXPECT_EQ(std::count(names.begin(), names.end(), "describe"), 1);

    const ReflectorPtr describe = ReflectedBox::staticType->getMember(SCS("describe"));
    EXPECT_EQ(describe->getQualifiedName(), SCS("ReflectedBox::describe"));
    EXPECT_EQ(describe->getOverriddenThing(), ReflectedShape::staticType->getMember(SCS("describe")));
    EXPECT_FALSE(describe->getOverriddenThing()->getOverriddenThing());
    EXPECT_STREQ(record(describe).getBriefDescription(), "What kind of shape this is.");
}

TEST(ReflectionTable, TheFirstDeclaredOverloadIsTheOneFoundByName)
{
    const ReflectorPtr found = ReflectedBox::staticType->getMember(SCS("overloaded"));
    EXPECT_STREQ(record(found).getArgsString(), "(int value)");
    EXPECT_EQ(typeNamed("ReflectedBox::overloaded"), found);
}

TEST(ReflectionTable, AThingWithoutThatMemberGivesNull)
{
    EXPECT_FALSE(ReflectedBox::staticType->getMember(SCS("noSuchMember")));
    EXPECT_FALSE(ReflectedBox::staticType->getMember(String()));
    EXPECT_FALSE(ReflectedBox::staticType->getMember(SCS("getWidth"))->getMember(SCS("getWidth")));
}

TEST(ReflectionTable, MembersShowTheirAccessAndTheirDispatch)
{
    const auto refs = record(ReflectedShape::staticType).getMemberRefs();
    const auto ref = [&](const char *name) -> const DoxyRef &
    {
        for (const DoxyRef &candidate : refs)
        {
            if (std::string(candidate.refText) == name)
                return candidate;
        }
        ADD_FAILURE() << "no member " << name;
        return refs.front();
    };
    EXPECT_EQ(ref("area").virt, IReflectedThing::PURE_VIRTUAL);
    EXPECT_TRUE(ref("area").isConst);
    EXPECT_EQ(ref("describe").virt, IReflectedThing::VIRTUAL);
    EXPECT_EQ(ref("countEdges").prot, IReflectedThing::PROTECTED);
    EXPECT_EQ(ref("getBookkeeping").prot, IReflectedThing::PRIVATE);
    EXPECT_EQ(ref("setLabel").virt, IReflectedThing::NON_VIRTUAL);
}

TEST(ReflectionTable, SubclassesAreKnownAtAnyDepth)
{
    EXPECT_TRUE(ReflectedBox::staticType->isSubclassOf(ReflectedBox::staticType));
    EXPECT_TRUE(ReflectedVault::staticType->isSubclassOf(Object::staticType));
    EXPECT_TRUE(ReflectedVault::staticType->isSubclassOf(typeNamed("IReflectableObject")));
    EXPECT_FALSE(ReflectedShape::staticType->isSubclassOf(ReflectedBox::staticType));
    EXPECT_FALSE(ReflectedBox::Lid::staticType->isSubclassOf(ReflectedBox::staticType));
    EXPECT_FALSE(ReflectedBox::staticType->isSubclassOf(nullptr));
}

TEST(ReflectionTable, AClassNumberLiesInTheSpanOfEachOfItsBasesAndOfNoOtherClass)
{
    const ReflectorPtr classes[] = {Object::staticType, ReflectedShape::staticType, ReflectedBox::staticType,
                                    ReflectedVault::staticType, ReflectedBox::Lid::staticType};
    for (const ReflectorPtr &one : classes)
    {
        EXPECT_NE(classNumberOf(one), 0u);
        for (const ReflectorPtr &other : classes)
            EXPECT_EQ(record(other).containsClass(classNumberOf(one)), one->isSubclassOf(other));
    }
    EXPECT_EQ(classNumberOf(typeNamed("PlainShape")), 0u);
    EXPECT_FALSE(record(Object::staticType).containsClass(0));
}

TEST(ReflectionTable, ConcreteClassesAreMadeByNameAndAbstractOnesAreNot)
{
    const Handle<Object> box = typeNamed("ReflectedBox")->construct(defaultAllocationCategory);
    ASSERT_TRUE(box.isValid());
    EXPECT_EQ(box.lookup()->getType(), ReflectedBox::staticType);
    EXPECT_EQ(handle_cast<ReflectedBox>(box).lookup()->getTypedHandle(), handle_cast<ReflectedBox>(box));
    box.lookup()->murder();
    cremateDeadObjects();

    const std::size_t before = ObjectMap().getObjectCount();
    EXPECT_FALSE(ReflectedShape::staticType->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(ReflectedVault::staticType->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(typeNamed("PlainShape")->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(typeNamed("doubledNumber")->construct(defaultAllocationCategory).isValid());
    EXPECT_EQ(ObjectMap().getObjectCount(), before);
}

TEST(ReflectionTable, SignaturesNameTheReflectedClassesAndEnumsInThem)
{
    const ReflectorPtr nest = ReflectedBox::staticType->getMember(SCS("nest"));
    EXPECT_EQ(nest->getArgCount(), 2u);
    EXPECT_EQ(nest->getArgType(0), ReflectedBox::staticType);
    EXPECT_EQ(nest->getArgType(1), ReflectedBox::staticType);
    EXPECT_FALSE(nest->getArgType(2));
    EXPECT_FALSE(nest->getReturnType());

    const ReflectorPtr getFinish = ReflectedShape::staticType->getMember(SCS("getFinish"));
    EXPECT_EQ(getFinish->getReturnType(), typeNamed("ReflectedShape::Finish"));
    EXPECT_EQ(typeNamed("doubledNumber")->getArgCount(), 1u);
    EXPECT_EQ(ReflectedBox::staticType->getMember(SCS("sides"))->getArgCount(), 0u);
}

TEST(ReflectionProperties, AGetterAndASetterOfOneNameAreAProperty)
{
    const ErrorReturn<PropertyDesc> width = ReflectedBox::staticType->getProperty(SCS("width"));
    ASSERT_TRUE(width.succeeded());
    EXPECT_EQ(width.value.getName(), SCS("width"));
    EXPECT_EQ(width.value.getGetter(), ReflectedBox::staticType->getMember(SCS("getWidth")));
    EXPECT_EQ(width.value.getSetter(), ReflectedBox::staticType->getMember(SCS("setWidth")));
    EXPECT_EQ(width.value.toString(), SCS("<property width of ReflectedBox>"));
    EXPECT_TRUE(ReflectedBox::staticType->getProperty(SCS("label")).succeeded()) << "inherited";
}

TEST(ReflectionProperties, OtherNamesAndCountsAreNone)
{
    for (const char *name : {"corner", "", "Width", "takesFive", "volume", "noSuchProperty"})
    {
        EXPECT_EQ(ReflectedBox::staticType->getProperty(String::copyFrom(name)).code.getCode(),
                  ErrorCode::NO_SUCH_PROPERTY)
            << name;
    }
    EXPECT_EQ(typeNamed("PlainShape")->getProperty(SCS("corners")).code.getCode(), ErrorCode::NO_SUCH_PROPERTY);
}

TEST(ReflectionProperties, HalfAPairCanBeReadOrWrittenOnly)
{
    const Handle<ReflectedBox> h = construct<ReflectedBox>(defaultAllocationCategory);
    auto box = h.lookup();
    EXPECT_EQ(box->getPropertyValue(SCS("secret")).code.getCode(), ErrorCode::PROPERTY_NOT_READABLE);
    EXPECT_TRUE(box->setPropertyValue(SCS("secret"), 4).succeeded());
    EXPECT_EQ(box->secret, 4);
    EXPECT_EQ(box->setPropertyValue(SCS("motto"), SCS("x")).getCode(), ErrorCode::PROPERTY_NOT_WRITABLE);
    EXPECT_EQ(box->getPropertyValue(SCS("motto")).value.get<String>().value, SCS("six sides"));
    EXPECT_EQ(box->setPropertyValue(SCS("secret"), SCS("text")).toString(), SCS("CALL_FAILURE: WRONG_ARGUMENT_TYPE"));
    EXPECT_EQ(box->setPropertyValue(SCS("nothing"), 4).getCode(), ErrorCode::NO_SUCH_PROPERTY);
    EXPECT_EQ(box->secret, 4);
    box->murder();
    cremateDeadObjects();
}

TEST(ReflectionProperties, TheListHasTheOrderOfFirstAppearance)
{
    std::vector<std::string> names;
    for (const PropertyDesc &property : ReflectedBox::staticType->getPropertyList())
        names.push_back(property.getName().toCString());
    ASSERT_GE(names.size(), 4u);
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 3),
              (std::vector<std::string>{"width", "secret", "motto"}));
    EXPECT_LT(placeOf(names, "label"), placeOf(names, "parent"));
    EXPECT_EQ(std::count(names.begin(), names.end(), "label"), 1);
}
