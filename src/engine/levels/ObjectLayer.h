// connectObjectLayer: tells the object layer what it cannot know of systems and levels.
#pragma once

/// Tells where path prefixes start, where the messages of a level go, and who keeps the calls to be repeated.
///
/// Called once the systems' root stands; a later call changes nothing.
void connectObjectLayer();
