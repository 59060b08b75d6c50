#include "tools/bars/ObjectQuery.h"

#include "tools/bars/BarValues.h"
#include "tools/bars/ObjectPath.h"
#include "tools/bars/PropertyLine.h"

#include "object/reflection/DoxyElement.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/Object.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace
{
/// How near a number has to come to the one that is searched for, as a part of it: what is typed has few digits.
constexpr double NEAR = 1e-4;

/// As far as they are plain ones.
std::string inSmallLetters(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

bool holds(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

/// The whole of a text as a number.
bool readNumber(const std::string &text, double &out)
{
    char *end = nullptr;
    out = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == 0;
}

/// Whether a number is what was asked for: ">2", "<2", or about "2".
bool meets(double value, const std::string &text)
{
    const bool isBound = !text.empty() && (text[0] == '<' || text[0] == '>');
    double wanted = 0.0;
    if (!readNumber(isBound ? text.substr(1) : text, wanted))
        return false;
    if (isBound)
        return text[0] == '<' ? value < wanted : value > wanted;
    return std::fabs(value - wanted) <= NEAR * std::max(std::fabs(wanted), NEAR);
}

/// What a value reads as: an enum by its text.
std::string textOf(const Variant &value, const PropertyDesc &desc)
{
    const ReflectorPtr type = desc.getGetter()->getReturnType();
    if (value.getType() == Variant::VT_INT64 && type && type->getKind() == IReflectedThing::ENUM)
        for (const ReflectorPtr &member : type->getMemberList())
            if (member->getEnumValue() == value.as<std::int64_t>())
                return member->getName().toCString();
    return BarValues::describe(value).toCString();
}
} // namespace

ObjectQuery::ObjectQuery(const std::string &text)
{
    std::istringstream in(inSmallLetters(text));
    for (std::string word; in >> word;)
        terms.push_back(parse(word));
}

ObjectQuery::Term ObjectQuery::parse(const std::string &word)
{
    const std::size_t colon = word.find(':');
    // "c:/villa" is a path.
    if (colon == std::string::npos || colon == 0 || word.compare(colon, 2, ":/") == 0)
        return {word.find('/') != std::string::npos ? PATH : ANYWHERE, "", word};
    const std::string key = word.substr(0, colon), text = word.substr(colon + 1);
    if (key == "class")
        return {CLASS, "", text};
    if (key == "path")
        return {PATH, "", text};
    return {VALUE, key == "value" ? "" : key, text};
}

bool ObjectQuery::readsValues() const
{
    return std::any_of(terms.begin(), terms.end(), [](const Term &term) { return term.kind == VALUE; });
}

bool ObjectQuery::matches(const Object &object, std::string &shown) const
{
    // What costs least first: values are read of those alone that are left.
    for (const Term &term : terms)
    {
        const auto isIn = [&](const char *text) { return holds(inSmallLetters(text), term.text); };
        if (term.kind == ANYWHERE && !isIn(object.getName().toCString()) &&
            !isIn(object.getType()->getName().toCString()))
            return false;
        if (term.kind == CLASS && !isOfClass(object, term.text))
            return false;
        if (term.kind == PATH && !isIn(objectPath(object.getHandle()).toCString()))
            return false;
    }
    return std::all_of(terms.begin(), terms.end(),
                       [&](const Term &term) { return term.kind != VALUE || hasValue(object, term, shown); });
}

bool ObjectQuery::isOfClass(const Object &object, const std::string &text)
{
    if (holds(inSmallLetters(object.getType()->getName().toCString()), text))
        return true;
    const auto *type = dynamic_cast<const DoxyElement *>(object.getType().get());
    while (type && !type->getBases().empty())
    {
        type = type->getBases().front().obj; // the others are no classes of objects
        if (type && holds(inSmallLetters(type->getName().toCString()), text))
            return true;
    }
    return false;
}

bool ObjectQuery::hasValue(const Object &object, const Term &term, std::string &shown)
{
    const auto *type = dynamic_cast<const DoxyElement *>(object.getType().get());
    if (!type || term.text.empty())
        return false;
    for (const PropertyDesc &desc : type->getPropertyList())
        if (inSmallLetters(desc.getName().toCString()).starts_with(term.property) &&
            PropertyLine::isSafeToRead(*type, desc) && reads(object, desc, term, shown))
            return true;
    return false;
}

bool ObjectQuery::reads(const Object &object, const PropertyDesc &desc, const Term &term, std::string &shown)
{
    const ErrorReturn<Variant> value = desc.getGetter()->call(object.getHandle());
    if (!value.succeeded() || value.value.getType() == Variant::VT_NONE)
        return false;
    const std::string text = textOf(value.value, desc);
    const bool isMet = BarValues::isNumber(value.value) && meets(value.value.get<double>().value, term.text);
    // A number is no text to find a part of, but an enum's is.
    double ignored = 0.0;
    const bool isText = !BarValues::isNumber(value.value) || !readNumber(text, ignored);
    if (!isMet && !(isText && holds(inSmallLetters(text), term.text)))
        return false;
    shown = std::string(desc.getName().toCString()) + " = " + text.substr(0, 60);
    return true;
}
