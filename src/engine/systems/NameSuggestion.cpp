#include "engine/systems/NameSuggestion.h"

#include "object/reflection/AutoReflector.h"
#include "object/reflection/NearestName.h"

String describeUnknownName(const char *kind, const String &wanted, const std::vector<String> &candidates)
{
    NearestName nearest(wanted);
    for (const String &candidate : candidates)
        nearest.consider(candidate);
    return String::format("no %s '%s'%s", kind, wanted.toCString(), nearest.hint().toCString());
}

String describeUnknownClass(const String &wanted)
{
    return describeUnknownName("class", wanted, getAutoReflector().getClassNames());
}
