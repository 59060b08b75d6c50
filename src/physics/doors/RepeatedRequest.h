// RepeatedRequest: tells what is asked in every frame from what is asked anew.
#pragma once

#include "object/tree/KvFields.h"

#include <cstdint>
#include <utility>

/// Remembers the frame of the last request.
class RepeatedRequest
{
    KV_FIELDS
public:
    /// Whether the last request came in this frame or the one before; notes this one.
    bool isRepeatedIn(std::int64_t frame)
    {
        const std::int64_t last = std::exchange(lastFrame, frame);
        return static_cast<std::uint64_t>(frame) - static_cast<std::uint64_t>(last) <= 1;
    }

private:
    std::int64_t lastFrame = -2; ///< frames count from 0
};
