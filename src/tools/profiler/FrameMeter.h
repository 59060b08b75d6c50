// FrameMeter: what each frame of a run costs, in time and in memory.
#pragma once

#include "engine/systems/System.h"

#include <cstdint>
#include <vector>

class AllocationCategory;

/// Writes a line a frame when the run ends: nanoseconds of the wall clock, microseconds of the processor, blocks taken
/// from the engine's allocators, and how many more of them are alive, from the end of the frame before to its own. Behind
/// the frames stands a line for each purpose that blocks were taken for: their count since the meter began, and its name.
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
        std::size_t blocks = 0;     ///< taken, most of them from pools and given back in the same frame
        std::size_t alive = 0;      ///< blocks
    };

    /// The blocks of a purpose that were taken before the meter began.
    struct Purpose
    {
        const AllocationCategory *category;
        std::size_t before;
    };

    static Spent spentSoFar();

    std::vector<Spent> frames;
    std::vector<Purpose> purposes;
    Spent before; ///< at the end of the last frame
    String file;
};
