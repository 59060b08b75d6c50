// NotState: what objects hold that is no state of the game.
#pragma once

class DoxyElement;

/// Whether objects of a class, and all below them, count for nothing: what draws, sounds, measures or shows the game.
bool isNoState(const DoxyElement &objectClass);

/// Whether a field counts for nothing: caches, marks of requests, and what tells of this very run.
bool isNoStateField(const DoxyElement &field);
