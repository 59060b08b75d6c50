#include "port/fmod/project/ProjectWords.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace port
{

namespace
{

constexpr std::size_t LONGEST_WORD = 64; ///< that is compared with candidates

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

bool isControl(char c)
{
    return (static_cast<unsigned char>(c) < 0x20 && c != '\t') || c == 0x7F;
}

std::string shortNumber(float value)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%g", static_cast<double>(value));
    return text;
}

std::string takeQuoted(std::string_view line, std::size_t &at)
{
    const std::size_t end = line.find('"', at + 1);
    if (end == std::string_view::npos)
        throw LineError{"a quote is not closed"};
    std::string word(line.substr(at + 1, end - at - 1));
    at = end + 1;
    return word;
}

/// How many letters have to be put in, taken out or changed.
std::size_t distanceOf(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j)
        row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i)
    {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j)
        {
            const std::size_t changed = diagonal + (a[i - 1] != b[j - 1]);
            diagonal = row[j];
            row[j] = std::min({changed, row[j] + 1, row[j - 1] + 1});
        }
    }
    return row[b.size()];
}

} // namespace

std::vector<std::string> splitLine(std::string_view line)
{
    if (std::any_of(line.begin(), line.end(), isControl))
        throw LineError{"this is not text"};
    std::vector<std::string> words;
    for (std::size_t at = 0; at < line.size();)
    {
        if (isBlank(line[at]))
            ++at;
        else if (line[at] == '#')
            break;
        else if (line[at] == '"')
            words.push_back(takeQuoted(line, at));
        else
        {
            const std::size_t begin = at;
            while (at < line.size() && !isBlank(line[at]))
                ++at;
            words.emplace_back(line.substr(begin, at - begin));
        }
    }
    return words;
}

float readNumber(const std::string &word, float least, float most)
{
    float value = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error != std::errc() || end != word.data() + word.size() || !std::isfinite(value))
        throw LineError{"'" + word + "' is no number"};
    if (value < least || value > most)
        throw LineError{word + " is not in " + shortNumber(least) + ".." + shortNumber(most)};
    return value;
}

int readWhole(const std::string &word, int least, int most)
{
    const float value = readNumber(word, static_cast<float>(least), static_cast<float>(most));
    if (value != std::floor(value))
        throw LineError{word + " is no whole number"};
    return static_cast<int>(value);
}

std::string nearestWord(std::string_view word, const std::vector<std::string> &candidates)
{
    std::string_view best;
    std::size_t least = std::min<std::size_t>(3, word.size() / 2 + 1);
    for (const std::string &candidate : candidates)
    {
        if (word.size() > LONGEST_WORD || candidate.size() > LONGEST_WORD)
            continue;
        const std::size_t distance = distanceOf(word, candidate);
        if (distance < least)
        {
            least = distance;
            best = candidate;
        }
    }
    return std::string(best);
}

std::string suggestion(std::string_view word, const std::vector<std::string> &candidates)
{
    const std::string near = nearestWord(word, candidates);
    return near.empty() ? near : "; did you mean '" + near + "'?";
}

} // namespace port
