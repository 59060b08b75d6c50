#include "tools/console/ConsoleRows.h"

#include "tools/console/Characters.h"

#include <algorithm>
#include <cctype>
#include <string_view>

namespace
{
constexpr std::size_t USUAL_INDENT = 4;
/// Narrower than this nothing can be read.
constexpr std::size_t FEWEST_CHARACTERS = 8;

/// Where a text that is too long for its row is to be broken: behind its last blank, if that leaves half a row.
std::size_t breakOf(std::string_view text, std::size_t characters)
{
    const std::size_t room = bytesOf(text, characters);
    if (room == text.size())
        return room;
    const std::size_t blank = text.rfind(' ', room);
    return blank != std::string_view::npos && blank > room / 2 ? blank : std::max<std::size_t>(room, 1);
}

/// Where the last column of a line of columns begins, if that leaves a third of a row; else the usual indent.
std::size_t columnOf(std::string_view text, std::size_t characters)
{
    const std::size_t gap = text.substr(0, bytesOf(text, characters)).rfind("  ");
    return gap != std::string_view::npos && (gap + 2) * 3 <= characters * 2 ? gap + 2 : USUAL_INDENT;
}

bool hasWords(const std::string &line, const std::string &words)
{
    const auto same = [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); };
    return std::search(line.begin(), line.end(), words.begin(), words.end(), same) != line.end();
}
} // namespace

void ConsoleRows::breakLine(const Logger_::HistoryEntry &entry, std::size_t charsPerRow)
{
    const String whole = String::format("%s: %s\n", Logger_::importanceNames[entry.level], entry.message.toCString());
    std::string_view rest(whole.toCString(), whole.size());
    line.clear();
    while (!rest.empty())
    {
        const std::size_t end = rest.find('\n');
        std::string_view paragraph = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (paragraph.empty() && rest.empty() && !line.empty())
            break; // the message ended its own line
        const std::string hanging(columnOf(paragraph, charsPerRow), ' ');
        std::string indent(line.empty() ? 0 : USUAL_INDENT, ' ');
        do
        {
            const std::size_t taken = breakOf(paragraph, charsPerRow - indent.size());
            line.push_back({indent + std::string(paragraph.substr(0, taken)), entry.level});
            paragraph.remove_prefix(taken);
            paragraph.remove_prefix(std::min(paragraph.find_first_not_of(' '), paragraph.size()));
            indent = hanging;
        } while (!paragraph.empty());
    }
}

std::size_t ConsoleRows::gather(const Choice &choice, std::size_t rows, std::size_t charsPerRow, std::size_t back)
{
    const std::size_t kept = Logger().getHistorySize();
    const std::size_t lost = Logger().getLogCount() - kept;
    const std::size_t first = choice.first > lost ? std::min(choice.first - lost, kept) : 0;
    const std::size_t wanted = rows + back;
    shown.clear();
    for (std::size_t index = kept; index > first && shown.size() < wanted; --index)
    {
        const Logger_::HistoryEntry &entry = Logger().getHistoryEntry(index - 1);
        if (entry.level > choice.least || !hasWords(entry.message.toCString(), choice.words))
            continue;
        breakLine(entry, std::max(charsPerRow, FEWEST_CHARACTERS));
        shown.insert(shown.begin(), line.begin(), line.end());
    }
    const std::size_t possible = std::min(back, shown.size() > rows ? shown.size() - rows : 0);
    shown.resize(shown.size() - possible);
    while (shown.size() > rows)
        shown.pop_front();
    return possible;
}

String ConsoleRows::text() const
{
    std::string all;
    for (const Row &row : shown)
        all += row.text + '\n';
    return String::copyFrom(all);
}

String ConsoleRows::textOf(Logger_::Importance level) const
{
    std::string all;
    for (const Row &row : shown)
        all += (row.level == level ? row.text : std::string()) + '\n';
    return String::copyFrom(all);
}
