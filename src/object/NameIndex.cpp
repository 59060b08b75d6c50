#include "object/NameIndex.h"

#include <bit>

void NameIndex::reserve(std::size_t names)
{
    slots.assign(std::bit_ceil(names * 2 + 2), Slot());
    mask = slots.size() - 1;
}

void NameIndex::add(const String &name, std::size_t position)
{
    if (find(name) != none)
        return;
    std::size_t at = hash_value(name) & mask;
    while (slots[at].used)
        at = (at + 1) & mask;
    slots[at] = Slot{name.intern(), static_cast<std::uint32_t>(position), true};
}

std::size_t NameIndex::findFrom(std::size_t at, const String &name) const
{
    for (; slots[at].used; at = (at + 1) & mask)
    {
        if (slots[at].name == name)
            return slots[at].position;
    }
    return none;
}
