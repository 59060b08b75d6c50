// Subscriptions: which messages reach an object, and where they go.
#pragma once

#include "object/tree/Handle.h"

#include "foundation/KVString.h"

#include <vector>

/// "KeyMessage: PlayerComponent::onKey" for every handler that an object has at the post offices, by the alphabet.
std::vector<String> subscriptionsOf(const Handle<Object> &object);
