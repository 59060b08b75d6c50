// Object: base of everything long-lived, in one tree with names and paths.
#pragma once

#include "object/tree/Handle.h"
#include "object/tree/IReflectableObject.h"
#include "object/tree/KvReflected.h"
#include "object/tree/PythonObject.h"

#include "foundation/Allocators.h"
#include "foundation/ErrorCode.h"
#include "foundation/IStringizable.h"
#include "foundation/KVString.h"

#include <vector>

class DebugCollectorComponent;
class Message;
class SavedArguments;
class Variant;

/// A node of the object tree: it has a name, a parent, children in order of arrival, and a class known at run time.
///
/// Made by its class's record or `construct`, never on the stack and never by `new`; `murder` marks it and its subtree,
/// and `cremateDeadObjects` destroys what was marked, so that a handle goes invalid only between frames. Everything
/// that refers to an object holds a Handle. A constructor has neither name nor parent yet: setting up against other
/// objects belongs in `onLoadComplete`. A destructor may not use other objects; undoing belongs in `onMurder`.
class Object : public IReflectableObject, public IStringizable
{
    KV_REFLECTED(Object)
public:
    using ChildList = std::vector<Handle<Object>>;

    Object() = default;
    Object(const Object &) = delete;
    Object &operator=(const Object &) = delete;
    ~Object() override = default;

    /// Receives a message addressed to this object; does nothing here.
    virtual void handleMessage(const Message &m);
    /// Undoes what this object registered elsewhere; runs at cremation, when all objects of the batch still exist.
    virtual void onMurder();
    /// Finishes loading; called by the loader scripts when the tree and its properties stand.
    virtual void onLoadComplete();
    /// Draws this object's debug geometry into a collector; draws nothing here.
    virtual void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc);
    /// Told that an object of this one's ancestry, or this one itself, has moved in the tree.
    /// @param reparentedObject  the object whose parent changed
    /// @param newParent         its former parent, despite the name
    virtual void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent);

    /// "<name: class instance at 0xaddress>".
    virtual String toString() const;

    /// This object's own handle.
    Handle<Object> getHandle() const { return this_; }
    /// The handle of an object under its static class; call as `getHandle(this)`.
    template <class T>
    static Handle<T> getHandle(const T *object)
    {
        return unchecked_handle_cast<T>(object->getHandle());
    }
    /// The parent, or an invalid handle at the top of a tree.
    Handle<Object> getParent() const { return parent; }
    /// Moves this object under another parent, behind its present children; an invalid handle takes it out of the tree.
    ///
    /// The whole subtree is told through `onHierarchyChange`. The present parent changes nothing and tells nobody.
    /// @return BAD_HANDLE, with an error logged, for a parent that this object cannot have: itself, what stands below
    ///         it, for a system any but the one of all systems
    ErrorCode setParent(Handle<Object> newParent);

    /// Marks this object and its subtree for death at the next cremation; once marked there is no way back.
    void murder();
    /// Murders all children and leaves this object alive.
    void omnifilicide();
    /// Whether this object has been murdered and waits for its cremation.
    bool isDying() const { return dying; }

    /// The nearest of this object and its ancestors that is of a class, or an invalid handle.
    Handle<Object> getAncestorOfType(const ReflectorPtr &type);
    /// The nearest of this object and its ancestors that is of the class of this name, or an invalid handle.
    Handle<Object> getAncestorOfType(const String &type);
    template <class T>
    Handle<T> getAncestorOfType()
    {
        return unchecked_handle_cast<T>(getAncestorOfType(T::staticType));
    }

    ChildList::iterator children_begin() { return children.begin(); }
    ChildList::iterator children_end() { return children.end(); }
    ChildList::const_iterator children_begin() const { return children.begin(); }
    ChildList::const_iterator children_end() const { return children.end(); }
    std::size_t getChildCount() const { return children.size(); }

    /// The first child of a name; "" and "." give this object, ".." its parent. Invalid if there is none.
    Handle<Object> getChild(const String &name) const;
    /// The object at a path of child names with "/" between them, starting here. Invalid if a step is missing.
    Handle<Object> getDescendantByPath(const String &path) const;

    /// The object's name; the first read of an unnamed object makes one up that stays.
    String getName() const;
    /// Names the object; an empty name makes it unnamed again.
    ///
    /// A name with a "/" is warned of: no path leads to what has one.
    void setName(const String &newName);

    /// Reads a property by name: NO_SUCH_PROPERTY, PROPERTY_NOT_READABLE, or what the getter gives.
    ErrorReturn<Variant> getPropertyValue(const String &name) const;
    /// Writes a property by name: NO_SUCH_PROPERTY, PROPERTY_NOT_WRITABLE, or what the setter's call gives.
    /// @param markForSaving  note the property on the object's pattern, so that the editor saves it
    ErrorCode setPropertyValue(const String &name, const Variant &value, bool markForSaving = false);
    /// A callable of a method of this object that outlives the caller; null, with an error logged, for an unknown name.
    ReflectorPtr bind(String function) const;

    /// The script object that built this object; None if native code did.
    PythonObject getPattern() const { return pattern; }
    void setPattern(const PythonObject &val) { pattern = val; }

    /// Notes a call of a method of this object to be repeated when its map is loaded again.
    ///
    /// Does nothing in a level that keeps no persistent state.
    void addToPersistentStateNoArgs(String funcName);
    void addToPersistentStateOneArg(String funcName, const Variant &arg);
    void addToPersistentStateTwoArgs(String funcName, const Variant &argOne, const Variant &argTwo);

private:
    friend class ObjectMap_;
    friend void cremateDeadObjects();

    void sendHierarchyChangeNotification(const Handle<Object> &reparented, const Handle<Object> &oldParent);
    void removeChild(const Handle<Object> &child);
    bool isAncestorOf(const Handle<Object> &other) const;
    void recordPersistentCall(const String &funcName, const SavedArguments &arguments);

    bool dying = false;
    Handle<Object> parent;
    Handle<Object> this_;
    ChildList children;
    mutable String name;
    PythonObject pattern;
};

/// The handle of an object under its static class; call as `getHandle(this)`.
template <class T>
Handle<T> getHandle(const T *object)
{
    return unchecked_handle_cast<T>(object->getHandle());
}

/// Makes an object in code with the default allocator group and gives it its number.
template <class T>
Handle<T> construct(AllocationCategory &category)
{
    return unchecked_handle_cast<T>(T::staticType->construct(category));
}

/// The object at a path.
///
/// A path with a registered prefix starts at that prefix's object: "c:/" at the current level's coordinator, "s:/" at
/// the system of systems. Any other path starts at `relativeTo`. Invalid if a step is missing.
Handle<Object> getObjectByPath(const String &path, const Handle<Object> &relativeTo = Handle<Object>());

/// Where a path prefix of three characters, as "c:/", starts. The layer that knows the object registers it once.
void registerPathPrefix(const String &prefix, Handle<Object> (*root)());

/// Takes a call that an object wants repeated when its map loads again; see Object::addToPersistentStateNoArgs.
using PersistentCallRecorder = void (*)(const Handle<Object> &store, const Handle<Object> &object,
                                        const String &funcName, const SavedArguments &arguments);
/// Installs the recorder; the layer that owns the level's persistent state does so once.
void setPersistentCallRecorder(PersistentCallRecorder recorder);

/// Destroys what has been murdered since the last cremation: first every `onMurder`, then every destructor.
///
/// What is murdered meanwhile waits for the next cremation. Does nothing, and says so in the log, while a CremationHold
/// lives.
void cremateDeadObjects();

/// Keeps the dead in place for as long as it lives.
///
/// Stands around calls into scripts: methods of any object may be under way below them, and a script must not have an
/// object destroyed under its own feet.
class CremationHold
{
public:
    CremationHold() { ++count; }
    ~CremationHold() { --count; }
    CremationHold(const CremationHold &) = delete;
    CremationHold &operator=(const CremationHold &) = delete;

    static bool isActive() { return count > 0; }

private:
    static inline int count = 0;
};
