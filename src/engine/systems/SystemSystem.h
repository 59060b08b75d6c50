// SystemSystem: owner of all systems; starts them on demand and stops them in reverse.
#pragma once

#include "engine/systems/System.h"

#include <map>
#include <set>
#include <vector>

/// Root of everything that lives for the whole run: each system is its child, named after its class.
///
/// There is no table of start order: the order of starts is the order of first demand, depth first through the
/// dependency lists. Between `bootstrap` and `shutdown` there is exactly one.
class SystemSystem : public System
{
    KV_REFLECTED(SystemSystem)
public:
    using SystemMap = std::map<ReflectorPtr, Handle<System>>;
    using InitializationOrderList = std::vector<Handle<System>>;

    SystemSystem() = default;

    /// Makes the reflection table usable and creates the one SystemSystem. Called once, first thing in the process.
    static void bootstrap();
    /// Stops every system in the reverse of the order in which their starts completed, and destroys them.
    static void shutdown();
    /// The one instance; invalid before `bootstrap` and after `shutdown`.
    static Handle<SystemSystem> getInstance() { return instance; }

    /// The running system of exactly this class, started now if there is none yet.
    ///
    /// A class that is no concrete system is logged as an error and gives an invalid handle.
    Handle<System> getSystem(const ReflectorPtr &type);

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override { return {}; }

private:
    friend class Coordinator;

    Handle<System> constructSystem(const ReflectorPtr &type);
    static void stopAll(InitializationOrderList &order);

    std::set<ReflectorPtr> currentlyInitializing; ///< classes whose start is under way; kept for a debugger to read
    SystemMap systems;                            ///< every started system by its class
    InitializationOrderList initializationOrder;  ///< the order of completed starts
    static Handle<SystemSystem> instance;
    UpdaterSet updaters; ///< frame steps of all systems, read live by the coordinator
};
