// StateDigest: writes down what the state of the game comes to after every frame.
#pragma once

#include "engine/systems/System.h"
#include "tools/digest/StateSketch.h"
#include "tools/digest/StateWalk.h"

#include <cstdint>
#include <fstream>

/// Writes twelve bytes a frame that hold for every field of every object: a StateSketch of the frame's end.
///
/// Two runs that do the same write the same file, with or without drawing, whatever the build; the first frame that
/// differs is where their ways part. `setDumpFile` then has that frame written field by field. For repeatable runs: it
/// costs a walk over all objects a frame.
class StateDigest : public System
{
    KV_REFLECTED(StateDigest)
public:
    StateDigest() = default;

    String getRecordFile() const { return recordFile; }
    /// Sets the file that the sketches of all further frames go to; an empty name ends it. What cannot be written is
    /// logged as an error and ends a game that nobody watches with exit code 1.
    void setRecordFile(const String &file);
    String getDumpFile() const { return dumpFile; }
    /// Sets the file that the fields are written to after the dump's frame.
    void setDumpFile(const String &file) { dumpFile = file; }
    std::int64_t getDumpFrame() const { return dumpFrame; }
    /// Sets the number of the dump's frame; 0, the default, for the run's last one, that of its frame limit.
    void setDumpFrame(std::int64_t val) { dumpFrame = val; }

    /// Takes the state down. Frame step, behind all others; where a frame has several levels, as while one loads, the
    /// last counts.
    void endFrame();

protected:
    void systemStartup() override {}
    void systemShutdown() override;
    DependencyList systemDependencies() override;
    UpdaterList getUpdaters() override;

private:
    void flush();
    void dump();
    void fail(const String &file, const char *reason);

    StateWalk walk;
    std::ofstream out;
    std::array<unsigned char, StateSketch::BYTES> latest{}; ///< of the frame that may not be over yet
    std::int64_t latestFrame = 0;                           ///< 0: there is none
    String recordFile;
    String dumpFile;
    std::int64_t dumpFrame = 0; ///< 0: that of the frame limit
};
