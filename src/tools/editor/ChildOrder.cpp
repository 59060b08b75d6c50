#include "tools/editor/ChildOrder.h"

#include "object/tree/Object.h"

#include <algorithm>

void placeBefore(Handle<Object> object, Handle<Object> sibling)
{
    auto moved = object.lookup();
    auto parent = moved ? moved->getParent().lookup() : moved;
    if (!parent)
        return;
    const auto begin = parent->children_begin(), end = parent->children_end();
    const auto from = std::find(begin, end, object);
    const auto to = sibling.isValid() ? std::find(begin, end, sibling) : end;
    if (from == end || (sibling.isValid() && to == end))
        return;
    if (from < to)
        std::rotate(from, from + 1, to);
    else
        std::rotate(to, from, from + 1);
}
