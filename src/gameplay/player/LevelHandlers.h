// hearInLevel: has an object's method called with the messages of its level.
#pragma once

#include "object/tree/Object.h"

/// Registers a method of an object for a message at the post office of the level that the object stands in.
///
/// Where the level has none of its own, at that of the whole run. Either drops the handler once the object is dead.
/// @param method  its reflected name; takes the message type first
void hearInLevel(Object &object, const ReflectorPtr &messageType, const String &method);
