// ProjectWords: the words of one line of a sound project.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace port
{

/// A line that cannot be understood; says what was expected.
struct LineError
{
    std::string text;
};

/// Words between blanks; one in double quotes may hold blanks. A word that begins with # ends the line.
/// @throws LineError where a quote is not closed or the line is not text
std::vector<std::string> splitLine(std::string_view line);

/// A number of a range.
/// @throws LineError that names the word and the range
float readNumber(const std::string &word, float least, float most);
int readWhole(const std::string &word, int least, int most);

/// The candidate that a word was probably meant to be, or empty.
std::string nearestWord(std::string_view word, const std::vector<std::string> &candidates);
/// "; did you mean 'X'?", or nothing where no candidate is near.
std::string suggestion(std::string_view word, const std::vector<std::string> &candidates);

} // namespace port
