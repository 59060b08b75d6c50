#include "port/fmod/project/ProjectOverlay.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace port
{

namespace
{

template <class List>
auto *named(List &list, const std::string &name)
{
    const auto found = std::find_if(list.begin(), list.end(), [&](const auto &each) { return each.name == name; });
    return found == list.end() ? nullptr : &*found;
}

GroupData &groupOf(ProjectData &project, const std::string &name)
{
    GroupData *const group = named(project.groups, name);
    return group ? *group : project.groups.emplace_back(GroupData{name, {}});
}

void overlayCategories(ProjectData &project, const ProjectData &other)
{
    for (const CategoryData &category : other.categories)
        if (std::none_of(project.categories.begin(), project.categories.end(),
                         [&](const CategoryData &each) { return each.path == category.path; }))
            project.categories.push_back(category);
}

void standIn(std::string &path, const std::string &folder)
{
    std::error_code none;
    if (std::filesystem::is_regular_file(folder + path, none))
        path = folder + path;
}

} // namespace

void overlayProject(ProjectData &project, ProjectData other, const std::string &folder, const std::string &file)
{
    overlayCategories(project, other);
    for (GroupData &group : other.groups)
        for (EventData &event : group.events)
        {
            event.folder = folder;
            event.file = file;
            GroupData &into = groupOf(project, group.name);
            if (EventData *const before = named(into.events, event.name))
                *before = std::move(event);
            else
                into.events.push_back(std::move(event));
        }
}

void overlaySamples(ProjectData &project, const std::string &folder)
{
    for (GroupData &group : project.groups)
        for (EventData &event : group.events)
        {
            if (!event.folder.empty())
                continue; // another one's, whose samples have paths of their own
            for (LayerData &layer : event.layers)
                for (SampleData &sample : layer.samples)
                    standIn(sample.path, folder);
            for (SegmentData &segment : event.music.segments)
                standIn(segment.path, folder);
        }
}

} // namespace port
