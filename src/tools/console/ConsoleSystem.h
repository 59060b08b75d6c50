// ConsoleSystem: the command line in the game, as far as it outlives levels.
#pragma once

#include "tools/console/ConsoleCommand.h"

#include "engine/systems/System.h"

#include <boost/circular_buffer.hpp>

#include <cstddef>

/// The line that is being typed, the lines typed before, and the commands that every level has.
///
/// Knows nothing of keys and of the screen: `ConsoleComponent` of the level in charge runs the lines and draws them. All
/// answers are lines of the log.
class ConsoleSystem : public System
{
    KV_REFLECTED(ConsoleSystem)
public:
    /// Lines that are kept; the oldest falls out first.
    static constexpr std::size_t HISTORY_CAPACITY = 200;

    ConsoleSystem() : entryHistory(HISTORY_CAPACITY) {}

    /// Begins a new live line with this text; leaves the history.
    void setCurrentEntryLine(const String &entryLine);
    /// The live line, as it stands below the history.
    String getCurrentEntryLine() const { return currentEntryLine; }
    /// What the input row shows: the live line, or the line of the history that is looked at.
    String getCurrentHistoryEntry() const;
    /// Looks at the next newer line; behind the newest one comes the live line.
    void nextHistoryEntry();
    /// Looks at the next older line, at first the newest; behind the oldest one comes the newest again.
    void prevHistoryEntry();
    /// Puts what the input row shows at the end of the history, and begins an empty live line.
    void commitEntryLine();
    /// Number of lines in the history.
    int getHistorySize() const { return static_cast<int>(entryHistory.size()); }
    /// File that keeps the history from run to run; empty for none.
    String getHistoryFile() const { return historyFile; }
    /// Names the file that keeps the history; its lines are those of the history now, if there is such a file.
    ///
    /// Each line is added as it is typed. A file that cannot be written is warned of, and the history ends with the run.
    void setHistoryFile(const String &file);

    /// Empties the text on screen: what the log holds by now is not shown any more. The log keeps it.
    void clear();
    /// Lines of the log that are not shown any more, counted from its first one.
    std::size_t getClearedCount() const { return clearedCount; }
    /// Writes all commands of the game and of the level to the log.
    void printHelp();
    /// Logs the names of an object's children; a path that leads nowhere is an assertion. See `getObjectByPath`.
    ///
    /// One without a prefix starts at the current level.
    void listChildrenCommand(const String &object);
    /// Has another level take the place of the current one, at once; what the current one keeps is handed on.
    ///
    /// A name without a level is an error, and the current one stays.
    void changeLevelCommand(const String &levelName);
    /// Reads a script's module anew from its file; what others hold of it stays as it was.
    ErrorCode reloadCommand(const String &moduleName);

    /// The commands that every level has, in their order.
    const CommandList &getGlobalCommands() const { return globalCommands; }

protected:
    void systemStartup() override;
    void systemShutdown() override {}
    DependencyList systemDependencies() override;

private:
    void readHistory();
    void keepLine(const String &line);

    boost::circular_buffer<String> entryHistory; ///< oldest first
    int currentHistoryIndex = -1;                ///< -1: the user is on the live line
    String currentEntryLine;
    CommandList globalCommands;

    String historyFile;           ///< empty: none
    std::size_t clearedCount = 0; ///< lines of the log
};
