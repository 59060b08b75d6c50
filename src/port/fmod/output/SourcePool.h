// SourcePool: the device's sources, lent to voices and taken back without a click.
#pragma once

#include "port/fmod/output/EffectCalls.h"
#include "port/fmod/output/ReverbSlots.h"
#include "port/fmod/output/Source.h"

#include <vector>

namespace port
{

/// The library lets a change of gain glide over the piece it mixes, but stops a source at once: so a source is made
/// silent first and stopped when that was surely mixed, and one that begins inside of a sound starts silent.
class SourcePool
{
public:
    /// @param count    sources that voices are heard through
    /// @param latency  s after which a change was mixed
    SourcePool(int count, double latency);

    /// Makes the sources of a new device, whose context is current.
    void open(const EffectCalls &effects, const ReverbSlots &slots);
    /// The sources went with their device; their holders lose them.
    void forget();
    /// Stops all at once, for the end.
    void stopAll();

    /// Lends a free source; false while all are in use.
    /// @param holder  points to it as long as it is lent; becomes null with a device that goes
    bool take(Source *&holder);
    /// Gives it a whole sample to play, from a moment of it.
    void load(Source &source, ALuint buffer, bool loops, double seconds);
    /// Gives it a stream to play.
    void load(Source &source, std::unique_ptr<StreamQueue> stream, bool loops);
    /// Has a loaded source begin at the next startPlayed.
    /// @param rises  whether it comes up from silence
    void play(Source &source, bool placed, bool rises, double now);
    /// Begins all at once, so that they stay in step.
    void startPlayed();
    void set(Source &source, const SourceSettings &settings, double now);
    /// Has all be heard from straight ahead, the same to both ears, or each from its place again.
    void setMono(bool on);
    /// Where a whole sample is, in seconds.
    static double positionOf(const Source &source);
    /// False for a stream that ran dry before its end.
    static bool isFlowing(const Source &source);

    /// Takes a source back that is to be silent; touches no device.
    static void leave(Source *&holder);
    /// Takes a source back whose sound is at its end.
    static void finish(Source *&holder);

    /// Brings what was given back to its end, and streams on.
    void tend(double now);
    int countInUse() const;

private:
    void tendGoing(Source &source, double now);
    static void stop(Source &source);
    void setPlace(const Source &source) const;
    void setFilters(Source &source, const SourceSettings &settings);
    ALuint lowpass(float gain, float highGain);

    std::vector<Source> sources;
    std::vector<ALuint> played; ///< loaded and not yet started
    const double latency;
    const EffectCalls *effects = nullptr;
    const ReverbSlots *slots = nullptr;
    ALuint filter = 0; ///< scratch: sources copy what it says
    bool isOpen = false;
    bool mono = false;
};

} // namespace port
