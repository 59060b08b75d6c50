#include "tools/bars/ObjectBar.h"

#include "tools/bars/BarValues.h"
#include "tools/bars/ObjectPath.h"

#include "object/reflection/DoxyElement.h"
#include "object/tree/Object.h"
#include "object/reflection/SavedArguments.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cstring>

namespace
{
const DoxyElement *recordOf(const ReflectorPtr &thing)
{
    return dynamic_cast<const DoxyElement *>(thing.get());
}

/// Whether calling the getter leaves the object as it is, as far as its declaration promises.
bool isSafeToRead(const DoxyElement &type, const PropertyDesc &desc)
{
    if (!desc.getGetter())
        return false;
    if (desc.getSetter())
        return true;
    for (const DoxyRef &member : type.getMemberRefs())
        if (member.obj == desc.getGetter().get())
            return member.isConst;
    return false;
}

bool endsWith(const std::string &text, const char *end)
{
    const std::size_t length = std::strlen(end);
    return text.size() >= length && text.compare(text.size() - length, length, end) == 0;
}

bool isColorName(const std::string &name)
{
    return endsWith(name, "olor") || endsWith(name, "olour");
}

/// The bar type of a reflected enum.
TwType barTypeOf(const ReflectorPtr &enumeration)
{
    const IReflectedThing::MemberList members = enumeration->getMemberList();
    std::vector<TwEnumVal> values;
    std::vector<String> texts; // keeps the labels while they are handed over
    for (const ReflectorPtr &member : members)
    {
        texts.push_back(member->getName());
        values.push_back({member->getEnumValue(), texts.back().toCString()});
    }
    return TwDefineEnum(enumeration->getQualifiedName().toCString(), values.data(),
                        static_cast<unsigned>(values.size()));
}

bool isEnum(const ReflectorPtr &type)
{
    return type && type->getKind() == IReflectedThing::ENUM;
}

const char *typeName(const Variant &value)
{
    static constexpr const char *names[Variant::VT_NUM_TYPES] = {"value",           "whole number", "bool", "number",
                                                                 "reflected thing", "object",       "text", "Vec4",
                                                                 "script object",   "Quaternion"};
    return names[value.getType()];
}

/// "lamp/transform: TransformComponent": what a component belongs to says more than its own name.
String titleOf(const Object &object)
{
    const auto parent = object.getParent().lookup();
    const bool isDeep = parent && parent->getParent().isValid();
    return String::format("%s%s%s: %s", isDeep ? parent->getName().toCString() : "", isDeep ? "/" : "",
                          object.getName().toCString(), object.getType()->getName().toCString());
}
} // namespace

ObjectBar::ObjectBar(const Handle<Object> &object, Opener open) : object(object), open(std::move(open))
{
    const auto target = object.lookup();
    const DoxyElement *type = recordOf(target->getType());
    bar = TwNewBar(String::format("object %u", object.getNumber()).toCString());
    TwSetParam(bar, nullptr, "label", TW_PARAM_CSTRING, 1, titleOf(*target).toCString());
    TwSetParam(bar, nullptr, "help", TW_PARAM_CSTRING, 1, objectPath(object).toCString());
    if (!type)
        return; // a class of a script's own: nothing is known of it
    for (const PropertyDesc &desc : type->getPropertyList())
        if (isSafeToRead(*type, desc))
            addProperty(*type, desc);
}

ObjectBar::~ObjectBar()
{
    TwDeleteBar(bar);
}

bool ObjectBar::isOpen() const
{
    int visible = 0;
    return TwGetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible) && visible;
}

void ObjectBar::show()
{
    setVisible(true);
}

void ObjectBar::hide()
{
    setVisible(false);
}

void ObjectBar::setVisible(bool val)
{
    const int visible = val;
    TwSetParam(bar, nullptr, "visible", TW_PARAM_INT32, 1, &visible);
}

bool ObjectBar::setRange(const String &property, double min, double max)
{
    return TwSetParam(bar, property.toCString(), "min", TW_PARAM_DOUBLE, 1, &min) &&
           TwSetParam(bar, property.toCString(), "max", TW_PARAM_DOUBLE, 1, &max);
}

void ObjectBar::addProperty(const DoxyElement &type, const PropertyDesc &desc)
{
    auto property = std::make_unique<Property>(Property{this, desc, std::string(desc.getName().toCString()), String()});
    const ErrorReturn<Variant> value = property->read();
    // Not every function named like a getter is one: some want arguments, some give what no Variant holds.
    if (!value.succeeded() && value.code.getCode() != ErrorCode::BAD_HANDLE)
        return;
    const bool isItself = value.value.getType() == Variant::VT_HANDLE && value.value.as<Handle<Object>>() == object;
    if (isItself || !addVariable(*property, value.value))
        return;
    describe(*property, value.value);
    properties.push_back(std::move(property));
}

bool ObjectBar::addVariable(Property &property, const Variant &value)
{
    const bool canSet = static_cast<bool>(property.desc.getSetter());
    const auto add = [&]<class T>(TwType type, T *)
    { return TwAddVarCB(bar, property.name.c_str(), type, canSet ? &setValue<T> : nullptr, &getValue<T>, &property); };
    const ReflectorPtr type = property.desc.getGetter()->getReturnType();
    switch (value.getType())
    {
    case Variant::VT_BOOL:
        return add(TW_TYPE_BOOLCPP, static_cast<bool *>(nullptr));
    case Variant::VT_INT64:
        return add(isEnum(type) ? barTypeOf(type) : TW_TYPE_INT64, static_cast<std::int64_t *>(nullptr));
    case Variant::VT_FLOAT:
        return add(TW_TYPE_DOUBLE, static_cast<double *>(nullptr));
    case Variant::VT_STRING:
        return add(TW_TYPE_STDSTRING, static_cast<String *>(nullptr));
    case Variant::VT_VECTOR:
        return add(isColorName(property.name) ? TW_TYPE_COLOR4F : TW_TYPE_VEC4F, static_cast<Vec4 *>(nullptr));
    case Variant::VT_QUATERNION:
        return add(TW_TYPE_QUAT4F, static_cast<Quaternion *>(nullptr));
    case Variant::VT_HANDLE:
        return TwAddLinkCB(bar, property.name.c_str(), &getDescription, &followLink, &property);
    default:
        return TwAddVarCB(bar, property.name.c_str(), TW_TYPE_STDSTRING, nullptr, &getDescription, &property);
    }
}

void ObjectBar::describe(const Property &property, const Variant &value)
{
    const DoxyElement *getter = recordOf(property.desc.getGetter());
    const DoxyElement *setter = recordOf(property.desc.getSetter());
    if (!getter)
        return;
    const char *comment = getter->getBriefDescription();
    if (setter && !*comment)
        comment = setter->getBriefDescription();
    const ReflectorPtr type = getter->getReturnType();
    const String typeText = type ? type->getQualifiedName() : String::copyFrom(typeName(value));
    setText(
        property, "help",
        String::format("%s%s%s%s", comment, *comment ? "\n" : "", typeText.toCString(), setter ? "" : ", read only"));
    if (const ReflectorPtr scope = getter->getEnclosingScope())
        setText(property, "group", scope->getName());
}

void ObjectBar::setText(const Property &property, const char *parameter, const String &text)
{
    TwSetParam(bar, property.name.c_str(), parameter, TW_PARAM_CSTRING, 1, text.toCString());
}

ErrorReturn<Variant> ObjectBar::Property::read() const
{
    return desc.getGetter()->call(owner->object);
}

void ObjectBar::Property::write(const Variant &value)
{
    const auto target = owner->object.lookup();
    const ErrorCode code =
        target ? target->setPropertyValue(desc.getName(), value, true) : ErrorCode(ErrorCode::BAD_HANDLE);
    const String now = code.succeeded() ? String() : SCS("not set: ") + code.toString();
    if (now == failure)
        return;
    failure = now;
    owner->setText(*this, "error", failure);
}

template <class T>
void ObjectBar::getValue(void *value, void *clientData)
{
    const ErrorReturn<Variant> read = static_cast<const Property *>(clientData)->read();
    if (!read.succeeded())
        return; // the object died: the bar goes with the frame
    const ErrorReturn<T> typed = read.value.get<T>();
    if (typed.succeeded())
        BarValues::toBar(typed.value, value);
}

template <class T>
void ObjectBar::setValue(const void *value, void *clientData)
{
    static_cast<Property *>(clientData)->write(Variant(BarValues::fromBar<T>(value)));
}

void ObjectBar::getDescription(void *value, void *clientData)
{
    const ErrorReturn<Variant> read = static_cast<const Property *>(clientData)->read();
    BarValues::toBar(read.succeeded() ? BarValues::describe(read.value) : read.code.toString(), value);
}

void ObjectBar::followLink(void *clientData)
{
    const Property &property = *static_cast<const Property *>(clientData);
    const ErrorReturn<Variant> read = property.read();
    if (read.succeeded() && read.value.getType() == Variant::VT_HANDLE)
        property.owner->open(read.value.as<Handle<Object>>());
}
