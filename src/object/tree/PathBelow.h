// PathBelow: the names on the way down to an object.
#pragma once

#include "foundation/KVString.h"

#include <vector>

class Object;

/// The names from below an object down to another.
///
/// From the top of the tree where `above` is null or no ancestor; none for the object itself.
std::vector<String> namesBelow(const Object *above, const Object &object);

/// The names from below an object down to another, with "/" between them; see `namesBelow`.
String pathBelow(const Object *above, const Object &object);
