// ConsoleRows: the last lines of the log as rows of the console.
#pragma once

#include "foundation/Logger.h"

#include <cstddef>
#include <deque>
#include <string>

/// Rows of text, oldest first, each of at most so many characters.
///
/// A line of the log is shown as "importance: message" and broken at blanks where it is too long; what goes on is
/// indented, in lines of columns to the last one. Characters are counted as UTF-8 has them.
class ConsoleRows
{
public:
    /// What is shown of the log.
    struct Choice
    {
        std::size_t first = 0;                       ///< lines of the log that are left out, counted from its first one
        Logger_::Importance least = Logger_::I_INFO; ///< the least important lines that are shown
        std::string words;                           ///< what lines must have in them, in letters of either case
    };

    /// Takes the rows that end so many rows above the log's end; none before the first line.
    /// @param back  rows above the end; the result is moved down to where there still are rows
    /// @return how many rows above the end the rows now stand
    std::size_t gather(const Choice &choice, std::size_t rows, std::size_t charsPerRow, std::size_t back);

    /// All rows with a line feed behind each.
    String text() const;
    /// The rows of one importance, or the empty rows in their places, so that it lies on the text of all.
    String textOf(Logger_::Importance level) const;

private:
    struct Row
    {
        std::string text;
        Logger_::Importance level;
    };

    void breakLine(const Logger_::HistoryEntry &line, std::size_t charsPerRow);

    std::deque<Row> shown;
    std::deque<Row> line; ///< that is being broken
};
