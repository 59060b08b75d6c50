// ConsoleCommand: a word that the console knows, and what it calls.
#pragma once

#include "object/tree/ReflectorPtr.h"

#include "foundation/KVString.h"

#include <vector>

class Variant;

/// One command of the console. A value that is copied freely; scripts make it by its name:
///
///     console.addCommand(kaVel.ConsoleCommand('fall', 'metres', 'Drops the player.', fall))
struct ConsoleCommand
{
    String command;     ///< the word typed
    String param;       ///< hint of the arguments for the help text
    String description; ///< a sentence
    /// A bound method or a script's function; it takes as many texts as words are to be typed behind the command.
    ReflectorPtr function;
    bool takesLine = false; ///< the function takes one text, the rest of the line, however many words it has
};

/// Commands in the order in which they were added.
typedef std::vector<ConsoleCommand> CommandList;

/// How commands cross the reflection layer: as the script class `ConsoleCommand`.
/// @{
void SetToVariant(Variant &v, const ConsoleCommand &command);
bool fromVariant(const Variant &v, ConsoleCommand &command);
/// @}

/// Writes the help of some commands to the log, a line each, in columns.
/// @param commandWidth, paramWidth  what the first two columns take at least, characters
void logCommands(const CommandList &commands, std::size_t commandWidth, std::size_t paramWidth);
