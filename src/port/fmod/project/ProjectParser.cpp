#include "port/fmod/project/ProjectParser.h"

#include "port/fmod/project/ProjectReader.h"

namespace port
{

namespace
{

constexpr std::size_t MOST_PROBLEMS = 50;
constexpr std::size_t LONGEST_LINE = 4000;
constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";

std::string_view takeLine(std::string_view &text)
{
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

void takeWords(ProjectReader &reader, std::string_view line, int number)
{
    if (line.size() > LONGEST_LINE)
        throw LineError{"the line is longer than " + std::to_string(LONGEST_LINE) + " characters"};
    const Words words = splitLine(line);
    if (!words.empty())
        reader.take(words, number);
}

void shorten(std::vector<std::string> &problems, const std::string &file)
{
    if (problems.size() <= MOST_PROBLEMS)
        return;
    const std::size_t more = problems.size() - MOST_PROBLEMS;
    problems.resize(MOST_PROBLEMS);
    problems.push_back(file + ": and " + std::to_string(more) + " more lines that are wrong");
}

} // namespace

ProjectData parseProject(std::string_view text, const std::string &file)
{
    if (text.starts_with(BYTE_ORDER_MARK))
        text.remove_prefix(BYTE_ORDER_MARK.size());
    ProjectReader reader;
    std::vector<std::string> problems;
    for (int number = 1; !text.empty(); ++number)
    {
        const std::string_view line = takeLine(text);
        try
        {
            takeWords(reader, line, number);
        }
        catch (const LineError &error)
        {
            problems.push_back(file + ":" + std::to_string(number) + ": " + error.text);
        }
    }
    ProjectData data = reader.finish(file);
    data.problems.insert(data.problems.begin(), problems.begin(), problems.end());
    shorten(data.problems, file);
    return data;
}

} // namespace port
