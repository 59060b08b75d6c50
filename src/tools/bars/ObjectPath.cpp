#include "tools/bars/ObjectPath.h"

#include "engine/systems/NameSuggestion.h"
#include "object/tree/PathBelow.h"
#include "object/tree/Object.h"

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

bool isWithin(const Object &object, const Object &root)
{
    const Object *step = &object;
    while (step && step != &root)
        step = step->getParent().lookup().ptr;
    return step != nullptr;
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
    const auto target = object.lookup();
    if (!target)
        return String();
    for (const char *prefix : prefixes)
    {
        const auto root = rootOf(prefix).lookup();
        if (root && isWithin(*target, *root))
            return String::copyFrom(prefix) + pathBelow(root.ptr, *target);
    }
    return pathBelow(nullptr, *target);
}

Handle<Object> findObjectAt(const String &path, String &problem)
{
    std::string walked = prefixes[0];
    const std::string text = path.toCString();
    std::size_t begin = 0;
    for (const char *prefix : prefixes)
    {
        if (text.compare(0, PREFIX_LENGTH, prefix) != 0)
            continue;
        walked = prefix;
        begin = PREFIX_LENGTH;
        break;
    }
    Handle<Object> at = rootOf(walked.c_str());
    if (!at.isValid())
        problem = String::format("there is nothing at '%s'", walked.c_str());
    while (at.isValid() && begin < text.size())
    {
        const std::size_t end = std::min(text.find('/', begin), text.size());
        const String step = String::copyFrom(text.substr(begin, end - begin));
        const Handle<Object> next = at.lookup()->getChild(step);
        if (!next.isValid())
            problem =
                String::format("'%s' has %s", walked.c_str(), describeMissingChild(*at.lookup(), step).toCString());
        at = next;
        walked += (walked.back() == '/' ? "" : "/") + text.substr(begin, end - begin);
        begin = end + 1;
    }
    return at;
}
