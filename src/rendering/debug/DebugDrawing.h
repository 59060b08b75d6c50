// DebugDrawing: gives a level what collects and draws its debug geometry.
#pragma once

class Coordinator;

/// Makes a level's debug collector, with what draws it, as soon as debug drawing is switched on.
///
/// Does nothing while GlobalConfigSystem's debugDrawEnabled is off, and nothing in a level that has a collector already.
/// The collector begins with the next frame.
void provideDebugDrawing(Coordinator &level);
