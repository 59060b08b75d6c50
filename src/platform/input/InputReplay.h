// InputReplay: plays recorded input back.
#pragma once

#include "platform/input/RecordedInput.h"

#include <cstddef>

/// Plays recorded input back in the place of the devices.
///
/// Where the run's time comes from a PlayedTimeSource, frames last as long as they were recorded; where the window plays
/// a size, see WindowSystem2, what became of it and its focus is played, too. A recording that cannot be played, or
/// belongs to another run than this one, is logged as an error and not played; that ends a game which nobody watches
/// with exit code 1.
class InputReplay
{
public:
    /// Begins a recording at the next frame; an empty name stops the present one.
    void start(const String &file);
    /// Whether recorded input stands in for the devices: up to and including the frame of the last event.
    bool isPlaying() const { return playing; }
    /// Whether the recording tells itself what its keys have typed.
    bool tellsText() const { return recording.version > 1; }
    /// Goes on to the next frame: posts its keyboard and mouse input, and takes over its pads.
    void advance();
    /// A player's pad as recorded for this frame.
    const PadState &getPad(unsigned player) const { return pads[player]; }

    /// Where the cursor was at a mouse record that `advance` posted, client pixels.
    static POINT cursorOf(const RAWINPUT &posted);

private:
    bool belongsToThisRun() const;
    void complain(InputRecording::HeadLine line, const String &problem) const;
    void play(const RecordedInput &event);
    static void post(UINT message, std::int64_t value);

    String source; ///< the file
    InputRecording recording;
    std::size_t next = 0; ///< first event that was not played yet
    unsigned frame = 0;   ///< frames since the start
    bool playing = false;
    std::array<PadState, XUSER_MAX_COUNT> pads;
};
