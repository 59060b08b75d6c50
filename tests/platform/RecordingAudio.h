// RecordingAudio: an audio library that plays nothing and notes what it is asked for.
#pragma once

#include "port/fmod/FmodExtras.h"

#include <deque>
#include <map>
#include <string>
#include <vector>

/// A parameter that takes every value.
struct RecordedParameter final : FMOD::EventParameter
{
    explicit RecordedParameter(std::string parameterName) : name(std::move(parameterName)) {}

    FMOD_RESULT getInfo(int *, char **text) override;
    FMOD_RESULT getRange(float *least, float *most) override;
    FMOD_RESULT getValue(float *val) override;
    FMOD_RESULT setValue(float val) override;

    std::string name;
    float value = -1;
};

/// An event of the parameters "distance", "fatigue" and "speed"; its state is what the test sets.
struct RecordedEvent final : FMOD::Event
{
    explicit RecordedEvent(std::string eventName) : name(std::move(eventName)) {}

    FMOD_RESULT start() override;
    FMOD_RESULT stop(bool immediate) override;
    FMOD_RESULT setPaused(bool val) override;
    FMOD_RESULT getPaused(bool *val) override;
    FMOD_RESULT setVolume(float val) override;
    FMOD_RESULT getVolume(float *val) override;
    FMOD_RESULT set3DAttributes(const FMOD_VECTOR *at, const FMOD_VECTOR *speed, const FMOD_VECTOR *) override;
    FMOD_RESULT set3DOcclusion(float, float) override { return FMOD_OK; }
    FMOD_RESULT getState(FMOD_EVENT_STATE *state) override;
    FMOD_RESULT getNumParameters(int *count) override;
    FMOD_RESULT getParameterByIndex(int index, FMOD::EventParameter **parameter) override;
    FMOD_RESULT getParameter(const char *, FMOD::EventParameter **) override { return FMOD_ERR_EVENT_NOTFOUND; }
    FMOD_RESULT release() override;

    std::string name;
    std::string deeds; ///< what was done to it, in order, with blanks between
    RecordedParameter distance{"distance"}, fatigue{"fatigue"}, speed{"speed"};
    FMOD_VECTOR position, velocity;
    float volume = 1;
    bool paused = false, playing = false, released = false;
};

/// Stands in the place of the port's audio while it lives.
class RecordingAudio
{
public:
    RecordingAudio();
    ~RecordingAudio();

    /// The one instance of an event, or the last of several; fails the test where nobody has asked for it.
    RecordedEvent &event(const char *name);

    std::vector<std::string> calls; ///< of the library itself, with their arguments
    std::deque<RecordedEvent> events;
    FMOD_VECTOR listener, forward, up;
    bool hasProject = true;
    bool hasGroups = true;
};
