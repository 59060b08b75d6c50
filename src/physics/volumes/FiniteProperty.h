// FiniteProperty: refuses numbers of a property that are none, and says whose they are.
#pragma once

#include "foundation/Vector.h"
#include "object/tree/Object.h"

/// Whether a number that somebody sets can be used; one that is no number, or has no end, is logged as an error.
/// @param property  its name for the log
bool isUsable(const Object &owner, const char *property, float value);
/// Whether each component of a vector can be used; see the form with a number.
bool isUsable(const Object &owner, const char *property, const Vec4 &value);
