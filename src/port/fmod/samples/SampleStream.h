// SampleStream: long sounds, read along while they play.
#pragma once

#include "port/fmod/samples/SampleBank.h"
#include "port/fmod/samples/TrackEntry.h"

#include <memory>
#include <vector>

namespace port
{

/// Reads a list of samples as one sound without a gap, in blocks of equal size.
///
/// All samples of a list have the first one's rate and channels; one that has not ends it and is told.
class SampleStream
{
public:
    /// @param entries  of the layer; outlives this
    /// @param first    index of the entry to begin in
    /// @param seconds  where in it
    SampleStream(SampleBank &bank, const std::vector<TrackEntry> &entries, int first, double seconds, bool placed);

    /// The next frames; fewer than asked only at the end.
    /// @param values  replaced; keeps its memory
    void read(std::vector<std::int16_t> &values, std::size_t frames);
    bool isAtEnd() const { return entry < 0; }
    int getRate() const { return shape.rate; }
    int getChannels() const { return placed ? 1 : shape.channels; }

private:
    void open(int index);
    void advance();

    SampleBank &bank;
    const std::vector<TrackEntry> &entries;
    const bool placed;
    SampleShape shape; ///< of the first sample
    std::unique_ptr<SampleFile> file;
    int entry = -1;                   ///< being read; -1 at the end
    bool yielded = false;             ///< something was read from it since it was begun
    std::vector<std::int16_t> stereo; ///< before it is mixed down
};

} // namespace port
