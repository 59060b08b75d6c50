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
bool samePad(const PadState &a, const PadState &b)
{
    return a.connected == b.connected && std::memcmp(&a.gamepad, &b.gamepad, sizeof(XINPUT_GAMEPAD)) == 0;
}
} // namespace

void InputRecorder::start(const String &file)
{
    stop();
    frame = 0;
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
        write(formatRecordedRun(presentRun()));
    ++frame;
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

void InputRecorder::write(RecordedInput &event)
{
    event.frame = frame;
    write(formatRecordedInput(event) + SCS("\n"));
}

void InputRecorder::write(const String &lines)
{
    errno = 0;
    // Each line reaches the file at once, so that a run that ends badly can be played back.
    out << lines.toCString() << std::flush;
    if (!out)
        fail(std::strerror(errno));
}

void InputRecorder::fail(const char *reason)
{
    KV_LOGF(Logger_::I_ERROR, "The input cannot be recorded in %s: %s.", target.toCString(), reason);
    out.close();
    getSystemDeref<GameLoopSystem>().quitIfUnattended();
}
