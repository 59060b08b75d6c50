#include "physics/volumes/ScriptFaults.h"

#include <set>
#include <string_view>
#include <utility>

bool isNewFault(const Handle<Object> &culprit, const char *caller)
{
    static std::set<std::pair<machine_word, std::string_view>> reported; // numbers of objects are never used again
    return reported.emplace(culprit.getNumber(), caller).second;
}
