// FolderWatchSystem: tells when files have changed in the folders of the game.
#pragma once

#include "engine/systems/System.h"

#include "foundation/KVString.h"
#include "object/tree/ReflectorPtr.h"

#include <cstdint>
#include <vector>

/// Watches folders, and calls back when something in them has changed and has come to rest.
///
/// It does not tell what has changed: who is called compares. Changes that come together, as of an editor that writes
/// beside a file and renames, or of a whole branch that is checked out, are one call. Time is that of the wall. Costs
/// next to nothing while nothing changes, and nothing before a folder is watched.
class FolderWatchSystem : public System
{
    KV_REFLECTED(FolderWatchSystem)
public:
    FolderWatchSystem() = default;

    /// Watches a folder and all below it; one that is there already is watched once, one that is not there from when it
    /// appears.
    void watch(const String &folder);
    /// Sets what is called, without arguments, when something has changed; None for nothing.
    void setCallback(ReflectorPtr val) { callback = val; }
    ReflectorPtr getCallback() const { return callback; }
    /// Looks whether something has changed and is at rest. Frame step, before all others, in a stopped level, too.
    void look();

protected:
    void systemStartup() override {}
    void systemShutdown() override;
    DependencyList systemDependencies() override { return {}; }
    UpdaterList getUpdaters() override;

private:
    struct Watched
    {
        String folder;        ///< a designed path
        void *notification;   ///< null while the folder is not there
        std::int64_t triedAt; ///< when it was last tried to be watched, ticks
    };

    void open(Watched &watched, std::int64_t now);
    bool hasChanged(Watched &watched, std::int64_t now);
    bool isAtRest(std::int64_t now) const;

    std::vector<Watched> folders;
    ReflectorPtr callback;
    bool changed = false;
    std::int64_t firstChange = 0; ///< of those that have not been told, ticks
    std::int64_t lastChange = 0;  ///< ticks
};
