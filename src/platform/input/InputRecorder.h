// InputRecorder: writes down what the devices tell.
#pragma once

#include "platform/input/RecordedInput.h"

#include <fstream>

/// Writes what the devices tell into a file that InputReplay plays back.
///
/// A file that cannot be made or goes on no further is logged as an error with the system's reason, and nothing more is
/// recorded; that ends a game which nobody watches with exit code 1.
class InputRecorder
{
public:
    ~InputRecorder() { stop(); }

    /// Begins a recording at the next frame, in a new file; an empty name stops the present one.
    void start(const String &file);
    /// Closes the recording with the number of its last frame.
    void stop();
    bool isRecording() const { return out.is_open(); }
    /// Goes on to the next frame.
    void advance();

    /// Notes a keyboard or mouse record.
    /// @param cursor  where the cursor is, client pixels
    void record(const RAWINPUT &raw, POINT cursor);
    /// Notes a pad, if it differs from what was noted last.
    void record(unsigned player, const PadState &pad);

private:
    void open();
    void write(RecordedInput &event);
    void write(const String &lines);
    void fail(const char *reason);

    std::ofstream out;
    String target;      ///< the file
    unsigned frame = 0; ///< frames since the start
    std::array<PadState, XUSER_MAX_COUNT> pads;
};
