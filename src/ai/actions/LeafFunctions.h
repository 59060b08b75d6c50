// Leaf functions: what trees ask and have done without an action of their own.
#pragma once

#include "ai/nodes/BTTask.h"

#include "foundation/TimeTypes.h"

class Coordinator;

/// Whether an entity's rigid body moves over the ground, faster than 1 cm a second along x or z.
///
/// For `BTCreateConditionR`. SC_InvalidHandle without a body.
StatusCode IsObjectMoving(Handle<Entity> hEntity);

/// Whether a creature's senses know that its target is about; SC_InvalidHandle without senses.
///
/// For `BTCreateConditionR`.
StatusCode KnowsOfTarget(Handle<Entity> hEntity);

/// Whether a creature's senses remember a place of their target, known or only suspected; SC_InvalidHandle without
/// senses.
///
/// For `BTCreateConditionR`.
StatusCode RemembersTarget(Handle<Entity> hEntity);

/// Has an entity's component "path" aim at the next waypoint of its map; AS_Failed when all have been reached.
///
/// For `BTCreateActionR`. AS_InvalidHandle without that component, or outside of a map with map data.
ActionStatus GuideGetNextWayPoint(Handle<Entity> hEntity);

/// Has the map that an entity stands in go on to its next waypoint.
///
/// For `BTCreateActionR`. AS_InvalidHandle outside of a map with map data.
ActionStatus GuideWayPointReached(Handle<Entity> hEntity);

/// Length of the present frame by a timer of a level, seconds; BAD_HANDLE without a level.
ErrorReturn<Seconds> getFrameTimeSeconds(Handle<Coordinator> hCoord, String timer);
