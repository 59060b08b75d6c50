#include "platform/RecordingAudio.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{
RecordingAudio *current = nullptr;

FMOD_RESULT note(const std::string &call)
{
    current->calls.push_back(call);
    return FMOD_OK;
}

std::string text(double number)
{
    char digits[32];
    std::snprintf(digits, sizeof digits, "%g", number);
    return digits;
}

struct : FMOD::DSP
{
    FMOD_RESULT setParameter(int index, float value) override
    {
        return note("DSP::setParameter " + text(index) + " " + text(value));
    }
    FMOD_RESULT setBypass(bool bypass) override { return note(bypass ? "DSP::setBypass" : "DSP takes part"); }
    FMOD_RESULT getBypass(bool *) override { return FMOD_OK; }
    FMOD_RESULT release() override { return FMOD_OK; }
} lowpass;

struct : FMOD::System
{
    FMOD_RESULT getDriverCaps(int id, FMOD_CAPS *, int *, FMOD_SPEAKERMODE *mode) override
    {
        *mode = FMOD_SPEAKERMODE_5POINT1;
        return note("getDriverCaps " + text(id));
    }
    FMOD_RESULT setSpeakerMode(FMOD_SPEAKERMODE mode) override { return note("setSpeakerMode " + text(mode)); }
    FMOD_RESULT set3DSettings(float doppler, float distance, float rollOff) override
    {
        return note("set3DSettings " + text(doppler) + " " + text(distance) + " " + text(rollOff));
    }
    FMOD_RESULT createDSPByType(FMOD_DSP_TYPE type, FMOD::DSP **dsp) override
    {
        *dsp = &lowpass;
        return note(type == FMOD_DSP_TYPE_LOWPASS ? "createDSPByType low-pass" : "createDSPByType");
    }
    FMOD_RESULT addDSP(FMOD::DSP *, void **) override { return note("addDSP"); }
    FMOD_RESULT setReverbAmbientProperties(const FMOD_REVERB_PROPERTIES *) override { return FMOD_OK; }
    FMOD_RESULT release() override { return note("System::release"); }
} lowLevel;

struct : FMOD::EventGroup
{
    FMOD_RESULT getEvent(const char *name, FMOD_EVENT_MODE, FMOD::Event **event) override
    {
        if (std::string(name).starts_with("No"))
            return FMOD_ERR_EVENT_NOTFOUND;
        *event = &current->events.emplace_back(name);
        return FMOD_OK;
    }
    FMOD_RESULT getNumEvents(int *) override { return FMOD_OK; }
} group;

struct : FMOD::EventProject
{
    FMOD_RESULT getGroup(const char *name, bool cacheevents, FMOD::EventGroup **found) override
    {
        if (current->hasGroups)
            *found = &group;
        return note("getGroup " + std::string(name) + (cacheevents ? " cached" : ""));
    }
    FMOD_RESULT release() override { return note("Project::release"); }
} project;

struct : FMOD::EventSystem
{
    FMOD_RESULT getSystemObject(FMOD::System **system) override
    {
        *system = &lowLevel;
        return note("getSystemObject");
    }
    FMOD_RESULT init(int channels, FMOD_INITFLAGS flags, void *extra, FMOD_EVENT_INITFLAGS eventFlags) override
    {
        return note("init " + text(channels) + " " + text(flags) + (extra || eventFlags ? " and more" : ""));
    }
    FMOD_RESULT setMediaPath(const char *path) override { return note(std::string("setMediaPath ") + path); }
    FMOD_RESULT load(const char *file, FMOD_EVENT_LOADINFO *, FMOD::EventProject **loaded) override
    {
        if (current->hasProject)
            *loaded = &project;
        return note(std::string("load ") + file);
    }
    FMOD_RESULT getCategory(const char *, FMOD::EventCategory **) override { return FMOD_ERR_EVENT_NOTFOUND; }
    FMOD_RESULT set3DListenerAttributes(int, const FMOD_VECTOR *position, const FMOD_VECTOR *,
                                        const FMOD_VECTOR *forward, const FMOD_VECTOR *up) override
    {
        current->listener = *position;
        current->forward = *forward;
        current->up = *up;
        return FMOD_OK;
    }
    FMOD_RESULT update() override { return note("update"); }
    FMOD_RESULT unload() override { return note("unload"); }
    FMOD_RESULT release() override { return note("EventSystem::release"); }
} eventSystem;

FMOD_RESULT makeRecording(FMOD::EventSystem **system)
{
    *system = &eventSystem;
    return note("FMOD_EventSystem_Create");
}
} // namespace

RecordingAudio::RecordingAudio()
{
    current = this;
    port::setEventSystemMaker(makeRecording);
}

RecordingAudio::~RecordingAudio()
{
    port::setEventSystemMaker(nullptr);
    current = nullptr;
}

RecordedEvent &RecordingAudio::event(const char *name)
{
    for (auto event = events.rbegin(); event != events.rend(); ++event)
        if (event->name == name)
            return *event;
    throw std::runtime_error(std::string("nobody has asked for the event ") + name);
}

FMOD_RESULT RecordedParameter::getInfo(int *, char **text)
{
    *text = name.data();
    return FMOD_OK;
}

FMOD_RESULT RecordedParameter::getRange(float *least, float *most)
{
    *least = 0;
    *most = 40;
    return FMOD_OK;
}

FMOD_RESULT RecordedParameter::getValue(float *val)
{
    *val = value;
    return FMOD_OK;
}

FMOD_RESULT RecordedParameter::setValue(float val)
{
    value = val;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::start()
{
    deeds += "start ";
    playing = true;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::stop(bool immediate)
{
    deeds += immediate ? "stop-at-once " : "stop ";
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::setPaused(bool val)
{
    deeds += val ? "pause " : "unpause ";
    paused = val;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::getPaused(bool *val)
{
    *val = paused;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::setVolume(float val)
{
    volume = val;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::getVolume(float *val)
{
    *val = volume;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::set3DAttributes(const FMOD_VECTOR *at, const FMOD_VECTOR *speed, const FMOD_VECTOR *)
{
    position = *at;
    velocity = *speed;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::getState(FMOD_EVENT_STATE *state)
{
    *state = playing ? FMOD_EVENT_STATE_PLAYING : FMOD_EVENT_STATE_READY;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::getNumParameters(int *count)
{
    *count = 3;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::getParameterByIndex(int index, FMOD::EventParameter **parameter)
{
    *parameter = index == 0 ? &distance : index == 1 ? &fatigue : &speed;
    return FMOD_OK;
}

FMOD_RESULT RecordedEvent::release()
{
    deeds += "release ";
    released = true;
    return FMOD_OK;
}
