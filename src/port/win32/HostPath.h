// HostPath: designed paths, which use backslashes, as the host's file system names them.
#pragma once

#include <string>

namespace port
{

/// The host's form of a designed path: backslashes become slashes, nothing else changes.
///
/// Relative paths stay relative to the working directory. Letter case is kept: a file is found under its exact name.
/// @param designed  zero-terminated; null counts as empty
std::string hostPath(const char *designed);

/// Why a file cannot be found, as a sentence for an error text.
///
/// Names the first part of the path that is missing, and the entry that differs from it by letter case only, if
/// there is one. Empty where the file exists.
/// @param designed  a designed or a host path; null counts as empty
/// @cost reads the listing of one folder
std::string explainMissingFile(const char *designed);

} // namespace port
