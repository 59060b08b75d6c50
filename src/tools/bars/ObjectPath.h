// ObjectPath: the paths by which a developer names objects, and what is wrong with one that leads nowhere.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/KVString.h"

/// The path of an object from the current level ("c:/villa/lamp") or the systems ("s:/InputSystem").
///
/// An object outside both trees has the names from the top of its own.
String objectPath(const Handle<Object> &object);

/// The object at a path; one without a prefix starts at the current level.
/// @param problem  where the path leads nowhere: which step is missing, and the name that was probably meant
Handle<Object> findObjectAt(const String &path, String &problem);
