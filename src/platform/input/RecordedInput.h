// RecordedInput: recorded input as text.
//
// First the run that it belongs to, then one event a line, in the order of its frames, and the end. Blank lines and
// lines that begin with # count for nothing:
//
//     input 1
//     level NAME
//     seed NUMBER
//     window WIDTH HEIGHT
//     FRAME key VIRTUALKEY down|up
//     FRAME mouse DX DY BUTTONFLAGS WHEEL CURSORX CURSORY
//     FRAME pad PLAYER BUTTONS LEFTTRIGGER RIGHTTRIGGER LEFTX LEFTY RIGHTX RIGHTY
//     FRAME unplug PLAYER
//     FRAME end
//
// Frames count from 1, the first frame after the recording was started. Numbers are decimal, or hexadecimal after 0x.
// Button flags are the RI_MOUSE_ bits, the cursor is in client pixels, the pad's values are those of XINPUT_GAMEPAD.
#pragma once

#include "platform/input/RecordedRun.h"
#include "port/win32/RawInput.h"
#include "port/xinput/XInput.h"

#include "foundation/KVString.h"

#include <array>
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
        END
    };

    unsigned frame = 0;
    Kind kind = END;
    RAWINPUT raw;        ///< of keyboard and mouse
    POINT cursor{0, 0};  ///< of the mouse: where it was, client pixels
    unsigned player = 0; ///< of a pad
    PadState pad;        ///< of a pad
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
        HEAD_LINES
    };

    RecordedRun run;
    std::array<long, HEAD_LINES> headLines{}; ///< their numbers in the file
    std::vector<RecordedInput> events;        ///< in the order of their frames; empty where there is nothing to play
};

/// The lines of the head, with their line ends.
String formatRecordedRun(const RecordedRun &run);

/// The line of one event, without a line end.
String formatRecordedInput(const RecordedInput &event);

/// The event of one line; false where it is none, with what is wrong in `problem`.
bool parseRecordedInput(const String &line, RecordedInput &event, String &problem);

/// The recording that a file holds.
///
/// Whatever is wrong with the file is logged as an error with its place, and the recording has no events: a run with
/// half of its input would be another run.
InputRecording readRecordedInput(const String &file);
