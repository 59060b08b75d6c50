// ConsoleOutputProviders: the debug output and a file as places for log lines.
#pragma once

#include "foundation/Logger.h"

#include <fstream>

class TextBuffer;

/// Puts together "file(line): importance: message" and a line break, without the place where no file is given.
void appendLogLine(TextBuffer &out, Logger_::Importance level, const String &message, const String &file, long line);

/// Hands each line to the platform's debug output; the log installs one at its start.
class OutputDebugStringConsoleOutputProvider : public IConsoleOutputProvider
{
public:
    /// Whether lines of the importance "Debug" are shown, by default so; otherwise only the file that keeps the debug
    /// output has them. Holds for all providers of this kind.
    static void showDebugLines(bool shown);

    void writeLine(Logger_::Importance level, const String &message, const String &file, long line) override;
};

/// Appends each line to a file; nobody installs it by default.
class FileConsoleOutputProvider : public IConsoleOutputProvider
{
public:
    /// Starts an empty file at getLogFilePath(); where that cannot be opened, lines are dropped.
    FileConsoleOutputProvider();
    explicit FileConsoleOutputProvider(const String &path);

    void writeLine(Logger_::Importance level, const String &message, const String &file, long line) override;

    /// The log file, in the working directory.
    static String getLogFilePath();

private:
    std::ofstream os;
};
