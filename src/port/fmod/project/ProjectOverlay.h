// ProjectOverlay: events and samples that others bring for a sound project.
#pragma once

#include "port/fmod/project/ProjectData.h"

#include <string>

namespace port
{

/// Adds the events of another project to those of a project, in place of events of the same name; its categories and
/// groups, too, where they are not there.
/// @param folder  where its samples lie, with a slash at its end
/// @param file    its name, for texts
void overlayProject(ProjectData &project, ProjectData other, const std::string &folder, const std::string &file);

/// Has the samples of a folder stand in for those of the same path below the project's own folder.
/// @param folder  with a slash at its end
void overlaySamples(ProjectData &project, const std::string &folder);

} // namespace port
