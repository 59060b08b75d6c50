// StringTable: probing and growth.
#include "foundation/StringTable.h"

namespace
{

constexpr std::size_t FIRST_SLOT_COUNT = 4096;

std::string_view textOf(const StringPrivate &body)
{
    return {body.bytes, body.length};
}

} // namespace

StringTable::StringTable() : slots(new StringPrivate *[FIRST_SLOT_COUNT]()), slotCount(FIRST_SLOT_COUNT) {}

std::size_t StringTable::findSlot(std::string_view text, std::uint32_t hash) const
{
    std::size_t slot = hash & (slotCount - 1);
    while (slots[slot] && (slots[slot]->hash != hash || textOf(*slots[slot]) != text))
        slot = (slot + 1) & (slotCount - 1);
    return slot;
}

StringPrivate *StringTable::find(std::string_view text, std::uint32_t hash) const
{
    return slots[findSlot(text, hash)];
}

void StringTable::add(StringPrivate *body)
{
    if (2 * (used + 1) > slotCount)
        grow();
    body->interned = true;
    slots[findSlot(textOf(*body), body->hash)] = body;
    ++used;
}

void StringTable::grow()
{
    const std::unique_ptr<StringPrivate *[]> old = std::move(slots);
    const std::size_t oldCount = slotCount;
    slotCount *= 2;
    slots.reset(new StringPrivate *[slotCount]());
    for (std::size_t i = 0; i < oldCount; ++i)
        if (old[i])
            slots[findSlot(textOf(*old[i]), old[i]->hash)] = old[i];
}
