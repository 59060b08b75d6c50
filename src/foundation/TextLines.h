// TextLines: a text as its lines.
#pragma once

#include "foundation/KVString.h"

#include <sstream>
#include <string>
#include <vector>

/// The lines of a text, without empty ones: how scripts give lists of names.
inline std::vector<std::string> linesOf(const String &text)
{
    std::vector<std::string> lines;
    std::istringstream source(text.toCString());
    for (std::string line; std::getline(source, line);)
        if (!line.empty())
            lines.push_back(line);
    return lines;
}
