#include "object/tree/TreeWalk.h"

#include "object/tree/Object.h"

#include <vector>

namespace
{
struct Step
{
    Object *object;
    std::size_t nextChild;
};

/// The ways from the roots of all walks under way down to where they are, the outermost first.
std::vector<Step> &steps()
{
    static auto *instance = new std::vector<Step>;
    return *instance;
}
} // namespace

TreeWalk::TreeWalk(Object &root) : root(&root), base(steps().size()) {}

TreeWalk::~TreeWalk()
{
    steps().resize(base);
}

Object *TreeWalk::next()
{
    std::vector<Step> &way = steps();
    Object *found = begun ? nullptr : root;
    begun = true;
    while (!found && way.size() > base)
    {
        Step &last = way.back();
        if (last.nextChild < last.object->getChildCount())
            found = last.object->children_begin()[static_cast<std::ptrdiff_t>(last.nextChild++)].lookup().ptr;
        else
            way.pop_back();
    }
    if (found)
        way.push_back({found, 0});
    return found;
}

void TreeWalk::skipChildren()
{
    steps().pop_back();
}

std::size_t TreeWalk::getDepth() const
{
    return steps().size() - base - 1;
}
