// StringTable: the interned string bodies, found by text.
#pragma once

#include "foundation/KVString.h"

#include <memory>
#include <string_view>

/// The one body of each interned text, for the whole run.
///
/// Open addressing with linear probing; grows by doubling and never shrinks, since interned texts never die.
class StringTable
{
public:
    StringTable();

    /// Body of a text, or null.
    /// @param hash  hash_value of the text
    StringPrivate *find(std::string_view text, std::uint32_t hash) const;
    /// Adds a body whose text is not in the table and marks it as interned.
    void add(StringPrivate *body);

private:
    std::size_t findSlot(std::string_view text, std::uint32_t hash) const;
    void grow();

    std::unique_ptr<StringPrivate *[]> slots; ///< null where empty
    std::size_t slotCount;                    ///< a power of two
    std::size_t used = 0;                     ///< slots that are not empty; at most half
};
