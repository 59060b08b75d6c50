// RecordedInput: recorded input as text.
//
// First the run that it belongs to, then one event a line, in the order of its frames, and the end. Blank lines and
// lines that begin with # count for nothing:
//
//     input 2
//     level NAME
//     seed NUMBER
//     window WIDTH HEIGHT
//     clock TICKSPERSECOND
//     FRAME key VIRTUALKEY down|up
//     FRAME text CHARACTER
//     FRAME mouse DX DY BUTTONFLAGS WHEEL CURSORX CURSORY
//     FRAME pad PLAYER BUTTONS LEFTTRIGGER RIGHTTRIGGER LEFTX LEFTY RIGHTX RIGHTY
//     FRAME unplug PLAYER
//     FRAME time TICKS
//     FRAME focus 0|1
//     FRAME size WIDTH HEIGHT
//     FRAME drag WIDTH HEIGHT
//     FRAME end
//
// Frames count from 1, the first frame after the recording was started. Numbers are decimal, or hexadecimal after 0x.
// Button flags are the RI_MOUSE_ bits, the cursor is in client pixels, the pad's values are those of XINPUT_GAMEPAD. A
// character is a number of Unicode. A frame lasts as long as the last line of time up to it says. A size is what the
// game gave its window, a drag what the user did.
//
// Version 1 has no clock and no lines of text, time, focus, size and drag; its keys type what they do on a US keyboard.
#pragma once

#include "platform/input/RecordedRun.h"
#include "port/win32/RawInput.h"
#include "port/xinput/XInput.h"

#include "foundation/KVString.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What one player's pad tells.
struct PadState
{
    bool connected = false;
    XINPUT_GAMEPAD gamepad;
};

/// One event of a recording.
struct RecordedInput
{
    enum Kind
    {
        KEYBOARD,
        MOUSE,
        PAD,
        TEXT,
        TIME,
        FOCUS,
        SIZE,
        DRAG,
        END
    };

    unsigned frame = 0;
    Kind kind = END;
    RAWINPUT raw;           ///< of keyboard and mouse
    POINT cursor{0, 0};     ///< of the mouse: where it was, client pixels
    unsigned player = 0;    ///< of a pad
    PadState pad;           ///< of a pad
    std::int64_t value = 0; ///< of text the character, of time the ticks, of the focus whether the window has it
    POINT size{0, 0};       ///< of a size and a drag, pixels
};

/// A recording as it was read.
struct InputRecording
{
    /// Lines of the head, which stand in this order.
    enum HeadLine
    {
        VERSION,
        LEVEL,
        SEED,
        WINDOW,
        CLOCK,
        HEAD_LINES
    };

    unsigned version = 0;
    RecordedRun run;
    std::array<long, HEAD_LINES> headLines{}; ///< their numbers in the file
    std::vector<RecordedInput> events;        ///< in the order of their frames; empty where there is nothing to play
};

/// The lines of the head, with their line ends.
String formatRecordedRun(const RecordedRun &run);

/// The line of one event, with its line end.
class RecordedLine
{
public:
    explicit RecordedLine(const RecordedInput &event);

    std::string_view get() const { return {text.data(), length}; }

private:
    std::array<char, 160> text;
    std::size_t length;
};

/// The event of one line; false where it is none, with what is wrong in `problem`.
bool parseRecordedInput(const String &line, RecordedInput &event, String &problem);

/// The recording that a file holds.
///
/// Whatever is wrong with the file is logged as an error with its place, and the recording has no events: a run with
/// half of its input would be another run.
InputRecording readRecordedInput(const String &file);
