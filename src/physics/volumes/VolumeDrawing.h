// VolumeDrawing: the outline of a volume for developers.
#pragma once

#include "foundation/Matrix4.h"
#include "foundation/Vector.h"

class DebugCollectorComponent;
struct VolumeTraits;

/// Draws a volume in the colour of its type: the box, a sphere's three great circles, a bullet's line.
/// @param answers  it is a trigger, or can be used: green ticks in the corners say so
void drawVolume(DebugCollectorComponent &collector, const VolumeTraits &traits, const Matrix4 &toWorld,
                const Vec4 &hitBox, bool answers);
