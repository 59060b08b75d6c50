// Source: one of the device's voices, and what it was told.
#pragma once

#include "port/fmod/fmod.h"
#include "port/fmod/output/ReverbSlots.h"
#include "port/fmod/output/StreamQueue.h"

#include <array>
#include <memory>

namespace port
{

/// How a source is to sound from now on.
struct SourceSettings
{
    float gain = 0;          ///< linear
    float pitch = 1;         ///< factor
    FMOD_VECTOR position;    ///< left-handed; not used by what has no place
    float direct = 1;        ///< share of the direct way
    float directLowpass = 1; ///< gain of the filter
    float send = 0;          ///< to the rooms
    float sendLowpass = 1;   ///< gain of the filter
};

/// Belongs to the pool; whoever holds it is its holder until it is given back.
struct Source
{
    enum State
    {
        FREE,
        PLAYING,
        LEAVING,   ///< given back: falls silent at the next tending
        SILENCING, ///< told to be silent, and stopped as soon as it is
        FINISHING  ///< given back at the end of its sound, whose last moments are still to come
    };

    ALuint name = 0;
    State state = FREE;
    Source **holder = nullptr; ///< who it is lent to; null in the states of going
    bool loops = false;
    bool placed = false;
    double raised = 0; ///< s, host time from which on it may be heard: it starts silent so as to rise without a click
    double freed = 0;  ///< s, host time at which it is stopped
    SourceSettings told;
    std::array<ALuint, ReverbSlots::COUNT> rooms{}; ///< that it sends to
    std::unique_ptr<StreamQueue> stream;            ///< null for whole samples
};

} // namespace port
