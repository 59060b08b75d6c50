#include "object/reflection/DoxyElement.h"

#include "object/reflection/AutoReflector.h"
#include "object/reflection/SavedArguments.h"

#include <cctype>

namespace
{
/// The name of the property that a function's name stands for: the part behind the prefix, first letter lowered.
String propertyNameOf(const char *functionName)
{
    std::string property(functionName + 3);
    property[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(property[0])));
    return String::copyFrom(property).intern();
}
} // namespace

String DoxyElement::toString() const
{
    return getQualifiedName();
}

String DoxyElement::getName() const
{
    return SCS(name);
}

String DoxyElement::getQualifiedName() const
{
    return SCS(qualifiedName);
}

IReflectedThing::Kind DoxyElement::getKind() const
{
    return kind;
}

IReflectionProvider *DoxyElement::getReflectionProvider() const
{
    return &getAutoReflector();
}

ReflectorPtr DoxyElement::getEnclosingScope() const
{
    return ReflectorPtr(StaticThing(), context.scope);
}

String DoxyElement::getDefinitionLocation() const
{
    return SCS(locationstr);
}

DoxyElement::Caches &DoxyElement::getCaches() const
{
    if (!caches) [[unlikely]]
        caches = new Caches;
    return *caches;
}

ReflectorPtr DoxyElement::getMember(String memberName) const
{
    return ReflectorPtr(StaticThing(), findMember(memberName));
}

void DoxyElement::indexMembers() const
{
    NameMap<const DoxyElement *> &memberIndex = getCaches().memberIndex;
    for (int i = 0; i < memberCount; ++i)
        memberIndex.insert(SCS(members[i].obj->name), members[i].obj);
    getCaches().membersIndexed = true;
}

IReflectedThing::MemberList DoxyElement::getMemberList() const
{
    MemberList &memberListCache = getCaches().memberListCache;
    if (memberListCache.empty())
    {
        memberListCache.reserve(memberCount);
        for (int i = 0; i < memberCount; ++i)
            memberListCache.push_back(ReflectorPtr(members[i].obj));
    }
    return memberListCache;
}

IReflectedThing::PropertyList DoxyElement::getPropertyList() const
{
    collectProperties();
    return getCaches().propertyListCache;
}

ErrorReturn<PropertyDesc> DoxyElement::getProperty(const String &propertyName) const
{
    if (const PropertyDesc *found = findProperty(propertyName))
        return *found;
    return ErrorCode(ErrorCode::NO_SUCH_PROPERTY);
}

void DoxyElement::collectProperties() const
{
    if (getCaches().propertiesCollected)
        return;
    getCaches().propertiesCollected = true;
    PropertyList &propertyListCache = getCaches().propertyListCache;

    for (int i = 0; i < memberCount; ++i)
    {
        const DoxyElement &member = *members[i].obj;
        const std::string_view memberName(member.name);
        if (member.kind != FUNCTION || memberName.size() <= 3 || !member.takesThis() || !member.isCallable())
            continue;
        // An overload behind the first adds nothing: the first half of each pair stays.
        if (memberName.starts_with("get") && member.getArgCount() == 1)
        {
            PropertyDesc &property = propertyListCache[ensurePropertyDescCreated(propertyNameOf(member.name))];
            if (!property.getGetter())
                property.setGetter(ReflectorPtr(&member));
        }
        else if (memberName.starts_with("set") && member.getArgCount() == 2)
        {
            PropertyDesc &property = propertyListCache[ensurePropertyDescCreated(propertyNameOf(member.name))];
            if (!property.getSetter())
                property.setSetter(ReflectorPtr(&member));
        }
    }
}

std::size_t DoxyElement::ensurePropertyDescCreated(const String &propertyName) const
{
    PropertyList &propertyListCache = getCaches().propertyListCache;
    const std::size_t index = getCaches().properties.insert(propertyName, propertyListCache.size());
    if (index == propertyListCache.size())
        propertyListCache.push_back(PropertyDesc(propertyName));
    return index;
}

std::int64_t DoxyElement::getEnumValue() const
{
    return enumValue;
}

ReflectorPtr DoxyElement::getOverriddenThing() const
{
    return ReflectorPtr(StaticThing(), context.overridden);
}

std::size_t DoxyElement::getArgCount() const
{
    return paramCount + (context.takesThis ? 1 : 0);
}

ReflectorPtr DoxyElement::getReturnType() const
{
    return ReflectorPtr(StaticThing(), context.returnType);
}

ReflectorPtr DoxyElement::getArgType(std::size_t arg) const
{
    if (arg >= getArgCount())
        return nullptr;
    if (context.takesThis && arg == 0)
        return ReflectorPtr(StaticThing(), context.scope);
    const std::size_t parameter = context.takesThis ? arg - 1 : arg;
    return ReflectorPtr(StaticThing(), context.argTypes ? context.argTypes[parameter] : nullptr);
}

ErrorReturn<Variant> DoxyElement::do_call(SavedArguments &args) const
{
    return function_invoker ? function_invoker(args) : ErrorReturn<Variant>(ErrorCode::NOT_CALLABLE);
}

Handle<Object> DoxyElement::construct_a(IAllocator &allocator, AllocationCategory &category) const
{
    return constructor_invoker ? constructor_invoker(allocator, category) : Handle<Object>();
}

bool DoxyElement::isSubclassOf(const ReflectorPtr &possibleSuperclass) const
{
    if (possibleSuperclass.get() == this)
        return true;
    for (int i = 0; i < allBaseCount; ++i)
    {
        if (allBases[i].obj == possibleSuperclass.get())
            return true;
    }
    return false;
}
