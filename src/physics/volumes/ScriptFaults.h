// ScriptFaults: says what is wrong with an object once, not in every frame.
#pragma once

#include "object/tree/Handle.h"

class Object;

/// Whether a fault that a function finds with an object has not been reported yet; from then on it has.
///
/// For the functions of triggers, which run in every frame that the player touches them.
/// @param caller  name of the function, a literal: it is kept
bool isNewFault(const Handle<Object> &culprit, const char *caller);
