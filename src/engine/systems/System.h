// System: base of the engine-wide singletons, and the accessors that start them on first demand.
#pragma once

#include "engine/systems/Updater.h"
#include "object/tree/Object.h"

#include <vector>

/// An object of which there is one for the whole run, started the first time anything asks for it.
///
/// Lives under the SystemSystem object and is named after its class. Before its start its dependencies are started and
/// a script sets its properties; it is stopped in the reverse order of the starts. Level changes do not touch it.
class System : public Object
{
    KV_REFLECTED(System)
public:
    using DependencyList = std::vector<ReflectorPtr>;

    System() = default;

    /// Keeps the system in its place: one that somebody moves is put back, with an error logged.
    void onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> formerParent) override;

protected:
    friend class SystemSystem;

    /// Brings the system up; its properties are set and its dependencies run. May happen in the middle of a frame.
    virtual void systemStartup() = 0;
    /// Takes the system down; the systems it depends on still run.
    virtual void systemShutdown() = 0;
    /// Classes of the systems that must run before this one starts, in the order they are started.
    virtual DependencyList systemDependencies() = 0;
    /// Steps that this system adds to every frame of every level; none by default.
    virtual UpdaterList getUpdaters();
};

/// The running system of exactly this class, started now if it is not running yet.
///
/// A class that is no concrete system, or a call outside the systems' life, is logged as an error and gives an
/// invalid handle.
Handle<System> getSystem(const ReflectorPtr &type);
/// The running system of the class of this name; an unknown name is logged with the nearest one, and gives an invalid
/// handle.
Handle<System> getSystem(String type);
/// The running system of the class of this name: `getSystem` under a name that scripts can tell apart.
Handle<System> getSystemN(String type);

/// Ends the process with an error that names the class of a system which cannot be had.
[[noreturn]] void failMissingSystem(const ReflectorPtr &type);

/// The running system of class T, started now if it is not running yet.
template <class T>
Handle<T> getSystem()
{
    // A handle number never comes back, so a remembered handle is either right or dead.
    static Handle<T> known;
    if (!known.isValid())
        known = unchecked_handle_cast<T>(getSystem(T::staticType));
    return known;
}

/// The running system of class T as an object; borrowed for the call.
template <class T>
T &getSystemDeref()
{
    const auto system = getSystem<T>().lookup();
    if (!system)
        failMissingSystem(T::staticType);
    return *system;
}
