// fmod_event: events that a sound designer authored in a project file, started by name.
//
// As in fmod.h: published names and meaning, a subset, abstract interfaces. All results are codes; a null interface
// never comes with FMOD_OK. What the implementation offers beyond this stands in FmodExtras.h.
#pragma once

#include "port/fmod/fmod.h"

using FMOD_EVENT_INITFLAGS = unsigned int;
using FMOD_EVENT_MODE = unsigned int;
using FMOD_EVENT_STATE = unsigned int;

constexpr FMOD_EVENT_INITFLAGS FMOD_EVENT_INIT_NORMAL = 0;
constexpr FMOD_EVENT_MODE FMOD_EVENT_DEFAULT = 0;

/// Bits of Event::getState.
constexpr FMOD_EVENT_STATE FMOD_EVENT_STATE_READY = 0x01;
constexpr FMOD_EVENT_STATE FMOD_EVENT_STATE_PLAYING = 0x08;
/// Playing, or started and not yet heard.
constexpr FMOD_EVENT_STATE FMOD_EVENT_STATE_CHANNELSACTIVE = 0x10;

struct FMOD_EVENT_LOADINFO; ///< never given

namespace FMOD
{

/// One input of an event's curves, such as "distance" in metres.
class EventParameter
{
public:
    virtual ~EventParameter() = default;
    /// Index and name; the text lives as long as the event. Null arguments are left out.
    virtual FMOD_RESULT getInfo(int *index, char **name) = 0;
    virtual FMOD_RESULT getRange(float *rangeMin, float *rangeMax) = 0;
    virtual FMOD_RESULT getValue(float *value) = 0;
    /// Clamped to the range; FMOD_ERR_INVALID_FLOAT for what is no number, which changes nothing.
    virtual FMOD_RESULT setValue(float value) = 0;
};

/// One instance of an authored event: a thing's own creak, at its own place.
class Event
{
public:
    virtual ~Event() = default;
    /// Plays from the beginning; an instance that plays starts anew.
    virtual FMOD_RESULT start() = 0;
    /// Ends it: by its fade, or with `immediate` as fast as it can without a click.
    virtual FMOD_RESULT stop(bool immediate = false) = 0;
    virtual FMOD_RESULT setPaused(bool paused) = 0;
    virtual FMOD_RESULT getPaused(bool *paused) = 0;
    /// Linear, 0..1; clamped, FMOD_ERR_INVALID_FLOAT for what is no number.
    virtual FMOD_RESULT setVolume(float volume) = 0;
    virtual FMOD_RESULT getVolume(float *volume) = 0;
    /// Null arguments keep what they were; FMOD_ERR_INVALID_FLOAT for infinities, which change nothing.
    virtual FMOD_RESULT set3DAttributes(const FMOD_VECTOR *position, const FMOD_VECTOR *velocity,
                                        const FMOD_VECTOR *orientation = nullptr) = 0;
    /// What stands between it and the listener: 0 nothing, 1 all; of the direct sound and of what the room returns.
    virtual FMOD_RESULT set3DOcclusion(float directOcclusion, float reverbOcclusion) = 0;
    virtual FMOD_RESULT getState(FMOD_EVENT_STATE *state) = 0;
    virtual FMOD_RESULT getNumParameters(int *count) = 0;
    virtual FMOD_RESULT getParameterByIndex(int index, EventParameter **parameter) = 0;
    virtual FMOD_RESULT getParameter(const char *name, EventParameter **parameter) = 0;
    /// Gives the instance back; it stops without a click. The pointer and its parameters are dead afterwards.
    virtual FMOD_RESULT release() = 0;
};

/// Events of one kind, by name.
class EventGroup
{
public:
    virtual ~EventGroup() = default;
    /// A new instance of the event, to be given back by its release; FMOD_ERR_EVENT_NOTFOUND leaves null.
    virtual FMOD_RESULT getEvent(const char *name, FMOD_EVENT_MODE mode, Event **event) = 0;
    virtual FMOD_RESULT getNumEvents(int *count) = 0;
};

/// A loudness of several events together, as "sfx/steps"; those below it count, too.
class EventCategory
{
public:
    virtual ~EventCategory() = default;
    virtual FMOD_RESULT setVolume(float volume) = 0;
    virtual FMOD_RESULT getVolume(float *volume) = 0;
    virtual FMOD_RESULT setPaused(bool paused) = 0;
    virtual FMOD_RESULT getPaused(bool *paused) = 0;
};

/// What one project file brought.
class EventProject
{
public:
    virtual ~EventProject() = default;
    /// The group of a path, as "kaVel/sfx" for the group "sfx" of the project "kaVel"; it belongs to the project.
    virtual FMOD_RESULT getGroup(const char *name, bool cacheevents, EventGroup **group) = 0;
    /// Ends and frees all that came from the file.
    virtual FMOD_RESULT release() = 0;
};

/// Loads projects and plays their events.
class EventSystem
{
public:
    virtual ~EventSystem() = default;
    /// The low-level system, which this one owns.
    virtual FMOD_RESULT getSystemObject(System **system) = 0;
    /// Opens the device: without any, a silent one that loses no time of what plays.
    virtual FMOD_RESULT init(int maxChannels, FMOD_INITFLAGS flags, void *extraDriverData,
                             FMOD_EVENT_INITFLAGS eventFlags = FMOD_EVENT_INIT_NORMAL) = 0;
    /// Folder of project files and samples; a designed path, relative to the working directory.
    virtual FMOD_RESULT setMediaPath(const char *path) = 0;
    /// Reads a project file.
    ///
    /// Wrong lines are told one by one and left out; the rest plays. FMOD_ERR_FILE_NOTFOUND where there is no file.
    virtual FMOD_RESULT load(const char *filename, FMOD_EVENT_LOADINFO *info, EventProject **project) = 0;
    virtual FMOD_RESULT getCategory(const char *name, EventCategory **category) = 0;
    virtual FMOD_RESULT set3DListenerAttributes(int listener, const FMOD_VECTOR *position, const FMOD_VECTOR *velocity,
                                                const FMOD_VECTOR *forward, const FMOD_VECTOR *up) = 0;
    /// Once a frame: chooses who is heard, moves fades and streams on, follows devices that come and go.
    virtual FMOD_RESULT update() = 0;
    /// Drops all projects.
    virtual FMOD_RESULT unload() = 0;
    virtual FMOD_RESULT release() = 0;
};

} // namespace FMOD

FMOD_RESULT FMOD_EventSystem_Create(FMOD::EventSystem **eventSystem);
