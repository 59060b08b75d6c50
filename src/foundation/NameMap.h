// NameMap: values by name, for the tables that are looked into far more often than they change.
#pragma once

#include "foundation/KVString.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

/// Map from interned names to values.
///
/// A look-up with an interned name hashes and compares one word and never reads the text; any other name is looked up
/// among the interned ones first. Iteration follows the order of insertion, which is the same in every run. Entries
/// stand in one vector, so an insertion may move them.
template <class Value>
class NameMap
{
public:
    typedef std::pair<String, Value> Entry;
    typedef typename std::vector<Entry>::iterator iterator;
    typedef typename std::vector<Entry>::const_iterator const_iterator;

    /// Enters a value under a name unless the name has one already; gives the value that it has then.
    Value &insert(const String &name, const Value &value)
    {
        const String key = name.intern();
        if (const Value *const known = findIdentity(key.getIdentity()))
            return const_cast<Value &>(*known);
        if (2 * (entries.size() + 1) > slots.size())
            grow();
        entries.emplace_back(key, value);
        place(entries.size() - 1);
        return entries.back().second;
    }
    /// Value of a name, default-constructed when the name is new.
    Value &operator[](const String &name) { return insert(name, Value()); }
    void clear()
    {
        entries.clear();
        slots.clear();
    }

    /// Value of a name, or null.
    Value *find(const String &name) { return const_cast<Value *>(std::as_const(*this).find(name)); }
    const Value *find(const String &name) const
    {
        if (name.isInterned())
            return findIdentity(name.getIdentity());
        const String key = name.findInterned();
        // What is interned nowhere is no key; the empty name is one like any other.
        return key.empty() && !name.empty() ? nullptr : findIdentity(key.getIdentity());
    }
    std::size_t size() const { return entries.size(); }
    bool empty() const { return entries.empty(); }
    iterator begin() { return entries.begin(); }
    iterator end() { return entries.end(); }
    const_iterator begin() const { return entries.begin(); }
    const_iterator end() const { return entries.end(); }

private:
    struct Slot
    {
        std::uintptr_t identity = 0; ///< of the entry's name
        std::uint32_t place = 0;     ///< index of the entry plus 1; 0 for an empty slot
    };

    static constexpr std::size_t FIRST_SLOT_COUNT = 16;

    // Bodies of names stand at regular distances; the product's upper half spreads them evenly.
    std::size_t firstSlot(std::uintptr_t identity) const
    {
        return static_cast<std::size_t>((identity * 0x9E3779B97F4A7C15u) >> 32) & (slots.size() - 1);
    }
    const Value *findIdentity(std::uintptr_t identity) const
    {
        if (slots.empty())
            return nullptr;
        for (std::size_t i = firstSlot(identity); slots[i].place; i = (i + 1) & (slots.size() - 1))
            if (slots[i].identity == identity)
                return &entries[slots[i].place - 1].second;
        return nullptr;
    }
    void place(std::size_t index)
    {
        const std::uintptr_t identity = entries[index].first.getIdentity();
        std::size_t i = firstSlot(identity);
        while (slots[i].place)
            i = (i + 1) & (slots.size() - 1);
        slots[i] = {identity, static_cast<std::uint32_t>(index + 1)};
    }
    void grow()
    {
        slots.assign(slots.empty() ? FIRST_SLOT_COUNT : 2 * slots.size(), Slot());
        for (std::size_t index = 0; index < entries.size(); ++index)
            place(index);
    }

    std::vector<Entry> entries; ///< in order of insertion
    std::vector<Slot> slots;    ///< a power of two of them, at most half in use
};
