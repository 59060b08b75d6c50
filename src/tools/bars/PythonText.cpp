#include "tools/bars/PythonText.h"

#include "tools/bars/ObjectPath.h"

#include "engine/systems/System.h"
#include "object/tree/Object.h"

#include <charconv>
#include <cmath>
#include <string>

namespace
{
template <class Number>
String numberText(Number value)
{
    if (!std::isfinite(value))
        return String::format("float('%s')", std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf");
    char text[64];
    const auto end = std::to_chars(text, text + sizeof(text), value);
    const std::string written(text, end.ptr);
    const bool isWhole = written.find_first_of(".en") == std::string::npos;
    return String::copyFrom(written + (isWhole ? ".0" : ""));
}

/// In single quotes, with what would end them or the line written as escapes.
String quoted(const String &text)
{
    std::string out = "'";
    for (const char c : text)
    {
        if (c == '\'' || c == '\\')
            out += '\\';
        if (c == '\n')
            out += "\\n";
        else if (static_cast<unsigned char>(c) < ' ')
        {
            char escape[8];
            std::snprintf(escape, sizeof(escape), "\\x%02x", static_cast<unsigned>(c));
            out += escape;
        }
        else
            out += c;
    }
    return String::copyFrom(out + "'");
}

/// "kaVel.Vec4(1.0, 0.5, 0.0, 1.0)".
String callText(const char *name, const float (&numbers)[4])
{
    String out = String::format("kaVel.%s(", name);
    for (int i = 0; i < 4; ++i)
        out = out + numberText(numbers[i]) + (i < 3 ? SCS(", ") : SCS(")"));
    return out;
}

String wholeNumberText(std::int64_t value, const ReflectorPtr &type)
{
    if (type && type->getKind() == IReflectedThing::ENUM)
        for (const ReflectorPtr &member : type->getMemberList())
            if (member->getEnumValue() == value)
                return quoted(member->getName());
    return String::format("%lld", static_cast<long long>(value));
}
} // namespace

String pythonText(const Variant &value, const ReflectorPtr &type)
{
    switch (value.getType())
    {
    case Variant::VT_INT64:
        return wholeNumberText(value.as<std::int64_t>(), type);
    case Variant::VT_BOOL:
        return value.as<bool>() ? SCS("True") : SCS("False");
    case Variant::VT_FLOAT:
    {
        // Most numbers of the engine are floats, whose own digits are fewer.
        const double number = value.as<double>();
        const auto narrow = static_cast<float>(number);
        return static_cast<double>(narrow) == number ? numberText(narrow) : numberText(number);
    }
    case Variant::VT_STRING:
        return quoted(value.as<String>());
    case Variant::VT_VECTOR:
    {
        const Vec4 &v = value.as<Vec4>();
        return callText("Vec4", {v.x, v.y, v.z, v.w});
    }
    case Variant::VT_QUATERNION:
    {
        const Quaternion &q = value.as<Quaternion>();
        return callText("Quaternion", {q.r, q.i, q.j, q.k});
    }
    case Variant::VT_HANDLE:
        return value.as<Handle<Object>>().isValid() ? pythonPath(value.as<Handle<Object>>()) : SCS("None");
    default:
        return SCS("None");
    }
}

String pythonPath(const Handle<Object> &object)
{
    const auto target = object.lookup();
    if (!target)
        return SCS("None");
    const std::string path = objectPath(object).toCString();
    if (path.starts_with("c:/"))
        return path.size() == 3
                   ? SCS("level")
                   : SCS("level.getDescendantByPath(") + quoted(String::copyFrom(path.substr(3))) + SCS(")");
    if (!path.starts_with("s:/") || path.size() == 3)
        return quoted(String::copyFrom(path));
    const std::size_t slash = path.find('/', 3);
    String system = SCS("kaVel.getSystem(") + quoted(String::copyFrom(path.substr(3, slash - 3))) + SCS(")");
    if (slash == std::string::npos)
        return system;
    return system + SCS(".getDescendantByPath(") + quoted(String::copyFrom(path.substr(slash + 1))) + SCS(")");
}
