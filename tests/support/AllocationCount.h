// AllocationCount: how often memory has been taken in this program, for tests that say that nothing takes any.
#pragma once

#include <cstddef>

/// Running totals; the difference of two is what lay between.
struct AllocationCount
{
    std::size_t heap;       ///< calls of operator new, by this thread
    std::size_t categories; ///< blocks taken from the engine's allocators

    static AllocationCount now();
};
