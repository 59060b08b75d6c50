// ReverbPresets: what rooms return of a sound, by name.
#pragma once

#include "foundation/KVString.h"

#include <span>

class Object;

/// The figures of a room's reverberation, as reverberators commonly take them.
struct ReverbPreset
{
    const char *name;
    int room;               ///< loudness of the whole, hundredths of a decibel, -10000..0
    int roomHF;             ///< the same for high frequencies, relative, -10000..0
    float decayTime;        ///< s, 0.1..20
    float decayHFRatio;     ///< share of it for high frequencies, 0.1..2
    int reflections;        ///< early reflections, hundredths of a decibel, -10000..1000
    float reflectionsDelay; ///< s, 0..0.3
    int reverb;             ///< late reverberation, hundredths of a decibel, -10000..2000
    float reverbDelay;      ///< s, 0..0.1
    float diffusion;        ///< percent
    float density;          ///< percent

    static constexpr int COUNT = 8;
    /// All of them, in the order in which messages list them.
    static std::span<const ReverbPreset> all();
    /// The preset of a name; null for none.
    static const ReverbPreset *find(const String &name);
    /// The preset of a name for an object that asks for it.
    ///
    /// An unknown name is logged as an error that lists the known ones.
    /// @return the preset; `otherwise` for an unknown name
    static const ReverbPreset *choose(const Object &owner, const String &name, const ReverbPreset *otherwise);
};
