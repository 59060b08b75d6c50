// ProgramFolder: where the game's content stands, and where its user stood.
#pragma once

#include "foundation/KVString.h"

namespace ProgramFolder
{

/// Makes the executable's own folder the working folder, beside which scripts, assets and library stand. The first call
/// remembers where the user stood.
/// @return whether that worked; the working folder is left as it was where it did not
bool enter();

} // namespace ProgramFolder

/// Folder that the game was started from, from which the paths of the user's words count; empty where it is unknown.
String getUserFolder();
