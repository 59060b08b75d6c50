// RequestHandle: numbers that tell requests apart.
#pragma once

#include <cstdint>

/// Number of a request; 0 is none.
using RequestHandle = std::uint32_t;

/// A request number that no request before it had.
///
/// One counter serves asset requests and the visibility marks of the partitioning grid. Numbers ascend from 1 and skip
/// 0 when they wrap.
RequestHandle getNextRequestHandle();
