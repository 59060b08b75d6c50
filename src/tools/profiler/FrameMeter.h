// FrameMeter: what each frame of a run costs, in time and in memory.
#pragma once

#include "engine/systems/System.h"

#include <cstdint>
#include <vector>

/// Writes a line a frame when the run ends: nanoseconds of the wall clock, microseconds of the processor, and blocks
/// taken from the engine's allocators, from the end of the frame before to its own.
///
/// The first frame and those in which a level loads count like any other. Measures alone: it takes no memory for the
/// frames that `frameLimit` of GameLoopSystem lets one expect.
class FrameMeter : public System
{
    KV_REFLECTED(FrameMeter)
public:
    FrameMeter() = default;

    String getFile() const { return file; }
    /// Sets the file that the frames are written to; what cannot be written is logged as an error.
    void setFile(const String &val) { file = val; }

    /// Ends a frame and begins the next. Frame step, the last of all.
    void endFrame();

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    /// What was spent, since the run began or in one frame.
    struct Spent
    {
        std::int64_t wall = 0;      ///< nanoseconds
        std::int64_t processor = 0; ///< microseconds
        std::size_t blocks = 0;
    };

    static Spent spentSoFar();

    std::vector<Spent> frames;
    Spent before; ///< at the end of the last frame
    String file;
};
