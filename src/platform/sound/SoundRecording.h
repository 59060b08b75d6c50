// SoundRecording: what was heard in a run, as a file.
#pragma once

#include "foundation/KVString.h"

#include <span>
#include <string>

/// Gathers the sound of a run and writes it at its end, whole or not at all: a WAV of 16 bit, 44.1 kHz, in stereo.
///
/// There is one a process. A file that cannot be written is logged as an error with the system's reason.
class SoundRecording
{
public:
    static constexpr int SAMPLE_RATE = 44100;

    ~SoundRecording();

    /// Begins a recording that `finish` writes into a file.
    void start(const String &file);
    bool isRunning() const { return current == this; }
    /// Adds interleaved stereo of -1..1; what lies beyond is cut. Beyond an hour nothing more is kept, which is told.
    void add(std::span<const float> stereo);

    /// Writes what is being recorded, if anything is, and ends that; for the end of the process.
    /// @return whether what was asked for could be done
    static bool finish();

private:
    bool write() const;

    static inline SoundRecording *current = nullptr; ///< the one that runs
    String target;                                   ///< the file
    std::string samples;                             ///< as they stand in the file
    bool tooLong = false;
};
