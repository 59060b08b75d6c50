// Confinement: what the game gives up before it runs what strangers wrote, for scripts.
#pragma once

#include "foundation/KVString.h"

/// Gives up writing outside of some places, starting programs and the network, for the rest of the run.
///
/// For the start: once the first level loads it is too late, and nothing is given up. Places that there are not are
/// passed over.
/// @param folders  that may be written into, with all below them; one a line
/// @param files    that may be written, which stand already; one a line
/// @return a line for each part that does not hold, which says why; empty where all of it does
String confine(const String &folders, const String &files);

/// Gives up sockets of any kind, those of this machine's other programs, too, once what needs some has them: the window
/// and the sound. Those that are open stay. For a run that has called `confine`.
/// @return whether that holds
bool confineSockets();
