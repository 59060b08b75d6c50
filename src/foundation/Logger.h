// Logger: one log with a history, handed line by line to output providers.
#pragma once

#include "foundation/KVString.h"

#include <cstddef>
#include <memory>
#include <vector>

class IConsoleOutputProvider;

/// The log: every line goes to every provider and into a history of bounded length.
///
/// Nothing is filtered by importance. Reached through Logger(); usable from static initialisers.
class Logger_
{
public:
    enum Importance
    {
        I_CRITICAL = 0,
        I_ERROR = 1,
        I_WARNING = 2,
        I_INFO = 3,
        I_DEBUG = 4,
        I_STACKTRACE = 5,
        NUM_IMPORTANCES = 6
    };

    struct HistoryEntry
    {
        Importance level = I_INFO;
        String message;
        String file; ///< source file; empty where the line has no place
        long line = 0;
    };

    /// Ring of the last lines, see LoggerHistory.h.
    struct LineBuffer;

    typedef std::vector<std::unique_ptr<IConsoleOutputProvider>> OutputProviderList;

    /// Text of each importance in a log line.
    static const char *const importanceNames[NUM_IMPORTANCES];

    /// Lines that the history keeps; the oldest falls out first.
    static constexpr std::size_t HISTORY_CAPACITY = 1000;

    Logger_();
    ~Logger_();
    Logger_(const Logger_ &) = delete;
    Logger_ &operator=(const Logger_ &) = delete;

    void writeLine(Importance level, const String &message, const String &file = String(), long line = 0);
    void writeLine(Importance level, const char *message, const String &file = String(), long line = 0);
    void writeLine(Importance level, const boost::format &message, const String &file = String(), long line = 0);
    /// Writes a line whose message is formatted in the manner of printf.
    void writeFormatted(Importance level, const String &file, long line, const char *format, ...)
        __attribute__((format(printf, 5, 6)));

    /// Adds a provider behind those installed.
    void addOutputProvider(std::unique_ptr<IConsoleOutputProvider> provider);
    /// Takes a provider out and hands it back; null when it is not installed.
    std::unique_ptr<IConsoleOutputProvider> removeOutputProvider(const IConsoleOutputProvider *provider);

    const OutputProviderList &getOutputProviders() const { return outputProviders; }
    /// Count of all lines ever written.
    std::size_t getLogCount() const { return logCount; }
    /// Lines in the history, at most HISTORY_CAPACITY.
    std::size_t getHistorySize() const;
    /// Line of the history, 0 being the oldest.
    /// @param index  below getHistorySize()
    const HistoryEntry &getHistoryEntry(std::size_t index) const;

private:
    friend class ConsoleComponent;
    friend class ConsoleSystem;

    std::unique_ptr<LineBuffer> lineBuffer;
    OutputProviderList outputProviders; ///< in order of installation
    std::size_t logCount = 0;           ///< lines ever written
};

/// Where log lines go.
class IConsoleOutputProvider
{
public:
    virtual ~IConsoleOutputProvider() = default;
    virtual void writeLine(Logger_::Importance level, const String &message, const String &file, long line) = 0;
};

/// The log, made at first use.
Logger_ &Logger();

/// Writes a line (a String, a C string or a boost::format) with its place in the source.
#define KV_LOG(level, message) Logger().writeLine((level), (message), SCS(__FILE__), __LINE__)

/// Writes a line formatted in the manner of printf with its place in the source.
#define KV_LOGF(level, ...) Logger().writeFormatted((level), SCS(__FILE__), __LINE__, __VA_ARGS__)
