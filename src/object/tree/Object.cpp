#include "object/tree/Object.h"

#include "object/reflection/DoxyElement.h"
#include "object/reflection/PartialFunctionApplication.h"
#include "object/reflection/PropertyDesc.h"
#include "object/reflection/Reflection.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/Obituaries.h"
#include "object/tree/TreeWalk.h"
#include "object/tree/WellKnownPaths.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"

#include <algorithm>
#include <cstring>
#include <ctime>

namespace
{
/// A murdered object, and the murder that it was of.
struct Dead
{
    Handle<Object> object;
    std::uint32_t murder;
};

/// Murdered objects that wait for the next cremation, in the order of their deaths.
using MorgueType = std::vector<Dead>;

MorgueType &morgue()
{
    static MorgueType *instance = new MorgueType;
    return *instance;
}

/// The murder of an object whose children are about to go with it; 0 while none is under way.
std::uint32_t presentMurder = 0;

struct PathPrefix
{
    String prefix;
    Handle<Object> (*root)();
};

std::vector<PathPrefix> &pathPrefixes()
{
    static auto *instance = new std::vector<PathPrefix>;
    return *instance;
}
} // namespace

void Object::handleMessage(const Message &) {}

void Object::onMurder() {}

void Object::onLoadComplete() {}

void Object::applyDebugDraw(const Handle<DebugCollectorComponent> &) {}

void Object::onHierarchyChange(Handle<Object>, Handle<Object>) {}

String Object::toString() const
{
    return String::format("<%s: %s instance at 0x%zx>", getName().toCString(), getType()->getName().toCString(),
                          reinterpret_cast<std::size_t>(this));
}

ErrorCode Object::setParent(Handle<Object> newParent)
{
    if (newParent == parent)
        return ErrorCode::SUCCESS;
    if (newParent.isValid() && isAncestorOf(newParent))
    {
        KV_LOGF(Logger_::I_ERROR, "setParent: '%s' cannot hang below '%s', which is the same object or stands below it",
                getName().toCString(), newParent.lookup()->getName().toCString());
        return ErrorCode::BAD_HANDLE;
    }

    const Handle<Object> oldParent = parent;
    if (auto old = oldParent.lookup())
        old->removeChild(this_);
    parent = newParent;
    if (auto next = newParent.lookup())
        next->children.push_back(this_);
    sendHierarchyChangeNotification(this_, oldParent);
    // An object that must keep its place goes back to it when it is told.
    return parent == newParent ? ErrorCode::SUCCESS : ErrorCode::BAD_HANDLE;
}

bool Object::isAncestorOf(const Handle<Object> &other) const
{
    // Most objects are moved before they have children, and then nothing needs to be climbed, however deep the place.
    if (children.empty())
        return other == this_;
    for (auto o = other.lookup(); o; o = o->parent.lookup())
    {
        if (o.ptr == this)
            return true;
    }
    return false;
}

void Object::removeChild(const Handle<Object> &child)
{
    const auto place = std::find(children.begin(), children.end(), child);
    if (place != children.end())
        children.erase(place);
}

void Object::sendHierarchyChangeNotification(const Handle<Object> &reparented, const Handle<Object> &oldParent)
{
    TreeWalk walk(*this);
    while (Object *told = walk.next())
        told->onHierarchyChange(reparented, oldParent);
}

void Object::murder()
{
    if (dying)
        return;
    dying = true;
    presentMurder = Obituaries::noteMurder(*this, false);
    morgue().push_back({this_, presentMurder});
    omnifilicide();
    presentMurder = 0;
}

void Object::omnifilicide()
{
    if (children.empty())
        return;
    const std::uint32_t murder = presentMurder ? presentMurder : Obituaries::noteMurder(*this, true);
    // Parents and last children first, then turned round: each subtree children-first. One that is dying already may
    // have been given children since, so it is passed through.
    static auto *pending = new std::vector<Object *>;
    MorgueType &dead = morgue();
    const auto start = static_cast<std::ptrdiff_t>(dead.size());
    pending->assign(1, this);
    while (!pending->empty())
    {
        Object *o = pending->back();
        pending->pop_back();
        if (o != this && !o->dying)
        {
            o->dying = true;
            dead.push_back({o->this_, murder});
        }
        for (const Handle<Object> &h : o->children)
        {
            if (auto child = h.lookup())
                pending->push_back(child.ptr);
        }
    }
    std::reverse(dead.begin() + start, dead.end());
}

Handle<Object> Object::getAncestorOfType(const ReflectorPtr &type)
{
    if (!type)
        return Handle<Object>();
    for (Object *o = this; o; o = o->parent.lookup().ptr)
    {
        if (isHandleOfType(o->this_, type))
            return o->this_;
    }
    return Handle<Object>();
}

Handle<Object> Object::getAncestorOfType(const String &type)
{
    return getAncestorOfType(Reflection().getType(type));
}

Handle<Object> Object::getChild(const String &childName) const
{
    static const String self = SCS(".");
    static const String up = SCS("..");
    if (childName.empty() || childName == self)
        return this_;
    if (childName == up)
        return parent;
    for (const Handle<Object> &h : children)
    {
        auto child = h.lookup();
        if (child && child->getName() == childName)
            return h;
    }
    return Handle<Object>();
}

Handle<Object> Object::getDescendantByPath(const String &path) const
{
    // A loop, since a script may give a path of any length.
    const Object *start = this;
    std::size_t at = 0;
    while (const void *slash = std::memchr(path.begin() + at, '/', path.size() - at))
    {
        const std::size_t end = static_cast<std::size_t>(static_cast<const char *>(slash) - path.begin());
        start = start->getChild(String::copyFrom(path.begin() + at, end - at)).lookup().ptr;
        if (!start)
            return Handle<Object>();
        at = end + 1;
    }
    return start->getChild(at == 0 ? path : String::copyFrom(path.begin() + at, path.size() - at));
}

String Object::getName() const
{
    if (name.empty())
    {
        name = String::format("unnamed__%s_0x%zx_%llx", getType()->getQualifiedName().toCString(),
                              reinterpret_cast<std::size_t>(this), static_cast<unsigned long long>(std::time(nullptr)));
    }
    return name;
}

void Object::setName(const String &newName)
{
    if (newName == name)
        return;
    if (std::memchr(newName.begin(), '/', newName.size()))
        KV_LOGF(Logger_::I_WARNING, "The name '%s' holds a '/', which separates names in a path: no path leads there",
                newName.toCString());
    name = newName;
}

namespace
{
/// A property of an object's class, borrowed; null for an unknown name. The class of an object is always a record.
const PropertyDesc *findProperty(const Object &object, const String &name)
{
    return static_cast<const DoxyElement &>(*object.getType()).findProperty(name);
}
} // namespace

ErrorReturn<Variant> Object::getPropertyValue(const String &propertyName) const
{
    const PropertyDesc *property = findProperty(*this, propertyName);
    if (!property)
        return ErrorCode(ErrorCode::NO_SUCH_PROPERTY);
    if (!property->getGetter())
        return ErrorCode(ErrorCode::PROPERTY_NOT_READABLE);
    return property->getGetter()->call(this_);
}

ErrorCode Object::setPropertyValue(const String &propertyName, const Variant &value, bool markForSaving)
{
    const PropertyDesc *property = findProperty(*this, propertyName);
    if (!property)
        return ErrorCode::NO_SUCH_PROPERTY;
    if (!property->getSetter())
        return ErrorCode::PROPERTY_NOT_WRITABLE;

    const ErrorCode code = property->getSetter()->call(this_, value).code;
    if (code.succeeded() && markForSaving && !pattern.isNone() && pythonConversions.markPropertyEdited &&
        !pythonConversions.markPropertyEdited(pattern, propertyName))
    {
        KV_LOG(Logger_::I_CRITICAL, String::format("Failed to set pattern property `%s' of object %s",
                                                   propertyName.toCString(), toString().toCString()));
    }
    return code;
}

ReflectorPtr Object::bind(String function) const
{
    const ReflectorPtr member = getType()->getMember(function);
    if (!member)
    {
        KV_LOG(Logger_::I_ERROR, String::format("%s has no member '%s' to bind",
                                                getType()->getQualifiedName().toCString(), function.toCString()));
        return nullptr;
    }
    return PartialFunctionApplication::construct(member, this_);
}

void Object::addToPersistentStateNoArgs(String funcName)
{
    recordPersistentCall(funcName, SavedArguments::of());
}

void Object::addToPersistentStateOneArg(String funcName, const Variant &arg)
{
    recordPersistentCall(funcName, SavedArguments::of(arg));
}

void Object::addToPersistentStateTwoArgs(String funcName, const Variant &argOne, const Variant &argTwo)
{
    recordPersistentCall(funcName, SavedArguments::of(argOne, argTwo));
}

namespace
{
PersistentCallRecorder persistentCallRecorder = nullptr;
}

void setPersistentCallRecorder(PersistentCallRecorder recorder)
{
    persistentCallRecorder = recorder;
}

void Object::recordPersistentCall(const String &funcName, const SavedArguments &arguments)
{
    static const String coordinatorClass = SCS("Coordinator");
    auto level = getAncestorOfType(coordinatorClass).lookup();
    if (!level || !persistentCallRecorder)
        return;
    const Handle<Object> store = level->getDescendantByPath(WellKnownPaths::persistentStateComponent);
    if (store.isValid())
        persistentCallRecorder(store, this_, funcName, arguments);
}

Handle<Object> getObjectByPath(const String &path, const Handle<Object> &relativeTo)
{
    for (const PathPrefix &entry : pathPrefixes())
    {
        if (!path.startsWith(entry.prefix))
            continue;
        auto root = entry.root().lookup();
        return root ? root->getDescendantByPath(path.slice(entry.prefix.size())) : Handle<Object>();
    }
    auto start = relativeTo.lookup();
    return start ? start->getDescendantByPath(path) : Handle<Object>();
}

void registerPathPrefix(const String &prefix, Handle<Object> (*root)())
{
    for (PathPrefix &entry : pathPrefixes())
    {
        if (entry.prefix == prefix)
        {
            entry.root = root;
            return;
        }
    }
    pathPrefixes().push_back({prefix, root});
}

void cremateDeadObjects()
{
    if (CremationHold::isActive())
    {
        KV_LOG(Logger_::I_WARNING,
               "Cremation waits for the end of the frame: a script that the engine called asked for it");
        return;
    }
    MorgueType batch;
    batch.swap(morgue());
    if (batch.empty())
        return;

    for (const Dead &dead : batch)
        if (const auto o = dead.object.lookup())
            Obituaries::noteCremation(*o, o->name, dead.murder);
    for (const Dead &dead : batch)
    {
        if (auto o = dead.object.lookup())
            o->onMurder();
    }
    for (const Dead &dead : batch)
    {
        const Handle<Object> &h = dead.object;
        auto o = h.lookup();
        if (!o)
            continue;
        o->setParent(Handle<Object>());
        o->~Object();
        deallocate(o.ptr);
        ObjectMap().deregisterHandle(h);
    }

    // The batch's memory serves the next deaths, so that a frame in which objects die allocates nothing for it.
    batch.clear();
    if (morgue().empty())
        batch.swap(morgue());
}
