#include "tools/ObjectPath.h"

#include "engine/NameSuggestion.h"
#include "object/Object.h"

#include <algorithm>
#include <string>
#include <vector>

namespace
{
constexpr const char *prefixes[] = {"c:/", "s:/"};
constexpr std::size_t PREFIX_LENGTH = 3;

Handle<Object> rootOf(const char *prefix)
{
    return getObjectByPath(String::copyFrom(prefix));
}

/// "no child 'X'; did you mean 'Y'?" of an object.
String describeMissingChild(const Object &object, const String &wanted)
{
    std::vector<String> names;
    for (auto it = object.children_begin(); it != object.children_end(); ++it)
        if (auto child = it->lookup())
            names.push_back(child->getName());
    return describeUnknownName("child", wanted, names);
}
} // namespace

String objectPath(const Handle<Object> &object)
{
    std::string path;
    Handle<Object> at = object;
    for (auto step = at.lookup(); step; step = at.lookup())
    {
        for (const char *prefix : prefixes)
            if (rootOf(prefix) == at)
                return String::copyFrom(prefix + path);
        path.insert(0, path.empty() ? "" : "/").insert(0, step->getName().toCString());
        at = step->getParent();
    }
    return String::copyFrom(path);
}

Handle<Object> findObjectAt(const String &path, String &problem)
{
    std::string walked = prefixes[0];
    std::string rest = path.toCString();
    for (const char *prefix : prefixes)
    {
        if (rest.compare(0, PREFIX_LENGTH, prefix) != 0)
            continue;
        walked = prefix;
        rest.erase(0, PREFIX_LENGTH);
        break;
    }
    Handle<Object> at = rootOf(walked.c_str());
    if (!at.isValid())
        problem = String::format("there is nothing at '%s'", walked.c_str());
    while (at.isValid() && !rest.empty())
    {
        const std::size_t end = std::min(rest.find('/'), rest.size());
        const String step = String::copyFrom(rest.substr(0, end));
        const Handle<Object> next = at.lookup()->getChild(step);
        if (!next.isValid())
            problem =
                String::format("'%s' has %s", walked.c_str(), describeMissingChild(*at.lookup(), step).toCString());
        at = next;
        walked += (walked.back() == '/' ? "" : "/") + rest.substr(0, end);
        rest.erase(0, end + 1);
    }
    return at;
}
