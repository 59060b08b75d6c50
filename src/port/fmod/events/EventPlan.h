// EventPlan: an authored event as its instances play it.
#pragma once

#include "port/fmod/project/ProjectData.h"
#include "port/fmod/samples/SampleBank.h"
#include "port/fmod/samples/TrackEntry.h"

#include <string>
#include <vector>

namespace port
{

class AudioCategory;

/// What a layer may play.
struct LayerPlan
{
    std::vector<TrackEntry> entries; ///< samples to choose one of, or a chain that begins with the first
    std::vector<float> weights;      ///< of the entries; empty for a chain
    Varied volume{1, 0};
    Varied pitch;
    Varied delay;
    bool streams = false;
    bool repeats = false; ///< loops by choosing anew
    bool followsTension = false;
    float tension = 0; ///< from which on it is heard, where it follows that
};

/// What all instances of one event share. Owned by the project.
struct EventPlan
{
    const EventData *data = nullptr;
    const AudioCategory *category = nullptr; ///< null: none
    SampleBank *bank = nullptr;
    std::string group;
    std::vector<LayerPlan> layers;
    bool placed = false;
    bool endless = false;      ///< plays until it is stopped
    float weight = 1;          ///< of its loudness among those of others, by its priority
    double beat = 0;           ///< s; 0: no music
    int tensionParameter = -1; ///< index
    int heard = 0;             ///< instances chosen in this update

    SampleUse useOf(const TrackEntry &entry) const { return {placed, entry.next >= 0}; }
};

/// Names the samples of an event in the bank, and tells where one is missing.
/// @param folder  of the project, with a slash at its end
/// @param file    the project's, for texts
EventPlan makePlan(const EventData &data, SampleBank &bank, const std::string &folder, const std::string &file);

} // namespace port
