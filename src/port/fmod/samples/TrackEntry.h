// TrackEntry: what a layer plays, and what comes after it.
#pragma once

namespace port
{

/// One sample of a layer's list of them.
struct TrackEntry
{
    int sample = -1;
    int next = -1; ///< index in the list: itself for a loop, -1 at the end
};

} // namespace port
