#include "object/tree/PathBelow.h"

#include "object/tree/Object.h"

#include <algorithm>
#include <string>

std::vector<String> namesBelow(const Object *above, const Object &object)
{
    std::vector<String> names;
    for (const Object *step = &object; step && step != above; step = step->getParent().lookup().ptr)
        names.push_back(step->getName());
    std::reverse(names.begin(), names.end());
    return names;
}

String pathBelow(const Object *above, const Object &object)
{
    std::string path;
    for (const String &name : namesBelow(above, object))
        path.append(path.empty() ? "" : "/").append(name.toCString());
    return String::copyFrom(path);
}
