#include "platform/input/InputReplay.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"
#include "engine/time/PlayedTimeSource.h"
#include "engine/time/TimeSystem.h"
#include "platform/window/PlayedWindow.h"
#include "platform/window/WindowSystem2.h"

#include "foundation/Logger.h"
#include "port/win32/Messages.h"

namespace
{
WindowSystem2 &window()
{
    return getSystemDeref<WindowSystem2>();
}
} // namespace

void InputReplay::start(const String &file)
{
    source = file;
    recording = InputRecording();
    next = 0;
    frame = 0;
    pads = {};
    if (!file.empty())
        recording = readRecordedInput(file);
    playing = !recording.events.empty();
    if (!file.empty() && !playing)
        getSystemDeref<GameLoopSystem>().quitIfUnattended();
}

void InputReplay::advance()
{
    // Only now is it certain which level runs, in which window.
    if (frame == 0 && playing && !belongsToThisRun())
    {
        recording.events.clear();
        getSystemDeref<GameLoopSystem>().quitIfUnattended();
    }
    playing = next < recording.events.size();
    if (playing)
        window().catchUpWithPlayedSize();
    ++frame;
    while (next < recording.events.size() && recording.events[next].frame <= frame)
        play(recording.events[next++]);
}

bool InputReplay::belongsToThisRun() const
{
    const RecordedRun now = presentRun();
    const RecordedRun &then = recording.run;
    const bool sameLevel = then.level == now.level;
    const bool sameSeed = then.seed == now.seed;
    const bool sameWindow = then.width == now.width && then.height == now.height;
    if (!sameLevel)
        complain(InputRecording::LEVEL, String::format("it belongs to the level \"%s\", and this is \"%s\"",
                                                       then.level.toCString(), now.level.toCString()));
    if (!sameSeed)
        complain(InputRecording::SEED,
                 String::format("it belongs to a run of seed %u, and this one has %u", then.seed, now.seed));
    if (!sameWindow)
        complain(InputRecording::WINDOW, String::format("it belongs to a window of %dx%d, and this one is %dx%d",
                                                        then.width, then.height, now.width, now.height));
    return sameLevel && sameSeed && sameWindow;
}

void InputReplay::complain(InputRecording::HeadLine line, const String &problem) const
{
    Logger().writeLine(Logger_::I_ERROR, SCS("The recorded input is not played: ") + problem + SCS("."), source,
                       recording.headLines[line]);
}

void InputReplay::play(const RecordedInput &event)
{
    switch (event.kind)
    {
    case RecordedInput::PAD:
        pads[event.player] = event.pad;
        return;
    case RecordedInput::TIME:
        if (const auto source = handle_cast<PlayedTimeSource>(getSystemDeref<TimeSystem>().getSource()).lookup())
            source->setFrameTicks(event.value);
        return;
    case RecordedInput::SIZE:
    case RecordedInput::DRAG:
        return window().playSize(event.size.x, event.size.y, event.kind == RecordedInput::DRAG);
    case RecordedInput::FOCUS:
        return post(WM_PLAYED_FOCUS, event.value);
    case RecordedInput::TEXT:
        return post(WM_PLAYED_TEXT, event.value);
    case RecordedInput::END:
        return;
    default:
        break;
    }
    RAWINPUT raw = event.raw;
    if (event.kind == RecordedInput::MOUSE)
        raw.data.mouse.ulExtraInformation = static_cast<ULONG>(MAKELPARAM(event.cursor.x, event.cursor.y));
    port::postRawInput(raw);
}

/// Behind the keys that were posted so far.
void InputReplay::post(UINT message, std::int64_t value)
{
    PostMessageA(window().getWindowHandle(), message, static_cast<WPARAM>(value), 0);
}

POINT InputReplay::cursorOf(const RAWINPUT &posted)
{
    const ULONG packed = posted.data.mouse.ulExtraInformation;
    return {static_cast<SHORT>(LOWORD(packed)), static_cast<SHORT>(HIWORD(packed))};
}
