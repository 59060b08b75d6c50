#include "object/reflection/EnumText.h"

#include "object/reflection/Variant.h"

#include <algorithm>
#include <bit>
#include <string_view>

const EnumEntry *EnumTable::find(std::int64_t value) const
{
    const EnumEntry *end = entries + count;
    const EnumEntry *found = std::find_if(entries, end, [&](const EnumEntry &e) { return e.value == value; });
    return found == end ? nullptr : found;
}

const EnumEntry *EnumTable::find(const String &text) const
{
    // Whole texts: one that a script gives may go on behind a zero byte.
    const std::string_view wanted(text.toCString(), text.size());
    const EnumEntry *end = entries + count;
    const EnumEntry *found = std::find_if(
        entries, end,
        [&](const EnumEntry &e) { return wanted == e.name || (hasQualifiedNames && wanted == e.qualifiedName); });
    return found == end ? nullptr : found;
}

bool EnumTable::accepts(std::int64_t value) const
{
    if (find(value))
        return true;
    if (!isBitSet())
        return false;
    std::int64_t all = 0;
    for (std::size_t i = 0; i < count; ++i)
        all |= entries[i].value;
    return (value & ~all) == 0;
}

bool EnumTable::isBitSet() const
{
    // Single bits with gaps between them, as 1, 2, 4; a run of numbers as 0, 1, 2 is a plain choice.
    std::int64_t bits = 0;
    std::int64_t highest = 0;
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::int64_t value = entries[i].value;
        if (value < 0)
            return false;
        if (std::has_single_bit(static_cast<std::uint64_t>(value)))
            bits |= value;
        highest = std::max(highest, value);
    }
    const bool isRun = highest < static_cast<std::int64_t>(count);
    const auto isUnionOfBits = [&](const EnumEntry &e) { return (e.value & ~bits) == 0; };
    return !isRun && std::popcount(static_cast<std::uint64_t>(bits)) >= 3 &&
           std::all_of(entries, entries + count, isUnionOfBits);
}

String enumTableToString(const EnumTable &table, std::int64_t value, bool qualified)
{
    const EnumEntry *entry = table.find(value);
    if (!entry)
        return SCS("<invalid enum value>");
    return SCS(qualified && table.hasQualifiedNames ? entry->qualifiedName : entry->name);
}

bool enumTableFromVariant(const EnumTable &table, const Variant &v, std::int64_t &out)
{
    if (v.getType() == Variant::VT_REFLECTOR)
    {
        const ReflectorPtr &record = v.as<ReflectorPtr>();
        if (!record || record->getKind() != IReflectedThing::ENUMVALUE)
            return false;
        out = record->getEnumValue();
        return table.accepts(out);
    }

    String text;
    if (v.getType() == Variant::VT_STRING || v.getType() == Variant::VT_PYTHON)
    {
        if (fromVariant(v, text))
        {
            const EnumEntry *entry = table.find(text);
            if (entry)
                out = entry->value;
            return entry != nullptr;
        }
    }
    return fromVariant(v, out) && table.accepts(out);
}
