// TreeWalk: an object and everything below it, however deep the tree is.
#pragma once

#include <cstddef>

class Object;

/// Walks a subtree, parents before children and children in order.
///
/// Keeps its place in memory of its own rather than on the processor's stack, which a script can outgrow with a long
/// chain of objects; it allocates only while it reaches deeper than any walk before it. Counts on through each list of
/// children, which may change under the walk: who arrives is visited, who moves away may be missed. Walks may stand
/// inside each other; nothing may be cremated meanwhile.
class TreeWalk
{
public:
    explicit TreeWalk(Object &root);
    ~TreeWalk();
    TreeWalk(const TreeWalk &) = delete;
    TreeWalk &operator=(const TreeWalk &) = delete;

    /// The next object, the root first; null at the end.
    Object *next();
    /// Leaves out what lies below the object that `next` gave last.
    void skipChildren();
    /// How far below the root the object that `next` gave last lies.
    std::size_t getDepth() const;

private:
    Object *root;
    std::size_t base; ///< steps of the walks around this one
    bool begun = false;
};
