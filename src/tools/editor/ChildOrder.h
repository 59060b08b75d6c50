// ChildOrder: where an object stands among its siblings.
#pragma once

#include "object/tree/Handle.h"

class Object;

/// Puts an object before one of its siblings, in the order of their parent's children.
///
/// An invalid handle puts it behind all of them. What is no sibling changes nothing. Nobody is told.
/// @cost the children of the parent
void placeBefore(Handle<Object> object, Handle<Object> sibling);
