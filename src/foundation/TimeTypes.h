// TimeTypes: the units in which the engine counts time.
#pragma once

#include <cstdint>

/// Clock ticks; TimeSystem knows how many make a second.
typedef std::int64_t TimerTicks;

/// Seconds as a number of double precision.
typedef double Seconds;
