// Logger: writing to the providers and the history.
#include "foundation/Logger.h"

#include "foundation/ConsoleOutputProviders.h"
#include "foundation/LoggerHistory.h"
#include "foundation/TextBuffer.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cstdlib>

const char *const Logger_::importanceNames[NUM_IMPORTANCES] = {"Critical",    "Error", "Warning",
                                                               "Information", "Debug", ""};

Logger_::Logger_() : lineBuffer(std::make_unique<LineBuffer>(HISTORY_CAPACITY))
{
    addOutputProvider(std::make_unique<OutputDebugStringConsoleOutputProvider>());
}

Logger_::~Logger_() = default;

void Logger_::writeLine(Importance level, const String &message, const String &file, long line)
{
    // By index: a provider may install another while it writes.
    for (std::size_t i = 0; i < outputProviders.size(); ++i)
        outputProviders[i]->writeLine(level, message, file, line);
    lineBuffer->push_back(HistoryEntry{level, message, file, line});
    ++logCount;
}

void Logger_::writeLine(Importance level, const char *message, const String &file, long line)
{
    writeLine(level, String::copyFrom(message), file, line);
}

void Logger_::writeLine(Importance level, const boost::format &message, const String &file, long line)
{
    writeLine(level, String::copyFrom(message), file, line);
}

void Logger_::writeFormatted(Importance level, const String &file, long line, const char *format, ...)
{
    va_list args;
    va_start(args, format);
    const String message = String::vformat(format, args);
    va_end(args);
    writeLine(level, message, file, line);
}

void Logger_::addOutputProvider(std::unique_ptr<IConsoleOutputProvider> provider)
{
    outputProviders.push_back(std::move(provider));
}

std::unique_ptr<IConsoleOutputProvider> Logger_::removeOutputProvider(const IConsoleOutputProvider *provider)
{
    const auto found = std::find_if(outputProviders.begin(), outputProviders.end(),
                                    [provider](const auto &installed) { return installed.get() == provider; });
    if (found == outputProviders.end())
        return nullptr;
    std::unique_ptr<IConsoleOutputProvider> removed = std::move(*found);
    outputProviders.erase(found);
    return removed;
}

std::size_t Logger_::getHistorySize() const
{
    return lineBuffer->size();
}

const Logger_::HistoryEntry &Logger_::getHistoryEntry(std::size_t index) const
{
    return (*lineBuffer)[index];
}

Logger_ &Logger()
{
    // A static destructor that logs after the log's end finds a new log, which ends in its turn.
    static Logger_ *log = nullptr;
    if (!log)
    {
        log = new Logger_;
        std::atexit(
            []
            {
                delete log;
                log = nullptr;
            });
    }
    return *log;
}
