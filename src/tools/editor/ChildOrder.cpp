#include "tools/editor/ChildOrder.h"

#include "object/tree/Object.h"

#include <algorithm>
#include <iterator>

void placeBefore(Handle<Object> object, Handle<Object> sibling)
{
    auto moved = object.lookup();
    auto parent = moved ? moved->getParent().lookup() : moved;
    if (!parent)
        return;
    const auto begin = parent->children_begin(), end = parent->children_end();
    // What came last is what is placed, as a rule.
    const auto behind = std::find(std::make_reverse_iterator(end), std::make_reverse_iterator(begin), object).base();
    if (behind == begin || (behind != end && *behind == sibling))
        return;
    const auto from = behind - 1;
    const auto to = sibling.isValid() ? std::find(begin, end, sibling) : end;
    if (sibling.isValid() && to == end)
        return;
    if (from < to)
        std::move(from + 1, to, from);
    else
        std::move_backward(to, from, from + 1);
    *(from < to ? to - 1 : to) = object;
}
