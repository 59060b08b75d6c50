#include "object/reflection/NearestName.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace
{

char lowered(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

} // namespace

NearestName::NearestName(String wanted) : wanted(std::move(wanted)), bestDistance(this->wanted.size() / 3 + 1) {}

void NearestName::consider(const String &candidate)
{
    const std::size_t longer = std::max(candidate.size(), wanted.size());
    if (longer - std::min(candidate.size(), wanted.size()) > bestDistance)
        return;
    const std::size_t distance = distanceTo(candidate);
    if (distance > bestDistance || distance >= longer)
        return;
    if (distance == bestDistance && !best.empty() && !(candidate < best))
        return;
    bestDistance = distance;
    best = candidate;
}

String NearestName::hint() const
{
    return best.empty() ? String() : String::format("; did you mean '%s'?", best.toCString());
}

// Count of letters to insert, drop or replace, one row of the usual table at a time.
std::size_t NearestName::distanceTo(const String &candidate) const
{
    std::vector<std::size_t> row(candidate.size() + 1);
    for (std::size_t column = 0; column < row.size(); ++column)
        row[column] = column;
    for (std::size_t line = 1; line <= wanted.size(); ++line)
    {
        std::size_t diagonal = std::exchange(row[0], line);
        for (std::size_t column = 1; column < row.size(); ++column)
        {
            const bool same = lowered(wanted[line - 1]) == lowered(candidate[column - 1]);
            const std::size_t replaced = diagonal + (same ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({replaced, row[column] + 1, row[column - 1] + 1});
        }
    }
    return row.back();
}
