// The static table: what it says about classes, members, enums and properties.
#include "object/reflection/AutoReflector.h"
#include "object/reflection/Reflection.h"

#include "support/Probe.h"

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
    EXPECT_EQ(typeNamed("Probe"), Probe::staticType);
    EXPECT_EQ(typeNamed("Probe::Lid"), Probe::Lid::staticType);
    EXPECT_EQ(typeNamed("AbstractProbe::Finish")->getKind(), IReflectedThing::ENUM);
    EXPECT_EQ(typeNamed("doubledNumber")->getKind(), IReflectedThing::FUNCTION);
    EXPECT_EQ(typeNamed("PlainProbe")->getKind(), IReflectedThing::STRUCT);
    EXPECT_FALSE(typeNamed("Millimetres"));
    EXPECT_FALSE(typeNamed("AbstractProbe::Finish::MATT"));
    EXPECT_FALSE(typeNamed("NoSuchClass"));
    EXPECT_FALSE(typeNamed(""));
}

TEST(ReflectionTable, ARecordTellsItsNameItsPlaceAndItsComment)
{
    const ReflectorPtr speed = Probe::staticType->getMember(SCS("getSpeed"));
    EXPECT_EQ(speed->getName(), SCS("getSpeed"));
    EXPECT_EQ(speed->getQualifiedName(), SCS("Probe::getSpeed"));
    EXPECT_EQ(speed->getEnclosingScope(), Probe::staticType);
    EXPECT_TRUE(speed->getDefinitionLocation().startsWith(SCS("tests/support/Probe.h(")));
    EXPECT_EQ(speed->getReflectionProvider(), &getAutoReflector());
    EXPECT_STREQ(record(Probe::staticType).getBriefDescription(),
                 "One member of every kind that the table tells apart, and a journal of what happens to the object.");
    EXPECT_STREQ(record(speed).getArgsString(), "() const");
    EXPECT_EQ(Probe::staticType->getEnclosingScope()->getKind(), IReflectedThing::FILE);
}

TEST(ReflectionTable, OwnMembersStandInDeclarationOrderBeforeInheritedOnes)
{
    const auto names = memberNames(Probe::staticType);
    EXPECT_LT(placeOf(names, "Lid"), placeOf(names, "reach"));
    EXPECT_LT(placeOf(names, "reach"), placeOf(names, "getSpeed"));
    EXPECT_LT(placeOf(names, "getSpeed"), placeOf(names, "setSecret"));
    EXPECT_LT(placeOf(names, "speed"), placeOf(names, "getLabel"));
    EXPECT_LT(placeOf(names, "getLabel"), placeOf(names, "setParent"));
    EXPECT_LT(placeOf(names, "setParent"), std::ptrdiff_t(names.size()));
}

TEST(ReflectionTable, AnOverrideStandsForWhatItOverrides)
{
    const auto names = memberNames(Probe::staticType);
    EXPECT_EQ(std::count(names.begin(), names.end(), "describe"), 1);

    const ReflectorPtr describe = Probe::staticType->getMember(SCS("describe"));
    EXPECT_EQ(describe->getQualifiedName(), SCS("Probe::describe"));
    EXPECT_EQ(describe->getOverriddenThing(), AbstractProbe::staticType->getMember(SCS("describe")));
    EXPECT_FALSE(describe->getOverriddenThing()->getOverriddenThing());
    EXPECT_STREQ(record(describe).getBriefDescription(), "What kind of probe this is.");
}

TEST(ReflectionTable, TheFirstDeclaredOverloadIsTheOneFoundByName)
{
    const ReflectorPtr found = Probe::staticType->getMember(SCS("overloaded"));
    EXPECT_STREQ(record(found).getArgsString(), "(int val)");
    EXPECT_EQ(typeNamed("Probe::overloaded"), found);
}

TEST(ReflectionTable, AThingWithoutThatMemberGivesNull)
{
    EXPECT_FALSE(Probe::staticType->getMember(SCS("noSuchMember")));
    EXPECT_FALSE(Probe::staticType->getMember(String()));
    EXPECT_FALSE(Probe::staticType->getMember(SCS("getSpeed"))->getMember(SCS("getSpeed")));
}

TEST(ReflectionTable, MembersShowTheirAccessAndTheirDispatch)
{
    const auto refs = record(AbstractProbe::staticType).getMemberRefs();
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
    EXPECT_EQ(ref("reach").virt, IReflectedThing::PURE_VIRTUAL);
    EXPECT_TRUE(ref("reach").isConst);
    EXPECT_EQ(ref("describe").virt, IReflectedThing::VIRTUAL);
    EXPECT_EQ(ref("countEdges").prot, IReflectedThing::PROTECTED);
    EXPECT_EQ(ref("getBookkeeping").prot, IReflectedThing::PRIVATE);
    EXPECT_EQ(ref("setLabel").virt, IReflectedThing::NON_VIRTUAL);
}

TEST(ReflectionTable, SubclassesAreKnownAtAnyDepth)
{
    EXPECT_TRUE(Probe::staticType->isSubclassOf(Probe::staticType));
    EXPECT_TRUE(SealedProbe::staticType->isSubclassOf(Object::staticType));
    EXPECT_TRUE(SealedProbe::staticType->isSubclassOf(typeNamed("IReflectableObject")));
    EXPECT_FALSE(AbstractProbe::staticType->isSubclassOf(Probe::staticType));
    EXPECT_FALSE(Probe::Lid::staticType->isSubclassOf(Probe::staticType));
    EXPECT_FALSE(Probe::staticType->isSubclassOf(nullptr));
}

TEST(ReflectionTable, AClassNumberLiesInTheSpanOfEachOfItsBasesAndOfNoOtherClass)
{
    const ReflectorPtr classes[] = {Object::staticType, AbstractProbe::staticType, Probe::staticType,
                                    SealedProbe::staticType, Probe::Lid::staticType};
    for (const ReflectorPtr &one : classes)
    {
        EXPECT_NE(classNumberOf(one), 0u);
        for (const ReflectorPtr &other : classes)
            EXPECT_EQ(record(other).containsClass(classNumberOf(one)), one->isSubclassOf(other));
    }
    EXPECT_EQ(classNumberOf(typeNamed("PlainProbe")), 0u);
    EXPECT_FALSE(record(Object::staticType).containsClass(0));
}

TEST(ReflectionTable, ConcreteClassesAreMadeByNameAndAbstractOnesAreNot)
{
    const Handle<Object> made = typeNamed("Probe")->construct(defaultAllocationCategory);
    ASSERT_TRUE(made.isValid());
    EXPECT_EQ(made.lookup()->getType(), Probe::staticType);
    EXPECT_EQ(handle_cast<Probe>(made).lookup()->getTypedHandle(), handle_cast<Probe>(made));
    made.lookup()->murder();
    cremateDeadObjects();

    const std::size_t before = ObjectMap().getObjectCount();
    EXPECT_FALSE(AbstractProbe::staticType->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(SealedProbe::staticType->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(typeNamed("PlainProbe")->construct(defaultAllocationCategory).isValid());
    EXPECT_FALSE(typeNamed("doubledNumber")->construct(defaultAllocationCategory).isValid());
    EXPECT_EQ(ObjectMap().getObjectCount(), before);
}

TEST(ReflectionTable, SignaturesNameTheReflectedClassesAndEnumsInThem)
{
    const ReflectorPtr nest = Probe::staticType->getMember(SCS("nest"));
    EXPECT_EQ(nest->getArgCount(), 2u);
    EXPECT_EQ(nest->getArgType(0), Probe::staticType);
    EXPECT_EQ(nest->getArgType(1), Probe::staticType);
    EXPECT_FALSE(nest->getArgType(2));
    EXPECT_FALSE(nest->getReturnType());

    const ReflectorPtr getFinish = AbstractProbe::staticType->getMember(SCS("getFinish"));
    EXPECT_EQ(getFinish->getReturnType(), typeNamed("AbstractProbe::Finish"));
    EXPECT_EQ(typeNamed("doubledNumber")->getArgCount(), 1u);
    EXPECT_EQ(Probe::staticType->getMember(SCS("countOf"))->getArgCount(), 1u);
}

TEST(ReflectionProperties, AGetterAndASetterOfOneNameAreAProperty)
{
    const ErrorReturn<PropertyDesc> speed = Probe::staticType->getProperty(SCS("speed"));
    ASSERT_TRUE(speed.succeeded());
    EXPECT_EQ(speed.value.getName(), SCS("speed"));
    EXPECT_EQ(speed.value.getGetter(), Probe::staticType->getMember(SCS("getSpeed")));
    EXPECT_EQ(speed.value.getSetter(), Probe::staticType->getMember(SCS("setSpeed")));
    EXPECT_EQ(speed.value.toString(), SCS("<property speed of Probe>"));
    EXPECT_TRUE(Probe::staticType->getProperty(SCS("label")).succeeded()) << "inherited";
}

TEST(ReflectionProperties, OtherNamesAndCountsAreNone)
{
    for (const char *name : {"corner", "", "Speed", "takesFive", "volume", "noSuchProperty"})
    {
        EXPECT_EQ(Probe::staticType->getProperty(String::copyFrom(name)).code.getCode(), ErrorCode::NO_SUCH_PROPERTY)
            << name;
    }
    EXPECT_EQ(typeNamed("PlainProbe")->getProperty(SCS("corners")).code.getCode(), ErrorCode::NO_SUCH_PROPERTY);
}

TEST(ReflectionProperties, TheListHasTheOrderOfFirstAppearance)
{
    std::vector<std::string> names;
    for (const PropertyDesc &property : Probe::staticType->getPropertyList())
        names.push_back(property.getName().toCString());
    ASSERT_GE(names.size(), 4u);
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 3),
              (std::vector<std::string>{"awake", "speed", "limit"}));
    EXPECT_LT(placeOf(names, "label"), placeOf(names, "parent"));
    EXPECT_EQ(std::count(names.begin(), names.end(), "label"), 1);
}
