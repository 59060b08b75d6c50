#include "ai/paths/NodeList.h"

#include <algorithm>
#include <bit>

void NodeList::setPool(ReachedCell *pool)
{
    cells = pool;
    chains.fit(CHAINS);
    filled.fit(CHAINS / BITS);
    clear();
}

void NodeList::clear()
{
    for (std::size_t word = lowest / BITS; word <= highest / BITS && word < CHAINS / BITS; ++word)
        filled[word] = 0;
    lowest = CHAINS;
    highest = 0;
}

NodeList::Index NodeList::findFirst()
{
    if (lowest >= CHAINS)
        return NONE;
    for (std::size_t at = lowest / BITS; at <= highest / BITS; ++at)
    {
        if (filled[at] == 0)
            continue;
        lowest = at * BITS + static_cast<std::size_t>(std::countr_zero(filled[at]));
        return chains[lowest].first;
    }
    clear();
    return NONE;
}
