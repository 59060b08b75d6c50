// EditorLabels: the texts that the editor writes over the world.
#pragma once

#include "engine/debug/DebugCollector.h"

/// A collector of texts that is filled by the editor alone, whether or not debug drawing is on.
class EditorLabels : public DebugCollectorComponent
{
    KV_REFLECTED(EditorLabels)
public:
    EditorLabels() = default;

    /// Shows what was added since the last time.
    void doFrame() override { showCollected(); }
};
