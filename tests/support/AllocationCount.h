// AllocationCount: how often memory is taken in this program, for tests that say that nothing takes any.
#pragma once

#include <cstddef>
#include <functional>

/// Calls of operator new by this thread, and blocks taken from the engine's allocators, while a step is repeated.
std::size_t allocationsOf(const std::function<void()> &step, int times = 1);
