// NameSuggestion: error texts for names that nobody knows, with the name that was probably meant.
#pragma once

#include "foundation/KVString.h"

#include <vector>

/// "no class 'X'; did you mean 'Y'?", without the question if no class of the table is similar.
///
/// For error texts: costs a walk over every class name.
String describeUnknownClass(const String &wanted);
/// "no <kind> 'X'; did you mean 'Y'?" for names of another kind, out of these candidates.
String describeUnknownName(const char *kind, const String &wanted, const std::vector<String> &candidates);
