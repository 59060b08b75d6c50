#include "platform/input/InputReplay.h"

#include "foundation/Logger.h"
#include "port/win32/HostPath.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

namespace
{
bool samePad(const PadState &a, const PadState &b)
{
    return a.connected == b.connected && std::memcmp(&a.gamepad, &b.gamepad, sizeof(XINPUT_GAMEPAD)) == 0;
}

/// The words of a line, one after another.
class Words
{
public:
    explicit Words(std::string_view line) : rest(line) {}

    std::string_view next()
    {
        constexpr std::string_view blanks = " \t\r";
        rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
        const std::string_view word = rest.substr(0, rest.find_first_of(blanks));
        rest.remove_prefix(word.size());
        return word;
    }

    /// Reads a number of the target's range; notes the first problem.
    template <class T>
    void read(const char *what, T &target)
    {
        using Limits = std::numeric_limits<T>;
        const std::string_view word = next();
        long long value = 0;
        if (!problem.empty())
            return;
        if (word.empty())
            problem = String::format("%s is missing", what);
        else if (!toNumber(word, value) || value < static_cast<long long>(Limits::min()) ||
                 value > static_cast<long long>(Limits::max()))
            problem =
                String::format("%s is \"%.*s\", not a number from %lld to %lld", what, int(word.size()), word.data(),
                               static_cast<long long>(Limits::min()), static_cast<long long>(Limits::max()));
        else
            target = static_cast<T>(value);
    }

    void expectEnd()
    {
        const std::string_view word = next();
        if (problem.empty() && !word.empty())
            problem = String::format("\"%.*s\" is one word too many", int(word.size()), word.data());
    }

    String problem;

private:
    static bool toNumber(std::string_view word, long long &value)
    {
        const bool negative = word.starts_with('-');
        std::string_view digits = word.substr(negative);
        const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
        digits.remove_prefix(hexadecimal ? 2 : 0);
        const auto end = digits.data() + digits.size();
        const auto result = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
        if (result.ec != std::errc() || result.ptr != end || value < 0)
            return false;
        value = negative ? -value : value;
        return true;
    }

    std::string_view rest;
};

void readKey(Words &words, RecordedInput &event)
{
    event.kind = RecordedInput::KEYBOARD;
    USHORT key = 0;
    words.read("the virtual-key code", key);
    const std::string_view state = words.next();
    if (words.problem.empty() && state != "down" && state != "up")
        words.problem = String::format("the key's state is \"%.*s\", not down or up", int(state.size()), state.data());
    event.raw = port::keyInput(key, state == "down");
}

void readMouse(Words &words, RecordedInput &event)
{
    event.kind = RecordedInput::MOUSE;
    LONG dx = 0;
    LONG dy = 0;
    USHORT buttons = 0;
    SHORT wheel = 0;
    words.read("the motion to the right", dx);
    words.read("the motion downwards", dy);
    words.read("the button flags", buttons);
    words.read("the wheel's motion", wheel);
    words.read("the cursor's x", event.cursor.x);
    words.read("the cursor's y", event.cursor.y);
    event.raw = port::mouseInput(dx, dy, buttons, wheel);
}

void readPlayer(Words &words, RecordedInput &event)
{
    event.kind = RecordedInput::PAD;
    words.read("the player", event.player);
    if (words.problem.empty() && event.player >= XUSER_MAX_COUNT)
        words.problem = String::format("there is no player %u, only 0 to %u", event.player, XUSER_MAX_COUNT - 1);
}

void readPad(Words &words, RecordedInput &event)
{
    readPlayer(words, event);
    event.pad.connected = true;
    XINPUT_GAMEPAD &pad = event.pad.gamepad;
    words.read("the buttons", pad.wButtons);
    words.read("the left trigger", pad.bLeftTrigger);
    words.read("the right trigger", pad.bRightTrigger);
    words.read("the left stick's x", pad.sThumbLX);
    words.read("the left stick's y", pad.sThumbLY);
    words.read("the right stick's x", pad.sThumbRX);
    words.read("the right stick's y", pad.sThumbRY);
}

bool isBlankOrComment(const std::string &line)
{
    const std::size_t first = line.find_first_not_of(" \t\r");
    return first == std::string::npos || line[first] == '#';
}
} // namespace

String formatRecordedInput(const RecordedInput &event)
{
    const RAWKEYBOARD &key = event.raw.data.keyboard;
    const RAWMOUSE &mouse = event.raw.data.mouse;
    const XINPUT_GAMEPAD &pad = event.pad.gamepad;
    switch (event.kind)
    {
    case RecordedInput::KEYBOARD:
        return String::format("%u key %u %s", event.frame, key.VKey, key.Flags & RI_KEY_BREAK ? "up" : "down");
    case RecordedInput::MOUSE:
        return String::format("%u mouse %d %d %u %d %d %d", event.frame, mouse.lLastX, mouse.lLastY,
                              mouse.usButtonFlags, static_cast<SHORT>(mouse.usButtonData), event.cursor.x,
                              event.cursor.y);
    case RecordedInput::PAD:
        if (!event.pad.connected)
            return String::format("%u unplug %u", event.frame, event.player);
        return String::format("%u pad %u %u %u %u %d %d %d %d", event.frame, event.player, pad.wButtons,
                              pad.bLeftTrigger, pad.bRightTrigger, pad.sThumbLX, pad.sThumbLY, pad.sThumbRX,
                              pad.sThumbRY);
    case RecordedInput::END:
        break;
    }
    return String::format("%u end", event.frame);
}

bool parseRecordedInput(const String &line, RecordedInput &event, String &problem)
{
    Words words(std::string_view(line.toCString(), line.size()));
    event = RecordedInput();
    words.read("the frame", event.frame);
    const std::string_view kind = words.next();
    if (kind == "key")
        readKey(words, event);
    else if (kind == "mouse")
        readMouse(words, event);
    else if (kind == "pad")
        readPad(words, event);
    else if (kind == "unplug")
        readPlayer(words, event);
    else if (kind != "end" && words.problem.empty())
        words.problem = String::format("\"%.*s\" is no kind of event; there are key, mouse, pad, unplug and end",
                                       int(kind.size()), kind.data());
    words.expectEnd();
    problem = words.problem;
    return problem.empty();
}

std::vector<RecordedInput> readRecordedInput(const String &file)
{
    std::vector<RecordedInput> events;
    std::ifstream in(port::hostPath(file.toCString()));
    if (!in)
    {
        const std::string reason = port::explainMissingFile(file.toCString());
        KV_LOGF(Logger_::I_ERROR, "The recorded input %s cannot be read: %s", file.toCString(),
                reason.empty() ? std::strerror(errno) : reason.c_str());
        return events;
    }

    std::string line;
    for (long number = 1; std::getline(in, line); ++number)
    {
        if (isBlankOrComment(line))
            continue;
        RecordedInput event;
        String problem;
        if (parseRecordedInput(String::copyFrom(line), event, problem))
            events.push_back(event);
        else
            Logger().writeLine(Logger_::I_ERROR, SCS("This line of recorded input is skipped: ") + problem + SCS("."),
                               file, number);
    }
    const auto earlier = [](const RecordedInput &a, const RecordedInput &b) { return a.frame < b.frame; };
    std::stable_sort(events.begin(), events.end(), earlier);
    return events;
}

void InputReplay::start(const String &file)
{
    events.clear();
    if (!file.empty())
        events = readRecordedInput(file);
    next = 0;
    frame = 0;
    pads = {};
    playing = !events.empty();
}

void InputReplay::advance()
{
    playing = next < events.size();
    ++frame;
    while (next < events.size() && events[next].frame <= frame)
        play(events[next++]);
}

void InputReplay::play(const RecordedInput &event)
{
    if (event.kind == RecordedInput::PAD)
    {
        pads[event.player] = event.pad;
        return;
    }
    if (event.kind == RecordedInput::END)
        return;
    RAWINPUT raw = event.raw;
    if (event.kind == RecordedInput::MOUSE)
        raw.data.mouse.ulExtraInformation = static_cast<ULONG>(MAKELPARAM(event.cursor.x, event.cursor.y));
    port::postRawInput(raw);
}

POINT InputReplay::cursorOf(const RAWINPUT &posted)
{
    const ULONG packed = posted.data.mouse.ulExtraInformation;
    return {static_cast<SHORT>(LOWORD(packed)), static_cast<SHORT>(HIWORD(packed))};
}

void InputRecorder::start(const String &file)
{
    stop();
    frame = 0;
    pads = {};
    if (file.empty())
        return;
    out.open(port::hostPath(file.toCString()), std::ios::trunc);
    if (!out)
        KV_LOGF(Logger_::I_ERROR, "The input cannot be recorded in %s: %s.", file.toCString(), std::strerror(errno));
}

void InputRecorder::stop()
{
    if (!isRecording())
        return;
    RecordedInput end;
    write(end);
    out.close();
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
    // Each line reaches the file at once, so that a run that ends badly can be played back.
    out << formatRecordedInput(event).toCString() << std::endl;
}
