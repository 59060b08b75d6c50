// Notices: what the audio port has to tell whoever runs the game.
#pragma once

#include <string>

namespace port
{

/// Tells a text to the notice that was set, or on the error stream; the same text only once.
void tellAudio(const std::string &text, bool isProblem);

/// A host path as texts name it: from the game's folder on, whose programs run one below it.
std::string shownPath(std::string path);

} // namespace port
