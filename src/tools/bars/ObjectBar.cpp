#include "tools/bars/ObjectBar.h"

#include "tools/bars/BarParams.h"
#include "tools/bars/BarValues.h"
#include "tools/bars/ObjectPath.h"
#include "tools/bars/Subscriptions.h"
#include "tools/bars/TweakSystem.h"

#include "ai/trees/BTComponent.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "port/tweakbar/TweakBar.h"

#include <algorithm>
#include <cstdio>

namespace
{
constexpr int LONGEST_LIST = 8; ///< rows of children or handlers that show without scrolling

/// "lamp/transform: TransformComponent": what a component belongs to says more than its own name.
String titleOf(const Object &object)
{
    const auto parent = object.getParent().lookup();
    const bool isDeep = parent && parent->getParent().isValid();
    return String::format("%s%s%s: %s", isDeep ? parent->getName().toCString() : "", isDeep ? "/" : "",
                          object.getName().toCString(), object.getType()->getName().toCString());
}

bool isComponent(const Object &object)
{
    return object.getType()->isSubclassOf(AbstractComponent::staticType);
}
} // namespace

ObjectBar::ObjectBar(const Handle<Object> &object) : object(object), path(objectPath(object))
{
    const auto target = object.lookup();
    bar = TwNewBar(String::format("object %u", object.getNumber()).toCString());
    setText(nullptr, "label", titleOf(*target));
    addHead();
    if (const auto *const transform = componentOf<TransformComponent>(object, ComponentKeys::transform))
    {
        place = std::make_unique<PlaceLines>(object, ::getHandle(transform));
        place->addTo(bar);
    }
    addPropertyLines(bar, object, "", String(), lines);
    addComponents();
    addSubscriptions();
    addChildren();
}

ObjectBar::~ObjectBar()
{
    TwDeleteBar(bar);
}

void ObjectBar::setText(const char *line, const char *parameter, const String &text)
{
    BarParams::setText(bar, line, parameter, text);
}

void ObjectBar::addButton(const char *name, const char *help, void (*pressed)(void *), bool beside)
{
    const std::string line = std::string("head ") + name; // a property may have the same name
    TwAddButton(bar, line.c_str(), pressed, this);
    setText(line.c_str(), "label", String::copyFrom(name));
    setText(line.c_str(), "help", String::copyFrom(help));
    BarParams::setNumber(bar, line.c_str(), "sameline", beside);
}

void ObjectBar::addHead()
{
    addButton(
        "parent", "Opens the bar of what it stands below.",
        [](void *self)
        {
            if (const auto live = static_cast<ObjectBar *>(self)->object.lookup(); live && live->getParent().isValid())
                getSystemDeref<TweakSystem>().addBar(live->getParent());
        },
        false);
    addButton(
        "copy as Python", "Copies the call that made it, or its path where no pattern did.",
        [](void *self)
        {
            TweakSystem &tweaks = getSystemDeref<TweakSystem>();
            tweaks.copy(tweaks.tell(static_cast<ObjectBar *>(self)->object, SCS("call")));
        },
        true);
    addButton(
        "copy place", "Copies the file and line of the script that made it.",
        [](void *self)
        {
            TweakSystem &tweaks = getSystemDeref<TweakSystem>();
            tweaks.copy(tweaks.tell(static_cast<ObjectBar *>(self)->object, SCS("place")));
        },
        true);
    origin = getSystemDeref<TweakSystem>().tell(object, SCS("place"));
    tellPath();
    if (!componentOf<BTComponent>(object, ComponentKeys::behaviors))
        return;
    TwAddVarCB(
        bar, "head why", TW_TYPE_STDSTRING, nullptr,
        [](void *value, void *self)
        {
            BTComponent *const mind =
                componentOf<BTComponent>(static_cast<ObjectBar *>(self)->object, ComponentKeys::behaviors);
            BarValues::toBar(mind ? mind->getWhy() : String(), value);
        },
        this);
    setText("head why", "label", String());
    setText("head why", "help", SCS("What the creature does and why."));
}

void ObjectBar::tellPath()
{
    setText(nullptr, "help", origin.empty() ? path : path + SCS("\n") + origin);
}

void ObjectBar::followPath()
{
    if (path.startsWith(WellKnownPaths::currentLevel) || path.startsWith(WellKnownPaths::systems) || !object.isValid())
        return;
    path = objectPath(object);
    tellPath();
}

void ObjectBar::addComponents()
{
    if (!object.lookup()->getType()->isSubclassOf(Entity::staticType))
        return;
    const Object::ChildList children(object.lookup()->children_begin(), object.lookup()->children_end());
    for (const Handle<Object> &child : children)
    {
        const auto component = child.lookup();
        if (!component || !isComponent(*component))
            continue;
        const String key = component->getName();
        const String heading = String::format("%s: %s", key.toCString(), component->getType()->getName().toCString());
        addPropertyLines(bar, child, std::string(key.toCString()) + "/", heading, lines);
    }
}

void ObjectBar::addSubscriptions()
{
    subscriptions = subscriptionsOf(object);
    if (subscriptions.empty())
        return;
    const TwListCallbacks list = {
        [](void *self) { return static_cast<unsigned>(static_cast<ObjectBar *>(self)->subscriptions.size()); },
        [](unsigned index, TwListRow *row, void *self)
        {
            std::snprintf(row->text, sizeof(row->text), "%s",
                          static_cast<ObjectBar *>(self)->subscriptions[index].toCString());
        },
        [](unsigned index, int, void *self)
        { getSystemDeref<TweakSystem>().copy(static_cast<ObjectBar *>(self)->subscriptions[index]); }};
    TwAddListCB(bar, "messages", &list, this);
    setText("messages", "label", String());
    setText("messages", "group", SCS("Messages that it hears"));
    BarParams::setNumber(bar, "messages", "rows", std::min(static_cast<int>(subscriptions.size()), LONGEST_LIST));
}

void ObjectBar::addChildren()
{
    const std::size_t count = object.lookup()->getChildCount();
    if (count == 0)
        return;
    const TwListCallbacks list = {
        [](void *self)
        {
            const auto live = static_cast<ObjectBar *>(self)->object.lookup();
            return live ? static_cast<unsigned>(live->getChildCount()) : 0u;
        },
        [](unsigned index, TwListRow *row, void *self) { static_cast<ObjectBar *>(self)->fillChild(index, *row); },
        [](unsigned index, int, void *self) { static_cast<ObjectBar *>(self)->openChild(index); }};
    TwAddListCB(bar, "children", &list, this);
    setText("children", "label", String());
    setText("children", "group", SCS("Below it"));
    BarParams::setNumber(bar, "children", "rows", static_cast<int>(std::min<std::size_t>(count, LONGEST_LIST)));
}

void ObjectBar::fillChild(unsigned index, TwListRow &row) const
{
    const auto live = object.lookup();
    if (!live || index >= live->getChildCount())
        return;
    if (const auto child = (live->children_begin() + index)->lookup())
        std::snprintf(row.text, sizeof(row.text), "%s  (%s)", child->getName().toCString(),
                      child->getType()->getName().toCString());
}

void ObjectBar::openChild(unsigned index) const
{
    const auto live = object.lookup();
    if (live && index < live->getChildCount())
        getSystemDeref<TweakSystem>().addBar(*(live->children_begin() + index));
}

bool ObjectBar::isOpen() const
{
    return BarParams::isVisible(bar);
}

void ObjectBar::show()
{
    BarParams::setNumber(bar, nullptr, "visible", 1);
    BarParams::setNumber(bar, nullptr, "front", 1);
}

void ObjectBar::hide()
{
    BarParams::setNumber(bar, nullptr, "visible", 0);
}

bool ObjectBar::setRange(const String &property, double min, double max)
{
    return BarParams::setRange(bar, property.toCString(), min, max);
}
