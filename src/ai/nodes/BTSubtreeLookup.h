// BTSubtreeLookup: stands for a tree of the library.
#pragma once

#include "ai/nodes/BTTask.h"

#include <utility>

/// Takes a copy of a tree by name with its first tick, and is that tree from then on.
///
/// The name is looked up again with every tick until it is found; SC_Failure meanwhile. A tree that would stand within
/// itself is an error that names it, and SC_Failure. Copies of the node take copies of the tree of their own.
class BTSubtreeLookup : public BTTask
{
    KV_REFLECTED(BTSubtreeLookup)
public:
    BTSubtreeLookup() = default;

    StatusCode run() override;
    /// Ends what is going on in the tree, which stays.
    void terminate() override;
    ErrorReturn<Handle<BTTask>> clone() override;
    /// Sets which tree is meant.
    void setBehvaior(BTType behavior) { subtreeType = std::move(behavior); }

    /// Which tree is meant.
    BTType getSubtreeType() const { return subtreeType; }
    void setSubtreeType(BTType val) { subtreeType = std::move(val); }

private:
    StatusCode takeTree();

    BTType subtreeType;
};

/// Says, as long as it lives, that a tree of the library is being ticked, so that one within itself is found.
///
/// Stands on the stack around the tick and borrows the name.
class TreeUnderWay
{
public:
    explicit TreeUnderWay(const BTType &behavior) : behavior(behavior), outer(innermost) { innermost = this; }
    ~TreeUnderWay() { innermost = outer; }
    TreeUnderWay(const TreeUnderWay &) = delete;
    TreeUnderWay &operator=(const TreeUnderWay &) = delete;

    static bool isUnderWay(const BTType &behavior);
    /// The trees under way from the outermost in, with " > " between them.
    static String describe();

private:
    const BTType &behavior;
    const TreeUnderWay *const outer;
    static inline constinit const TreeUnderWay *innermost = nullptr;
};
