// EnumText: the texts of reflected enums, from the generated table.
#pragma once

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

class Variant;

/// One enumerator with its spellings.
struct EnumEntry
{
    const char *name;
    const char *qualifiedName;
    std::int64_t value;
};

/// All enumerators of one enum in declaration order.
struct EnumTable
{
    const EnumEntry *entries;
    std::size_t count;
    bool hasQualifiedNames; ///< false where the full spelling is not in use

    /// The first entry of a value, or null.
    const EnumEntry *find(std::int64_t value) const;
    /// The entry of a short or full name, or null.
    const EnumEntry *find(const String &text) const;
    /// Whether a number may stand for a value: that of an enumerator, or a union of bits in an enum of single bits.
    bool accepts(std::int64_t value) const;

private:
    bool isBitSet() const;
};

/// Home of an enum's table: every enum that a header declares has one in the generated code.
///
/// A friend of the reflected classes, so that their private enums have texts too.
template <class E>
struct Enum
{
    static const EnumTable &table();
};

/// The text of a number in a table; see enumToString.
String enumTableToString(const EnumTable &table, std::int64_t value, bool qualified);
/// The number of an enumerator out of a Variant; see enumFromVariant.
bool enumTableFromVariant(const EnumTable &table, const Variant &v, std::int64_t &out);

/// The enumerator's name, or with `qualified` its full name ("IReflectedThing::VirtualMode::NON_VIRTUAL").
///
/// The first declared of several enumerators of one value; "<invalid enum value>" for a value outside the enum. Some
/// enums have no qualified spelling, for them the flag is dropped.
template <class E>
requires std::is_enum_v<E> String enumToString(E value, bool qualified = false)
{
    return enumTableToString(Enum<E>::table(), static_cast<std::int64_t>(value), qualified);
}

/// The enumerator of this short or full name, or NOT_AN_ENUMERANT.
template <class E>
requires std::is_enum_v<E> ErrorReturn<E> stringToEnum(const String &value)
{
    const EnumEntry *entry = Enum<E>::table().find(value);
    ErrorReturn<E> result;
    if (entry)
        result.value = static_cast<E>(entry->value);
    else
        result.code = ErrorCode::NOT_AN_ENUMERANT;
    return result;
}

/// Reads an enumerator from its number, its name or its record; false for anything else.
///
/// A number must be that of an enumerator. An enum of single bits takes any union of its bits.
template <class E>
requires std::is_enum_v<E>
bool enumFromVariant(const Variant &v, E &out)
{
    std::int64_t number = 0;
    if (!enumTableFromVariant(Enum<E>::table(), v, number))
        return false;
    out = static_cast<E>(number);
    return true;
}
