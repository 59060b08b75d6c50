// ObjectFromPattern: objects that the engine itself has a script build in a running level.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/KVString.h"

class Object;
class Vec4;

/// Has a pattern of a script module build an object below a parent, and completes the object's load.
///
/// Invalid where there are no scripts, and, with an error logged that names the pattern, the parent and the cause,
/// where the pattern raises or returns no object; what it has built of the object by then is murdered.
/// @param place  metres: the `at` of a pattern that takes one, else the position of the root's transform;
///               null to leave the place to the pattern
Handle<Object> buildFromPattern(const String &module, const String &pattern, const Handle<Object> &parent,
                                const String &name, const Vec4 *place = nullptr);
