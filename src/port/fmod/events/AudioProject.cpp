#include "port/fmod/events/AudioProject.h"

#include "port/fmod/events/AudioEventSystem.h"
#include "port/fmod/project/ProjectWords.h"

namespace port
{

FMOD_RESULT AudioGroup::getEvent(const char *name, FMOD_EVENT_MODE, FMOD::Event **event)
{
    if (!event)
        return FMOD_ERR_INVALID_PARAM;
    *event = nullptr;
    const auto found = plans.find(name ? name : "");
    if (found == plans.end())
        return FMOD_ERR_EVENT_NOTFOUND;
    *event = &system->addEvent(*found->second);
    return FMOD_OK;
}

FMOD_RESULT AudioGroup::getNumEvents(int *count)
{
    if (!count)
        return FMOD_ERR_INVALID_PARAM;
    *count = static_cast<int>(plans.size());
    return FMOD_OK;
}

AudioProject::AudioProject(AudioEventSystem &system, ProjectData read, const std::string &folder,
                           const std::string &file, CategoryTree &categories)
    : system(system), data(std::move(read))
{
    for (const CategoryData &category : data.categories)
        categories.make(category.path).setAuthored(category.volume);
    for (const GroupData &group : data.groups)
    {
        AudioGroup &made = groups.emplace_back(system, data.name + "/" + group.name);
        for (const EventData &event : group.events)
        {
            EventPlan &plan = plans.emplace_back(makePlan(event, bank, event.folder.empty() ? folder : event.folder,
                                                          event.file.empty() ? file : event.file));
            plan.group = group.name;
            plan.category = event.category.empty() ? nullptr : &categories.make(event.category);
            made.add(plan);
        }
    }
}

FMOD_RESULT AudioProject::getGroup(const char *name, bool, FMOD::EventGroup **group)
{
    if (!group)
        return FMOD_ERR_INVALID_PARAM;
    *group = nullptr;
    for (AudioGroup &each : groups)
        if (name && each.getPath() == name)
            *group = &each;
    return *group ? FMOD_OK : FMOD_ERR_EVENT_NOTFOUND;
}

FMOD_RESULT AudioProject::release()
{
    system.removeProject(*this);
    return FMOD_OK;
}

} // namespace port
