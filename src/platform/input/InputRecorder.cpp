#include "platform/input/InputRecorder.h"

#include "engine/levels/GameLoop.h"
#include "engine/systems/SystemSystem.h"

#include "foundation/Logger.h"
#include "port/win32/HostPath.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace
{
/// A recording by the way ends here, bytes: some eight hours of play.
constexpr std::size_t LARGEST_BY_THE_WAY = 128 << 20;

bool samePad(const PadState &a, const PadState &b)
{
    return a.connected == b.connected && std::memcmp(&a.gamepad, &b.gamepad, sizeof(XINPUT_GAMEPAD)) == 0;
}
} // namespace

void InputRecorder::start(const String &file)
{
    stop();
    frame = 0;
    written = 0;
    lastTicks = 0;
    pads = {};
    target = file;
    if (!file.empty())
        open();
}

void InputRecorder::open()
{
    // A pipe would wait for its reader.
    const std::filesystem::path path = port::hostPath(target.toCString());
    std::error_code missing;
    const std::filesystem::file_status status = std::filesystem::status(path, missing);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        return fail("It is no ordinary file");
    errno = 0;
    out.clear();
    out.open(path, std::ios::trunc);
    if (!out)
        fail(std::strerror(errno));
}

void InputRecorder::stop()
{
    if (!isRecording())
        return;
    if (frame > 0)
    {
        RecordedInput end;
        write(end);
    }
    out.close();
}

void InputRecorder::advance()
{
    // Only now is it certain which level runs, in which window.
    if (isRecording() && frame == 0)
        write(formatRecordedRun(presentRun()).toCString());
    else
        recordTime();
    ++frame;
    if (isRecording())
        out.flush();
}

/// Only behind a frame it is known how long it was.
void InputRecorder::recordTime()
{
    const std::int64_t ticks = getSystemDeref<GameLoopSystem>().getTime().lookup()->getWallTimeFrameTime();
    if (!isRecording() || ticks == lastTicks)
        return;
    lastTicks = ticks;
    record(RecordedInput::TIME, ticks);
}

void InputRecorder::record(const RAWINPUT &raw, POINT cursor)
{
    if (!isRecording())
        return;
    RecordedInput event;
    event.kind = raw.header.dwType == RIM_TYPEMOUSE ? RecordedInput::MOUSE : RecordedInput::KEYBOARD;
    event.raw = raw;
    event.cursor = cursor;
    write(event);
}

void InputRecorder::record(unsigned player, const PadState &pad)
{
    if (!isRecording() || samePad(pads[player], pad))
        return;
    pads[player] = pad;
    RecordedInput event;
    event.kind = RecordedInput::PAD;
    event.player = player;
    event.pad = pad;
    write(event);
}

void InputRecorder::record(RecordedInput::Kind kind, std::int64_t value)
{
    if (!isRecording() || frame == 0)
        return;
    RecordedInput event;
    event.kind = kind;
    event.value = value;
    write(event);
}

void InputRecorder::record(RecordedInput::Kind kind, int width, int height)
{
    if (!isRecording() || frame == 0)
        return;
    RecordedInput event;
    event.kind = kind;
    event.size = {width, height};
    write(event);
}

void InputRecorder::write(RecordedInput &event)
{
    event.frame = frame;
    write(RecordedLine(event).get());
    if (purpose == KEPT_BY_THE_WAY && written > LARGEST_BY_THE_WAY)
        fail("it has become too large, and a report has the play up to here only");
}

void InputRecorder::write(std::string_view lines)
{
    errno = 0;
    out << lines;
    written += lines.size();
    // At once, so that a run that ends badly can be played back; one by the way has each frame together.
    if (purpose == ASKED_FOR)
        out.flush();
    if (!out)
        fail(std::strerror(errno));
}

void InputRecorder::fail(const char *reason)
{
    const Logger_::Importance importance = purpose == ASKED_FOR ? Logger_::I_ERROR : Logger_::I_WARNING;
    KV_LOGF(importance, "The input cannot be recorded in %s: %s.", target.toCString(), reason);
    out.close();
    if (purpose == ASKED_FOR)
        getSystemDeref<GameLoopSystem>().quitIfUnattended();
}
