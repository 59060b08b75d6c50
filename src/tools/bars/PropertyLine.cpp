#include "tools/bars/PropertyLine.h"

#include "tools/bars/BarParams.h"
#include "tools/bars/BarValues.h"
#include "tools/bars/PythonText.h"
#include "tools/bars/TweakSystem.h"

#include "object/reflection/DoxyElement.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/Object.h"
#include "port/tweakbar/TweakBar.h"

#include <utility>

namespace
{
constexpr const char *MENU = "Watch, or no longer\nCopy the line that sets it\nCopy the value";

const DoxyElement *recordOf(const ReflectorPtr &thing)
{
    return dynamic_cast<const DoxyElement *>(thing.get());
}

bool isColorName(const std::string &name)
{
    return name.ends_with("olor") || name.ends_with("olour");
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
} // namespace

PropertyLine::PropertyLine(const Handle<Object> &object, const PropertyDesc &desc, std::string name)
    : object(object), desc(desc), name(std::move(name))
{
}

bool PropertyLine::isSafeToRead(const DoxyElement &type, const PropertyDesc &desc)
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

bool PropertyLine::addTo(TwBar *newBar)
{
    bar = newBar;
    const ErrorReturn<Variant> value = read();
    // Not every function named like a getter is one: some want arguments, some give what no Variant holds.
    if (!value.succeeded() && value.code.getCode() != ErrorCode::BAD_HANDLE)
        return false;
    const bool isItself = value.value.getType() == Variant::VT_HANDLE && value.value.as<Handle<Object>>() == object;
    if (isItself || !addVariable(value.value))
        return false;
    describe(value.value);
    setLabel(desc.getName());
    TwSetEditedCB(bar, name.c_str(), [](void *self) { static_cast<PropertyLine *>(self)->finishEdit(); });
    TwSetMenuCB(bar, name.c_str(), MENU, [](int line, void *self) { static_cast<PropertyLine *>(self)->choose(line); });
    return true;
}

template <class T>
bool PropertyLine::add(int type)
{
    const bool canSet = static_cast<bool>(desc.getSetter());
    return TwAddVarCB(bar, name.c_str(), static_cast<TwType>(type), canSet ? &setValue<T> : nullptr, &getValue<T>,
                      this) != 0;
}

bool PropertyLine::addVariable(const Variant &value)
{
    const ReflectorPtr type = desc.getGetter()->getReturnType();
    switch (value.getType())
    {
    case Variant::VT_BOOL:
        return add<bool>(TW_TYPE_BOOLCPP);
    case Variant::VT_INT64:
        return add<std::int64_t>(isEnum(type) ? barTypeOf(type) : TW_TYPE_INT64);
    case Variant::VT_FLOAT:
        return add<double>(TW_TYPE_DOUBLE);
    case Variant::VT_STRING:
        return add<String>(TW_TYPE_STDSTRING);
    case Variant::VT_VECTOR:
        return add<Vec4>(isColorName(desc.getName().toCString()) ? TW_TYPE_COLOR4F : TW_TYPE_VEC4F);
    case Variant::VT_QUATERNION:
        return add<Quaternion>(TW_TYPE_QUAT4F);
    case Variant::VT_HANDLE:
        return TwAddLinkCB(bar, name.c_str(), &getDescription, &followLink, this) != 0;
    default:
        return TwAddVarCB(bar, name.c_str(), TW_TYPE_STDSTRING, nullptr, &getDescription, this) != 0;
    }
}

void PropertyLine::describe(const Variant &value)
{
    const DoxyElement *getter = recordOf(desc.getGetter());
    const DoxyElement *setter = recordOf(desc.getSetter());
    if (!getter)
        return;
    const char *comment = getter->getBriefDescription();
    if (setter && !*comment)
        comment = setter->getBriefDescription();
    const ReflectorPtr type = getter->getReturnType();
    const String typeText = type ? type->getQualifiedName() : String::copyFrom(typeName(value));
    setText("help", String::format("%s%s%s%s\nRight click: watch it, copy it.", comment, *comment ? "\n" : "",
                                   typeText.toCString(), setter ? "" : ", read only"));
}

void PropertyLine::setGroup(const String &heading, bool closed)
{
    setText("group", heading);
    BarParams::setNumber(bar, name.c_str(), "closed", closed);
}

void PropertyLine::setText(const char *parameter, const String &text)
{
    BarParams::setText(bar, name.c_str(), parameter, text);
}

ErrorReturn<Variant> PropertyLine::read() const
{
    return desc.getGetter()->call(object);
}

void PropertyLine::showFailure()
{
    const String &now = readFailure.empty() ? failure : readFailure;
    if (now == shownFailure)
        return;
    shownFailure = now;
    setText("error", now);
}

void PropertyLine::write(const Variant &value)
{
    if (!std::exchange(isBegun, true))
        before = read().value;
    const auto target = object.lookup();
    const ErrorCode code =
        target ? target->setPropertyValue(desc.getName(), value, true) : ErrorCode(ErrorCode::BAD_HANDLE);
    isEdited |= code.succeeded();
    failure = code.succeeded() ? String() : SCS("not set: ") + code.toString();
    showFailure();
}

void PropertyLine::finishEdit()
{
    isBegun = false;
    if (std::exchange(isEdited, false) && object.isValid())
        getSystemDeref<TweakSystem>().tellEdited(object, desc.getName(), before, read().value);
}

void PropertyLine::choose(int line)
{
    TweakSystem &tweaks = getSystemDeref<TweakSystem>();
    if (line == 0)
        tweaks.watch(object, desc.getName());
    else if (line == 1)
        tweaks.copy(toPython());
    else
        tweaks.copy(pythonText(read().value, desc.getGetter()->getReturnType()));
}

String PropertyLine::toPython() const
{
    return pythonPath(object) + SCS(".") + desc.getName() + SCS(" = ") +
           pythonText(read().value, desc.getGetter()->getReturnType());
}

template <class T>
void PropertyLine::getValue(void *value, void *self)
{
    auto &line = *static_cast<PropertyLine *>(self);
    const ErrorReturn<Variant> read = line.read();
    const ErrorReturn<T> typed = read.value.get<T>();
    if (read.succeeded() && typed.succeeded())
        BarValues::toBar(typed.value, value);
    // Where the object died the bar goes with the frame.
    line.readFailure =
        read.succeeded() || !line.object.isValid() ? String() : SCS("cannot be read: ") + read.code.toString();
    line.showFailure();
}

template <class T>
void PropertyLine::setValue(const void *value, void *self)
{
    static_cast<PropertyLine *>(self)->write(Variant(BarValues::fromBar<T>(value)));
}

void PropertyLine::getDescription(void *value, void *self)
{
    const ErrorReturn<Variant> read = static_cast<const PropertyLine *>(self)->read();
    BarValues::toBar(read.succeeded() ? BarValues::describe(read.value) : read.code.toString(), value);
}

void PropertyLine::followLink(void *self)
{
    const ErrorReturn<Variant> read = static_cast<const PropertyLine *>(self)->read();
    if (read.succeeded() && read.value.getType() == Variant::VT_HANDLE)
        getSystemDeref<TweakSystem>().addBar(read.value.as<Handle<Object>>());
}

void addPropertyLines(TwBar *bar, const Handle<Object> &object, const std::string &prefix, const String &heading,
                      PropertyLines &lines)
{
    const auto target = object.lookup();
    const DoxyElement *type = target ? recordOf(target->getType()) : nullptr;
    if (!type)
        return; // a class of a script's own: nothing is known of it
    for (const PropertyDesc &desc : type->getPropertyList())
    {
        if (!PropertyLine::isSafeToRead(*type, desc))
            continue;
        auto line = std::make_unique<PropertyLine>(object, desc, prefix + desc.getName().toCString());
        if (!line->addTo(bar))
            continue;
        const ReflectorPtr scope = desc.getGetter()->getEnclosingScope();
        line->setGroup(!heading.empty() || !scope ? heading : scope->getName(), !heading.empty());
        lines.push_back(std::move(line));
    }
}
