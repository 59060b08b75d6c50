// SoundVolume: what may be a loudness.
#pragma once

#include "foundation/KVString.h"

/// A loudness that a script has set, cut to 0..1; what had to be changed is told in the log.
/// @param of    what it is the loudness of
/// @param last  what stays where `val` is no number
float volumeFrom(float val, float last, const String &of);
