// AudioProject: what one project file brought, and its groups.
#pragma once

#include "port/fmod/events/AudioCategory.h"
#include "port/fmod/events/EventPlan.h"
#include "port/fmod/fmod_event.h"

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

namespace port
{

class AudioEventSystem;
class AudioProject;

/// Events of one kind. Belongs to its project.
class AudioGroup : public FMOD::EventGroup
{
public:
    AudioGroup(AudioEventSystem &system, std::string path) : system(&system), path(std::move(path)) {}

    FMOD_RESULT getEvent(const char *name, FMOD_EVENT_MODE mode, FMOD::Event **event) override;
    FMOD_RESULT getNumEvents(int *count) override;

    void add(EventPlan &plan) { plans.emplace(plan.data->name, &plan); }
    const std::string &getPath() const { return path; }

private:
    AudioEventSystem *system;
    const std::string path;
    std::unordered_map<std::string, EventPlan *> plans;
};

/// Owns the data, the samples and the groups; the system owns it.
class AudioProject : public FMOD::EventProject
{
public:
    /// @param folder  of the file, with a slash at its end
    /// @param file    its name, for texts
    AudioProject(AudioEventSystem &system, ProjectData data, const std::string &folder, const std::string &file,
                 CategoryTree &categories);

    FMOD_RESULT getGroup(const char *name, bool cacheevents, FMOD::EventGroup **group) override;
    FMOD_RESULT release() override;

    SampleBank &getBank() { return bank; }
    const std::deque<EventPlan> &getPlans() const { return plans; }
    bool owns(const EventPlan &plan) const { return plan.bank == &bank; }

private:
    AudioEventSystem &system;
    const ProjectData data;
    SampleBank bank;
    std::deque<EventPlan> plans;
    std::deque<AudioGroup> groups;
};

} // namespace port
