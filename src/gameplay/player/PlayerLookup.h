// PlayerLookup: what actions and lights look up of the player and of the level around them.
#pragma once

#include "engine/transforms/TransformOffsetComponent.h"
#include "foundation/TimeTypes.h"
#include "object/tree/Object.h"

class PlayerComponent;

/// The player of the level that an object stands in: the component "player" of its entity "Player"; invalid for none.
Handle<PlayerComponent> playerOf(Object &inLevel);
/// What ties the child "camera" of an entity to it; invalid for none.
Handle<TransformOffsetComponent> neckOf(const Handle<Object> &entity);
/// Length of a step that motions are computed from, seconds: 0 to 1, and 0 for what is no number.
float stepLength(Seconds frameTime);
/// Part of the way to a goal that a step takes when the way shrinks by e in each `1 / rate` seconds: the same over a
/// second, however it is divided.
float easedPart(float rate, float seconds);
