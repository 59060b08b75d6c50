// WholeFile: ordinary files, read and written as a whole.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace port
{

/// Reads an ordinary file of at most `most` bytes.
///
/// Folders, pipes and devices are refused, so that it neither waits nor reads without end.
/// @param designed  a designed path
/// @return why it cannot be read, as a sentence; empty on success, with the bytes in `contents`
std::string readWholeFile(const char *designed, std::size_t most, std::string &contents);

/// Writes a file whole or not at all: a new one beside it, which then takes its name.
///
/// What stood under the name before stays where anything fails. Only an ordinary file is replaced. In a folder that takes
/// no new one, a file that is there is written over.
/// @param designed  a designed path
/// @return why it cannot be written, as a sentence; empty on success
std::string writeWholeFile(const char *designed, std::string_view contents);

} // namespace port
