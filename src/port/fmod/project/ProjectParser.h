// ProjectParser: reads the text of a sound project.
#pragma once

#include "port/fmod/project/ProjectData.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace port
{

constexpr std::size_t MOST_PROJECT_BYTES = 4U << 20; ///< of a project file

/// Reads a project from its text; the format is told in docs/sound-project.md.
///
/// A wrong line is left out, with what stands below it, and becomes one of the result's problems. Never fails.
/// @param text  the whole file
/// @param file  its name, for the problems
ProjectData parseProject(std::string_view text, const std::string &file);

} // namespace port
