#include "engine/systems/Confinement.h"

#include "port/process/Confinement.h"

#include <sstream>

namespace
{

std::vector<std::string> linesOf(const String &text)
{
    std::vector<std::string> lines;
    std::istringstream source(text.toCString());
    for (std::string line; std::getline(source, line);)
        if (!line.empty())
            lines.push_back(line);
    return lines;
}

} // namespace

String confine(const String &folders, const String &files)
{
    std::string lacking;
    for (const std::string &sentence : port::confineProcess({linesOf(folders), linesOf(files)}))
        lacking += (lacking.empty() ? "" : "\n") + sentence;
    return String::copyFrom(lacking);
}
