// ConsoleOutputProviders: the form of a log line, and the two places that lines go to.
#include "foundation/ConsoleOutputProviders.h"

#include "foundation/TextBuffer.h"
#include "port/win32/Diagnostics.h"

namespace
{
bool debugLinesAreShown = true;
}

void appendLogLine(TextBuffer &out, Logger_::Importance level, const String &message, const String &file, long line)
{
    if (!file.empty())
    {
        out.append(file);
        out.append('(');
        out.appendInteger(line);
        out.append("): ", 3);
    }
    out.append(Logger_::importanceNames[level]);
    out.append(": ", 2);
    out.append(message);
    out.append('\n');
}

void OutputDebugStringConsoleOutputProvider::showDebugLines(bool shown)
{
    debugLinesAreShown = shown;
}

void OutputDebugStringConsoleOutputProvider::writeLine(Logger_::Importance level, const String &message,
                                                       const String &file, long line)
{
    TextBuffer text;
    appendLogLine(text, level, message, file, line);
    if (level == Logger_::I_DEBUG && !debugLinesAreShown)
        port::keepDebugText(text.data());
    else
        OutputDebugStringA(text.data());
    if (level <= Logger_::I_ERROR)
        port::flushDebugOutput();
}

FileConsoleOutputProvider::FileConsoleOutputProvider() : FileConsoleOutputProvider(getLogFilePath()) {}

FileConsoleOutputProvider::FileConsoleOutputProvider(const String &path) : os(path.toCString()) {}

void FileConsoleOutputProvider::writeLine(Logger_::Importance level, const String &message, const String &file,
                                          long line)
{
    TextBuffer text;
    appendLogLine(text, level, message, file, line);
    os.write(text.data(), static_cast<std::streamsize>(text.size()));
    if (level <= Logger_::I_ERROR)
        os.flush();
}

String FileConsoleOutputProvider::getLogFilePath()
{
    return SCS("kaVel.log");
}
