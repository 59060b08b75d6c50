// AllocationCount: how often memory is taken in this program, for tests that say that nothing takes any.
#pragma once

#include <cstddef>
#include <functional>

/// Calls of operator new by this thread, and blocks taken from the engine's allocators, while a step is repeated.
std::size_t allocationsOf(const std::function<void()> &step, int times = 1);
/// The calls of operator new alone, for steps that take blocks from a pool and give them back.
std::size_t heapAllocationsOf(const std::function<void()> &step, int times = 1);
