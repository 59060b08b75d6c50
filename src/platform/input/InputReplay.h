// InputReplay: recorded input as text, its recording and its playing back.
//
// One event a line, in the order of its frames; blank lines and lines that begin with # count for nothing:
//
//     FRAME key VIRTUALKEY down|up
//     FRAME mouse DX DY BUTTONFLAGS WHEEL CURSORX CURSORY
//     FRAME pad PLAYER BUTTONS LEFTTRIGGER RIGHTTRIGGER LEFTX LEFTY RIGHTX RIGHTY
//     FRAME unplug PLAYER
//     FRAME end
//
// Frames count from 1, the first frame after the recording was started. Numbers are decimal, or hexadecimal after 0x.
// Button flags are the RI_MOUSE_ bits, the cursor is in client pixels, the pad's values are those of XINPUT_GAMEPAD.
#pragma once

#include "port/win32/RawInput.h"
#include "port/xinput/XInput.h"

#include "foundation/KVString.h"

#include <array>
#include <fstream>
#include <vector>

/// What one player's pad tells.
struct PadState
{
    bool connected = false;
    XINPUT_GAMEPAD gamepad;
};

/// One line of a recording.
struct RecordedInput
{
    enum Kind
    {
        KEYBOARD,
        MOUSE,
        PAD,
        END
    };

    unsigned frame = 0;
    Kind kind = END;
    RAWINPUT raw;        ///< of keyboard and mouse
    POINT cursor{0, 0};  ///< of the mouse: where it was, client pixels
    unsigned player = 0; ///< of a pad
    PadState pad;        ///< of a pad
};

/// The line of one event, without a line end.
String formatRecordedInput(const RecordedInput &event);

/// The event of one line; false where it is none, with what is wrong in `problem`.
bool parseRecordedInput(const String &line, RecordedInput &event, String &problem);

/// The events of a file in the order of their frames.
///
/// A line that is no event is logged as an error with its place and skipped; a file that cannot be read is logged with
/// the reason and gives none.
std::vector<RecordedInput> readRecordedInput(const String &file);

/// Plays recorded input back in the place of the devices.
class InputReplay
{
public:
    /// Begins a recording at the next frame; an empty name stops the present one.
    void start(const String &file);
    /// Whether recorded input stands in for the devices: up to and including the frame of the last event.
    bool isPlaying() const { return playing; }
    /// Goes on to the next frame: posts its keyboard and mouse input, and takes over its pads.
    void advance();
    /// A player's pad as recorded for this frame.
    const PadState &getPad(unsigned player) const { return pads[player]; }

    /// Where the cursor was at a mouse record that `advance` posted, client pixels.
    static POINT cursorOf(const RAWINPUT &posted);

private:
    void play(const RecordedInput &event);

    std::vector<RecordedInput> events;
    std::size_t next = 0; ///< first event that was not played yet
    unsigned frame = 0;   ///< frames since the start
    bool playing = false;
    std::array<PadState, XUSER_MAX_COUNT> pads;
};

/// Writes what the devices tell into a file that InputReplay plays back.
class InputRecorder
{
public:
    ~InputRecorder() { stop(); }

    /// Begins a recording at the next frame, in a new file; an empty name stops the present one.
    ///
    /// A file that cannot be made is logged as an error and nothing is recorded.
    void start(const String &file);
    /// Closes the recording with the number of its last frame.
    void stop();
    bool isRecording() const { return out.is_open(); }
    /// Goes on to the next frame.
    void advance() { ++frame; }

    /// Notes a keyboard or mouse record.
    /// @param cursor  where the cursor is, client pixels
    void record(const RAWINPUT &raw, POINT cursor);
    /// Notes a pad, if it differs from what was noted last.
    void record(unsigned player, const PadState &pad);

private:
    void write(RecordedInput &event);

    std::ofstream out;
    unsigned frame = 0; ///< frames since the start
    std::array<PadState, XUSER_MAX_COUNT> pads;
};
