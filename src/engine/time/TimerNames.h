// TimerNames: the timers of a level that the engine itself reads.
#pragma once

#include "foundation/KVString.h"

/// Names for `Coordinator::getTimer`, interned before `main`.
namespace TimerNames
{
/// All game logic takes its frame time from this one.
inline const String master = SCS("master");
} // namespace TimerNames
