// VoiceMixer: who of all that plays is heard.
#pragma once

#include "port/fmod/events/AudioEvent.h"
#include "port/fmod/output/SourcePool.h"

#include <memory>
#include <vector>

namespace port
{

using AudioEvents = std::vector<std::unique_ptr<AudioEvent>>;

/// Gives the channels to the events that are loudest at the listener, weighed by their priority, and brings what the
/// chosen ones say to their sources. Who is heard keeps its place against somebody hardly louder.
class VoiceMixer
{
public:
    VoiceMixer(SourcePool &pool, int channels) : pool(pool), channels(channels) {}

    /// Room for so many events, so that choosing takes no memory.
    void reserve(std::size_t count) { candidates.reserve(count); }
    /// Decides for each event whether it is heard.
    void choose(const AudioEvents &events);
    /// Begins, changes and ends sources accordingly. Needs a current context.
    /// @param lowpass  gain of the filter that all passes through
    /// @param now      host time, s
    /// @param exact    whether voices keep the library's time and no other
    void hear(const AudioEvents &events, float lowpass, double now, bool exact);

    /// Channels given out by the last choice.
    int countChosen() const { return given; }
    int countStolen() const { return stolen; }

private:
    struct Candidate
    {
        float score;
        float loudness;
        AudioEvent *event;
        bool heard; ///< until now
    };
    void collect(const AudioEvents &events);
    void give(const Candidate &candidate);
    void begin(AudioEvent &event, std::size_t layer, double now);
    void hearOne(AudioEvent &event, float lowpass, double now);
    void silence(AudioEvent &event, bool exact);

    SourcePool &pool;
    const int channels;
    std::vector<Candidate> candidates; ///< a heap, the best on top
    int given = 0;
    int stolen = 0;
};

} // namespace port
