// FmodExtras: what the audio port offers beyond the published operations.
#pragma once

#include "port/fmod/fmod_event.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace port
{

/// How the next event system opens its output. Set before FMOD_EventSystem_Create.
struct AudioOutput
{
    enum Kind
    {
        DEVICE, ///< the host's default device, followed when it is unplugged or appears; silent without one
        MEMORY, ///< rendered on request into memory: silent, repeatable, no clock of its own
    };
    Kind kind = DEVICE;
    int sampleRate = 44100; ///< of MEMORY
    /// Directions by the shape of a head, for headphones.
    bool headRelated = false;
    /// The same to both ears.
    bool mono = false;
    /// Name of the device to open, as `audioDevices` has it; empty for the host's usual one.
    std::string device = {};
};
void setAudioOutput(const AudioOutput &output);

/// Beginning of the sequence by which the next event system varies what it starts; the same one repeats a run.
void setAudioSeed(std::uint64_t seed);

/// Folders whose project file, of the same name, and whose samples, of the same paths, stand in for what the next event
/// system loads, or beside it; of several the last one counts.
void setAudioOverlays(const std::vector<std::string> &folders);

/// The next seconds of a MEMORY output as interleaved stereo, 16 bit values in floats of -1..1.
///
/// Advances what plays by as much. Called once a frame after EventSystem::update, in the frame's own time.
/// Empty for a DEVICE output. The first call is what reads samples and makes the mixer.
void renderAudio(FMOD::EventSystem &system, double seconds, std::vector<float> &stereo);

/// Lets time pass for a MEMORY output without anything being heard. As long as nothing was rendered it costs nothing:
/// what plays keeps its time, and no sample is read.
void passAudioTime(FMOD::EventSystem &system, double seconds);

/// How the sound of one event comes to the listener: set each frame where the direct line is not its way.
struct SoundPath
{
    FMOD_VECTOR apparent;  ///< where it is heard from, as the doorway that it comes through
    float gain = 1;        ///< linear, of what is left after walls and doors
    float lowpass = 22000; ///< Hz, what is left of the high end
    float reverb = 1;      ///< factor on what the room returns
};
/// Smoothed from update to update, so that a door opening is heard opening. Holds for a quarter of a second; numbers
/// that are none change nothing.
void setSoundPath(FMOD::Event &event, const SoundPath &path);

/// An event that can be heard now.
struct HeardEvent
{
    const FMOD::Event *event = nullptr;
    const char *name = "";
    const char *caption = "";    ///< empty without one
    float loudness = 0;          ///< linear, at the listener, after all gains
    float leastCaption = 0;      ///< loudness below which the caption is not shown
    FMOD_VECTOR apparent;        ///< where it is heard from
    bool placed = false;         ///< false for what has no place in the world, as music
    unsigned int startOrder = 0; ///< tells one start of an event from the next
};
/// All that is audible, the loudest first; fills the list and keeps its memory.
void listHeard(FMOD::EventSystem &system, std::vector<HeardEvent> &heard);

/// How loud an event is a metre away, linear: as it was authored, and as its parameters but the distance make it now.
/// What its owner, its category and the player's volumes take is left out.
float loudnessAtAMetre(FMOD::Event &event);

/// What the audio port tells: a wrong line of a project, a missing sample, a device that went; once each.
using AudioNotice = std::function<void(const std::string &text, bool isProblem)>;
void setAudioNotice(AudioNotice notice);

/// What an event is, for tools and checks.
struct EventFacts
{
    std::string group, name, caption, category;
    float leastCaption = 0;
    bool loops = false;  ///< plays until it is stopped
    bool placed = false; ///< has the parameter "distance"
};
std::vector<EventFacts> listEvents(FMOD::EventProject &project);

/// What is wrong with a project file and its samples, each with file and cause, without playing any of it; empty where
/// nothing is. Reads the head of each sample.
/// @param folder  of the project and its samples, a designed path with its end
std::vector<std::string> projectProblems(const char *folder, const char *filename);

/// Reverberation of two zones at once, for the way from one to the other; share 0..1 of the second.
void setReverbZones(FMOD::EventSystem &system, const FMOD_REVERB_PROPERTIES &first,
                    const FMOD_REVERB_PROPERTIES &second, float share);

struct AudioCounters
{
    int playing = 0;     ///< event instances under way, heard or not
    int voices = 0;      ///< sounding sources
    int stolen = 0;      ///< voices taken for something more audible, since the start
    int devices = 0;     ///< devices opened since the start
    bool silent = false; ///< no device: nothing is heard
};
AudioCounters audioCounters(FMOD::EventSystem &system);

/// Head-related directions on or off for a running system; false where the device cannot.
bool setHeadRelated(FMOD::EventSystem &system, bool on);

/// All that is heard the same to both ears, or not any more; directions are lost, what plays goes on.
void setMono(FMOD::EventSystem &system, bool on);

/// Names of the devices that sound can come from now; none without any.
std::vector<std::string> audioDevices();
/// Goes on at another device; an empty name is the host's usual one, and so is one that cannot be opened.
void setAudioDevice(FMOD::EventSystem &system, const std::string &name);

/// Has FMOD_EventSystem_Create give out what a test made, as a recording or failing system; null ends that.
///
/// As long as it is set the functions of this header that take systems, events and projects do nothing.
using EventSystemMaker = FMOD_RESULT (*)(FMOD::EventSystem **);
void setEventSystemMaker(EventSystemMaker maker);

} // namespace port
