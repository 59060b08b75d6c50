// Leaf functions of the player: what trees ask about him.
#pragma once

#include "ai/nodes/BTTask.h"

/// Whether a key asks the player of an entity for a step; SC_InvalidHandle for an entity without a `PlayerComponent`.
///
/// For `BTCreateConditionR`.
StatusCode IsPlayerMoving(Handle<Entity> hEntity);

/// Whether the player of an entity's level has a flashlight; SC_InvalidHandle for a level without a player.
///
/// For `BTCreateConditionR`. The entity need not be the player.
StatusCode DoesPlayerHaveFlashlight(Handle<Entity> hEntity);

/// Leads the flock of an entity to the player of its level, and goes on for ever.
///
/// For `BTCreateActionR`. AS_InvalidHandle without "flocking", or without a player who has a place and a body.
ActionStatus PursuePlayer(Handle<Entity> hEntity);
