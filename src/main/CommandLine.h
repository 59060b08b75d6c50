// CommandLine: the few words that the executable itself understands.
#pragma once

#include <optional>

/// Answers --help and --version, and refuses every other word.
///
/// What a run is asked to do comes through the environment, where ./play puts its words.
/// @return the exit code; none where there is no word and the game is to start
std::optional<int> runCommandLine(int argc, char **argv);

/// Name and version of the game, as in "Mornal 1.2.3".
const char *versionText();
