// ComponentKeys: the keys under which managers make components and entities find them.
#pragma once

#include "foundation/KVString.h"

/// The manager keys, one constant each; `ManagerTable.cpp` says what may be made under each of them.
///
/// Interned before `main`, so that a look-up by one of them makes no string and compares addresses.
namespace ComponentKeys
{
inline const String aiMessage = SCS("aiMessage");
inline const String aiObserver = SCS("aiObserver");
inline const String behaviors = SCS("behaviors");
inline const String boundingVolume = SCS("boundingVolume");
inline const String button = SCS("button");
inline const String console = SCS("console");
inline const String cursor = SCS("cursor");
inline const String debugDrawCollector = SCS("debugDrawCollector");
inline const String director = SCS("director");
inline const String dread = SCS("dread");
inline const String dummy = SCS("dummy");
inline const String editor = SCS("editor");
inline const String editorProperties = SCS("editorProperties");
inline const String flocking = SCS("flocking");
inline const String flowInfluence = SCS("flowInfluence");
inline const String flowMovement = SCS("flowMovement");
inline const String form = SCS("form");
inline const String graphics2 = SCS("graphics2");
inline const String grid = SCS("grid");
inline const String hand = SCS("hand");
inline const String heightMap = SCS("heightMap");
inline const String hud = SCS("hud");
inline const String interactCounter = SCS("interactCounter");
inline const String interpolator = SCS("interpolator");
inline const String light = SCS("light");
inline const String mapData = SCS("mapData");
inline const String menu = SCS("menu");
inline const String nerves = SCS("nerves");
inline const String objectGroup = SCS("objectGroup");
inline const String parentFollower = SCS("parentFollower");
inline const String partitioning = SCS("partitioning");
inline const String path = SCS("path");
inline const String pathFollower = SCS("pathFollower");
inline const String perception = SCS("perception");
inline const String persist = SCS("persist");
inline const String physics = SCS("physics");
inline const String player = SCS("player");
inline const String postOffice = SCS("postOffice");
inline const String reverb = SCS("reverb");
inline const String screenSpaceHelper = SCS("screenSpaceHelper");
inline const String scriptedEvent = SCS("scriptedEvent");
inline const String scriptedSequence = SCS("scriptedSequence");
inline const String sound = SCS("sound");
inline const String soundWays = SCS("soundWays");
inline const String steering = SCS("steering");
inline const String tklogo = SCS("tklogo");
inline const String transform = SCS("transform");
inline const String trigger = SCS("trigger");
inline const String tutorial = SCS("tutorial");
inline const String viewer = SCS("viewer");
inline const String walkways = SCS("walkways");
} // namespace ComponentKeys
