// InputRecorder: writes down what the devices tell.
#pragma once

#include "platform/input/RecordedInput.h"

#include <cstddef>
#include <fstream>

/// Writes what the devices tell into a file that InputReplay plays back.
///
/// Takes no memory, however long it goes on. A file that cannot be made or goes on no further is logged with the
/// system's reason, and nothing more is recorded; where the recording was asked for that ends a game which nobody
/// watches with exit code 1.
class InputRecorder
{
public:
    /// Why there is a recording.
    enum Purpose
    {
        ASKED_FOR,
        KEPT_BY_THE_WAY ///< goes without where it cannot be, and ends where it has become too large
    };

    explicit InputRecorder(Purpose purpose_) : purpose(purpose_) {}

    /// Begins a recording at the next frame, in a new file; an empty name stops the present one.
    void start(const String &file);
    /// Closes the recording with the number of its last frame; without this it counts as cut off.
    void stop();
    bool isRecording() const { return out.is_open(); }
    /// Goes on to the next frame; notes how long the last one was if that has changed.
    void advance();

    /// Notes a keyboard or mouse record.
    /// @param cursor  where the cursor is, client pixels
    void record(const RAWINPUT &raw, POINT cursor);
    /// Notes a pad, if it differs from what was noted last.
    void record(unsigned player, const PadState &pad);
    /// Notes a character that was typed, or whether the window has the focus.
    void record(RecordedInput::Kind kind, std::int64_t value);
    /// Notes what has become of the window's size, by the game or its user.
    void record(RecordedInput::Kind kind, int width, int height);

private:
    void open();
    void recordTime();
    void write(RecordedInput &event);
    void write(std::string_view lines);
    void fail(const char *reason);

    Purpose purpose;
    std::ofstream out;
    String target;              ///< the file
    std::size_t written = 0;    ///< bytes
    unsigned frame = 0;         ///< frames since the start
    std::int64_t lastTicks = 0; ///< length of a frame as it was noted last
    std::array<PadState, XUSER_MAX_COUNT> pads;
};
