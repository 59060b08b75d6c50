// ObjectChildrenIterator: a script's walk over the children of an object.
#pragma once

#include "object/tree/Handle.h"

#include <cstddef>

/// Walks the children that an object had when the walk began, in order, and skips those that have died.
///
/// Children that leave meanwhile shorten the walk and never harm it.
class ObjectChildrenIterator
{
public:
    explicit ObjectChildrenIterator(const Handle<Object> &parent);

    /// The next child; an invalid handle at the end. Raises ValueError if the parent has died.
    Handle<Object> advance();
    /// The next child; raises StopIteration at the end, ValueError if the parent has died.
    Handle<Object> next();

private:
    Handle<Object> obj;
    std::size_t current = 0; ///< index of the next child
    std::size_t end = 0;     ///< count of children when the walk began
    bool valid = false;      ///< false once the end has been reached
};
