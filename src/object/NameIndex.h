// NameIndex: a small hash index from names to positions in a list kept elsewhere.
#pragma once

#include "foundation/KVString.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Finds the position of a name in a list that the owner keeps.
///
/// The names are interned, so that finding one that was made by SCS compares addresses only. The first position
/// entered for a name stays. Empty, it needs no construction at run time.
class NameIndex
{
public:
    /// What `find` gives for a name that was not entered.
    static constexpr std::size_t none = ~std::size_t(0);

    /// Makes room for that many names; empties the index.
    void reserve(std::size_t names);

    /// Enters a name at a position unless the name is there already. `reserve` has made room.
    void add(const String &name, std::size_t position);

    /// Whether `reserve` has been called.
    bool isBuilt() const { return mask != 0; }

    /// The position of a name, or `none`; the index must be built.
    std::size_t find(const String &name) const
    {
        const std::size_t at = hash_value(name) & mask;
        if (slots[at].used && slots[at].name == name) [[likely]]
            return slots[at].position;
        return findFrom(at, name);
    }

private:
    struct Slot
    {
        String name;
        std::uint32_t position = 0;
        bool used = false;
    };

    std::size_t findFrom(std::size_t at, const String &name) const;

    std::vector<Slot> slots; ///< a power of two of them, at most half used
    std::size_t mask = 0;    ///< their count less one; 0 while there are none
};
