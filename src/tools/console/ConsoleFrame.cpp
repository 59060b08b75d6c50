// ConsoleComponent: what was typed, and what is shown of it.
#include "tools/console/ConsoleComponent.h"

#include "object/reflection/SavedArguments.h"
#include "tools/console/Characters.h"
#include "tools/console/ConsoleSystem.h"
#include "tools/console/TextBuffSystem.h"

#include <algorithm>
#include <string_view>

namespace
{
constexpr int MOST_WAYS_SHOWN = 8;
constexpr char BACKSPACE = '\b';

/// What stands before the next of a mark; both are taken off the text.
std::string_view takeUntil(std::string_view &text, char mark)
{
    const std::size_t end = text.find(mark);
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return part;
}
} // namespace

void ConsoleComponent::doFrame()
{
    ConsoleSystem &console = getSystemDeref<ConsoleSystem>();
    TextBuffSystem &typed = getSystemDeref<TextBuffSystem>();
    const auto entity = getParent().lookup();
    if (!entity)
        return;
    typed.followSwitches();
    if (!typed.isCapturing())
    {
        screen.show(*entity, false);
        return screen.setWatch(*entity, watchText);
    }

    do
    {
        const String token = typed.getText();
        typed.clear();
        takeToken(token, console);
    } while (typed.refill() && typed.isCapturing());

    screen.show(*entity, typed.isCapturing());
    screen.layOut(*entity, rows, charsPerRow, alpha);
    showLog(console);
    findWays(console.getCurrentHistoryEntry());
    cursorShown = !cursorShown;
    screen.setLine(*entity, console.getCurrentHistoryEntry(), caret.place(console.getCurrentHistoryEntry()),
                   cursorShown);
    screen.setWatch(*entity, watchText);
    screen.setWays(*entity, describeWays());
}

void ConsoleComponent::takeToken(const String &token, ConsoleSystem &console)
{
    if (token.empty())
        return;
    const String line = console.getCurrentHistoryEntry();
    if (moveCaret(token, line))
        return;
    const bool isLook = token == SCS("UP") || token == SCS("DOWN");
    if (isLook || token == SCS("\n") || token == SCS("TAB"))
        caret.toEnd();
    if (token == SCS("UP"))
        console.prevHistoryEntry();
    else if (token == SCS("DOWN"))
        console.nextHistoryEntry();
    else if (token == SCS("DELETE"))
        console.setCurrentEntryLine(caret.erasedBehind(line));
    else if (token == SCS("\n"))
        takeLine(console);
    else if (token == SCS("TAB"))
        complete(console);
    else if (token.size() == 1 && token[0] == BACKSPACE)
        console.setCurrentEntryLine(caret.erasedBefore(line));
    else
        console.setCurrentEntryLine(caret.typed(line, token));
}

/// Moves in the line, which stays; false for a token that means something else.
bool ConsoleComponent::moveCaret(const String &token, const String &line)
{
    if (token == SCS("LEFT"))
        caret.left(line);
    else if (token == SCS("RIGHT"))
        caret.right(line);
    else if (token == SCS("WORDLEFT"))
        caret.wordLeft(line);
    else if (token == SCS("WORDRIGHT"))
        caret.wordRight(line);
    else if (token == SCS("HOME"))
        caret.toBegin(line);
    else if (token == SCS("END"))
        caret.toEnd();
    else
        return false;
    return true;
}

void ConsoleComponent::takeLine(ConsoleSystem &console)
{
    const String line = console.getCurrentHistoryEntry();
    back = 0;
    Logger().writeLine(Logger_::I_INFO, line);
    executeCommand(line);
    console.commitEntryLine();
}

/// The first TAB takes the first command that the line begins, or the first way to go on; further ones take the others
/// in turn.
void ConsoleComponent::complete(ConsoleSystem &console)
{
    const String line = console.getCurrentHistoryEntry();
    findWays(line);
    const String word = completeWord(line);
    if (chosenWay < 0 && !word.empty() && word != line)
    {
        const auto same = [&word](const Way &way) { return word == String::copyFrom(way.line); };
        const auto found = std::find_if(ways.begin(), ways.end(), same);
        chosenWay = found != ways.end() ? static_cast<int>(found - ways.begin()) : -1;
        console.setCurrentEntryLine(word);
        return;
    }
    if (ways.empty())
        return;
    chosenWay = (chosenWay + 1) % static_cast<int>(ways.size());
    console.setCurrentEntryLine(String::copyFrom(ways[static_cast<std::size_t>(chosenWay)].line));
}

/// Finds the ways to go on with a line, unless it is the one that TAB has just made of them.
void ConsoleComponent::findWays(const String &line)
{
    const bool isChosen = chosenWay >= 0 && line == String::copyFrom(ways[static_cast<std::size_t>(chosenWay)].line);
    if (isChosen || line == completed)
        return;
    completed = line;
    chosenWay = -1;
    ways.clear();
    if (!completer || line.empty())
        return;
    SavedArguments arguments = SavedArguments::of(line);
    const ErrorReturn<Variant> answer = completer->do_call(arguments);
    if (!answer.code.succeeded())
        completer = nullptr; // it has told why
    const String text = answer.value.get<String>().value;
    for (std::string_view rest(text.toCString(), text.size()); !rest.empty();)
    {
        std::string_view row = takeUntil(rest, '\n');
        Way way;
        way.line = takeUntil(row, '\t');
        way.shown = takeUntil(row, '\t');
        way.sentence = row;
        ways.push_back(std::move(way));
    }
}

String ConsoleComponent::describeWays() const
{
    const int count = static_cast<int>(ways.size());
    const int first = std::clamp(chosenWay - MOST_WAYS_SHOWN / 2, 0, std::max(count - MOST_WAYS_SHOWN, 0));
    const int end = std::min(first + MOST_WAYS_SHOWN, count);
    std::size_t width = 0;
    for (int i = first; i < end; ++i)
        width = std::max(width, charactersOf(ways[static_cast<std::size_t>(i)].shown));
    std::string text;
    for (int i = first; i < end; ++i)
    {
        const Way &way = ways[static_cast<std::size_t>(i)];
        std::string row = (i == chosenWay ? "> " : "  ") + way.shown;
        row.resize(row.size() + width + 2 - charactersOf(way.shown), ' ');
        row += way.sentence;
        row.resize(bytesOf(row, static_cast<std::size_t>(screen.charsAcross())));
        text += row + '\n';
    }
    if (end < count)
        text += "  ... " + std::to_string(count - end) + " more\n";
    return String::copyFrom(text);
}

void ConsoleComponent::showLog(const ConsoleSystem &console)
{
    const auto count = static_cast<unsigned>(Logger().getLogCount());
    if (choice.first != console.getClearedCount())
    {
        choice.first = console.getClearedCount();
        logIsStale = true;
    }
    const auto entity = getParent().lookup();
    if (!entity || (count == lastLogCount && !logIsStale))
        return;
    back = logRows.gather(choice, static_cast<std::size_t>(rows), static_cast<std::size_t>(charsPerRow), back);
    ConsoleScreen::setLog(*entity,
                          {logRows.text(), logRows.textOf(Logger_::I_ERROR), logRows.textOf(Logger_::I_WARNING)});
    lastLogCount = count;
    logIsStale = false;
}
