// BarValues: values on their way between the engine and a bar.
#pragma once

#include "object/reflection/Variant.h"

#include <cstring>
#include <string>

class TwBar;

/// What a bar's variable points at, for a value of the engine and back.
namespace BarValues
{
template <class T>
void toBar(const T &value, void *out)
{
    std::memcpy(out, &value, sizeof(value));
}
inline void toBar(const String &value, void *out)
{
    static_cast<std::string *>(out)->assign(value.toCString(), value.size());
}
inline void toBar(const Vec4 &value, void *out)
{
    const float components[] = {value.x, value.y, value.z, value.w};
    std::memcpy(out, components, sizeof(components));
}
inline void toBar(const Quaternion &value, void *out)
{
    const float components[] = {value.i, value.j, value.k, value.r};
    std::memcpy(out, components, sizeof(components));
}

template <class T>
T fromBar(const void *value)
{
    return *static_cast<const T *>(value);
}
template <>
inline String fromBar<String>(const void *value)
{
    return String::copyFrom(*static_cast<const std::string *>(value));
}
template <>
inline Vec4 fromBar<Vec4>(const void *value)
{
    const float *f = static_cast<const float *>(value);
    return Vec4(f[0], f[1], f[2], f[3]);
}
template <>
inline Quaternion fromBar<Quaternion>(const void *value)
{
    const float *f = static_cast<const float *>(value);
    return Quaternion(f[3], f[0], f[1], f[2]);
}

/// Where a control of a bar is seen, or with null the bar: left, top, right and lower edge in pixels; zeros for nowhere.
Vec4 placeOf(TwBar *bar, const char *control);

/// Whether a curve can show a value; no function, which scripts would have as well.
inline constexpr auto isNumber = [](const Variant &value)
{ return value.getType() == Variant::VT_FLOAT || value.getType() == Variant::VT_INT64; };

/// What a value that has no control of its own reads as.
String describe(const Variant &value);
} // namespace BarValues
