#include "platform/input/RecordedInput.h"

#include "foundation/Logger.h"
#include "port/win32/WholeFile.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <string>
#include <string_view>

namespace
{
constexpr unsigned VERSION_WRITTEN = 2;
constexpr unsigned VERSION_WITHOUT_CLOCK = 1;
constexpr std::size_t LARGEST_FILE = 256 << 20; ///< bytes; hours of play
constexpr std::size_t LONGEST_SHOWN = 40;       ///< characters of a word in an error text

String shown(std::string_view word)
{
    return String::copyFrom(word.data(), std::min(word.size(), LONGEST_SHOWN));
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
            problem = String::format("%s is \"%s\", not a number from %lld to %lld", what, shown(word).toCString(),
                                     static_cast<long long>(Limits::min()), static_cast<long long>(Limits::max()));
        else
            target = static_cast<T>(value);
    }

    /// Takes the first word, which has to be this one.
    void expect(const char *wanted)
    {
        const std::string_view word = next();
        if (problem.empty() && word != wanted)
            problem = String::format("\"%s\" stands where \"%s\" is wanted", shown(word).toCString(), wanted);
    }

    /// Takes all that is left, without the blanks around it.
    String remainder()
    {
        const std::string_view first = next();
        const char *const begin = first.data();
        std::string_view last = first;
        for (std::string_view word = first; !word.empty(); word = next())
            last = word;
        return String::copyFrom(begin, static_cast<std::size_t>(last.data() + last.size() - begin));
    }

    void expectEnd()
    {
        const std::string_view word = next();
        if (problem.empty() && !word.empty())
            problem = String::format("\"%s\" is one word too many", shown(word).toCString());
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
        words.problem = String::format("the key's state is \"%s\", not down or up", shown(state).toCString());
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

void readSize(Words &words, RecordedInput &event, RecordedInput::Kind kind)
{
    event.kind = kind;
    words.read("the width", event.size.x);
    words.read("the height", event.size.y);
}

void readValue(Words &words, RecordedInput &event, RecordedInput::Kind kind, const char *what)
{
    event.kind = kind;
    words.read(what, event.value);
}

bool isBlankOrComment(std::string_view line)
{
    const std::size_t first = line.find_first_not_of(" \t\r");
    return first == std::string_view::npos || line[first] == '#';
}

String parseHeadLine(std::string_view line, int which, InputRecording &recording)
{
    Words words(line);
    RecordedRun &run = recording.run;
    switch (which)
    {
    case InputRecording::VERSION:
        words.expect("input");
        words.read("the version", recording.version);
        if (words.problem.empty() && (recording.version < 1 || recording.version > VERSION_WRITTEN))
            return String::format("it is of version %u, and only 1 to %u are known", recording.version,
                                  VERSION_WRITTEN);
        break;
    case InputRecording::LEVEL:
        words.expect("level");
        run.level = words.remainder();
        break;
    case InputRecording::SEED:
        words.expect("seed");
        words.read("the seed", run.seed);
        break;
    case InputRecording::CLOCK:
        words.expect("clock");
        words.read("the clock's rate", run.clock);
        if (words.problem.empty() && run.clock < 1)
            return SCS("a clock of less than a tick a second is none");
        break;
    default:
        words.expect("window");
        words.read("the window's width", run.width);
        words.read("the window's height", run.height);
    }
    words.expectEnd();
    return words.problem;
}

/// Takes one line of a file after another into a recording.
class RecordingReader
{
public:
    /// What is wrong with the line; empty if nothing is.
    String take(std::string_view line)
    {
        ++number;
        if (isBlankOrComment(line))
            return String();
        if (head < headLines())
        {
            recording.headLines[head] = number;
            return parseHeadLine(line, head++, recording);
        }
        RecordedInput event;
        String problem;
        if (parseRecordedInput(String::copyFrom(line.data(), line.size()), event, problem))
            recording.events.push_back(event);
        return problem;
    }

    /// What is wrong with the file as a whole, behind its last line.
    String finish()
    {
        if (number == 0)
            return SCS("it is empty");
        if (recording.events.empty() || recording.events.back().kind != RecordedInput::END)
            return SCS("it is cut off: its last line has to be \"FRAME end\"");
        const auto earlier = [](const RecordedInput &a, const RecordedInput &b) { return a.frame < b.frame; };
        std::stable_sort(recording.events.begin(), recording.events.end(), earlier);
        return String();
    }

    InputRecording recording;
    long number = 0; ///< of the line that was taken last

private:
    int headLines() const
    {
        return recording.version == VERSION_WITHOUT_CLOCK ? InputRecording::CLOCK : InputRecording::HEAD_LINES;
    }

    int head = 0; ///< line of the head that comes next
};
} // namespace

String formatRecordedRun(const RecordedRun &run)
{
    return String::format("input %u\nlevel %s\nseed %u\nwindow %d %d\nclock %lld\n", VERSION_WRITTEN,
                          run.level.toCString(), run.seed, run.width, run.height, static_cast<long long>(run.clock));
}

RecordedLine::RecordedLine(const RecordedInput &event)
{
    const RAWKEYBOARD &key = event.raw.data.keyboard;
    const RAWMOUSE &mouse = event.raw.data.mouse;
    const XINPUT_GAMEPAD &pad = event.pad.gamepad;
    const auto write = [this]<class... Values>(const char *format, Values... values)
    { return std::snprintf(text.data(), text.size(), format, values...); };
    const auto writeAll = [&]
    {
        switch (event.kind)
        {
        case RecordedInput::KEYBOARD:
            return write("%u key %u %s\n", event.frame, key.VKey, key.Flags & RI_KEY_BREAK ? "up" : "down");
        case RecordedInput::MOUSE:
            return write("%u mouse %d %d %u %d %d %d\n", event.frame, mouse.lLastX, mouse.lLastY, mouse.usButtonFlags,
                         static_cast<SHORT>(mouse.usButtonData), event.cursor.x, event.cursor.y);
        case RecordedInput::PAD:
            if (!event.pad.connected)
                return write("%u unplug %u\n", event.frame, event.player);
            return write("%u pad %u %u %u %u %d %d %d %d\n", event.frame, event.player, pad.wButtons, pad.bLeftTrigger,
                         pad.bRightTrigger, pad.sThumbLX, pad.sThumbLY, pad.sThumbRX, pad.sThumbRY);
        case RecordedInput::TEXT:
            return write("%u text %lld\n", event.frame, static_cast<long long>(event.value));
        case RecordedInput::TIME:
            return write("%u time %lld\n", event.frame, static_cast<long long>(event.value));
        case RecordedInput::FOCUS:
            return write("%u focus %d\n", event.frame, event.value ? 1 : 0);
        case RecordedInput::SIZE:
            return write("%u size %d %d\n", event.frame, event.size.x, event.size.y);
        case RecordedInput::DRAG:
            return write("%u drag %d %d\n", event.frame, event.size.x, event.size.y);
        case RecordedInput::END:
            break;
        }
        return write("%u end\n", event.frame);
    };
    length = static_cast<std::size_t>(writeAll());
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
    else if (kind == "text")
        readValue(words, event, RecordedInput::TEXT, "the character");
    else if (kind == "time")
        readValue(words, event, RecordedInput::TIME, "the ticks");
    else if (kind == "focus")
        readValue(words, event, RecordedInput::FOCUS, "whether the window has the focus");
    else if (kind == "size")
        readSize(words, event, RecordedInput::SIZE);
    else if (kind == "drag")
        readSize(words, event, RecordedInput::DRAG);
    else if (kind != "end" && words.problem.empty())
        words.problem = String::format("\"%s\" is no kind of event; there are key, text, mouse, pad, unplug, time, "
                                       "focus, size, drag and end",
                                       shown(kind).toCString());
    words.expectEnd();
    problem = words.problem;
    return problem.empty();
}

InputRecording readRecordedInput(const String &file)
{
    std::string text;
    const std::string unreadable = port::readWholeFile(file.toCString(), LARGEST_FILE, text);
    if (!unreadable.empty())
    {
        KV_LOGF(Logger_::I_ERROR, "The recorded input %s cannot be read: %s", file.toCString(), unreadable.c_str());
        return InputRecording();
    }

    RecordingReader reader;
    String problem;
    std::string_view rest = text;
    while (problem.empty() && !rest.empty())
    {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        problem = reader.take(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    if (problem.empty())
        problem = reader.finish();
    if (problem.empty())
        return std::move(reader.recording);
    Logger().writeLine(Logger_::I_ERROR, SCS("The recorded input is not played: ") + problem + SCS("."), file,
                       reader.number);
    return InputRecording();
}
