#include "object/reflection/FieldSink.h"

#include <cstdio>

namespace
{
/// Digits that tell two numbers of this size apart.
constexpr int DIGITS = 9;
} // namespace

void FieldSink::put(const String &value)
{
    mix(value.size() << 32 | hash_value(value));
    if (text)
        *text += '"' + std::string(value.begin(), value.end()) + "\" ";
}

void FieldSink::put(const Variant &value)
{
    putWord(value.getType());
    switch (value.getType())
    {
    case Variant::VT_INT64:
        return putWord(value.as<std::int64_t>());
    case Variant::VT_BOOL:
        return putWord(value.as<bool>());
    case Variant::VT_FLOAT:
        return putReal(value.as<double>());
    case Variant::VT_REFLECTOR:
        return put(value.as<ReflectorPtr>());
    case Variant::VT_HANDLE:
        return put(value.as<Handle<Object>>());
    case Variant::VT_STRING:
        return put(value.as<String>());
    case Variant::VT_VECTOR:
        return put(value.as<Vec4>());
    case Variant::VT_QUATERNION:
        return put(value.as<Quaternion>());
    default: // nothing, and what only scripts can read
        return;
    }
}

void FieldSink::put(const std::vector<bool> &values)
{
    putWord(static_cast<std::int64_t>(values.size()));
    for (const bool value : values)
        putWord(value);
}

void FieldSink::putHandle(machine_word number)
{
    mix(handleWord(number));
    if (text)
        *text += handleText(number) + ' ';
}

void FieldSink::writeReal(double value)
{
    char written[40];
    std::snprintf(written, sizeof(written), "%.*g ", DIGITS, value);
    *text += written;
}

void FieldSink::mixBytes(const void *bytes, std::size_t size)
{
    const char *at = static_cast<const char *>(bytes);
    std::uint64_t word = 0;
    for (; size >= sizeof(word); at += sizeof(word), size -= sizeof(word))
    {
        std::memcpy(&word, at, sizeof(word));
        mix(word);
    }
    if (size > 0)
    {
        word = 0;
        std::memcpy(&word, at, size);
        mix(word);
    }
}
