#include "tools/console/ConsoleCommand.h"

#include "foundation/Logger.h"

#include <string>

namespace
{
constexpr const char *INDENT = "  ";

std::string padded(const String &text, std::size_t width)
{
    std::string cell = text.toCString();
    if (cell.size() < width)
        cell.append(width - cell.size(), ' ');
    return cell;
}
} // namespace

void logCommands(const CommandList &commands, std::size_t commandWidth, std::size_t paramWidth)
{
    for (const ConsoleCommand &entry : commands)
        Logger().writeLine(Logger_::I_INFO,
                           String::copyFrom(INDENT + padded(entry.command, commandWidth) + INDENT +
                                            padded(entry.param, paramWidth) + INDENT + entry.description.toCString()));
}
