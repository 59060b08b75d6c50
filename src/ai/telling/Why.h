// why: what a creature does and for what reasons, in one sentence.
#pragma once

#include "foundation/KVString.h"
#include "object/tree/Handle.h"

class Entity;

/// What a creature does and why, told by its components: "rat: Wander: Action ActWander, going on; heard nothing."
///
/// The leaf at which its tree stands, what it perceives, where its path leads and what it waits for, as far as it has
/// a component that tells. "" for no creature.
String why(Handle<Entity> creature);
