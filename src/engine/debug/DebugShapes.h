// DebugShapes: boxes and arrows out of a debug collector's lines.
#pragma once

#include "foundation/Vector.h"

#include <array>

class DebugCollectorComponent;
class Matrix4;

/// The bits 1, 2 and 4 of a corner's number tell on which side it lies along x, y and z.
typedef std::array<Vec4, 8> BoxCorners;

/// The corners of a box about the origin, moved into the world.
/// @param extents  full, metres
BoxCorners findBoxCorners(const Matrix4 &toWorld, const Vec4 &extents);

/// Draws the twelve edges of a box, or of what is bent from one.
void drawBoxEdges(DebugCollectorComponent &collector, const BoxCorners &corners, const Vec4 &color);

/// Draws an arrow; its head is a quarter of its length.
void drawArrow(DebugCollectorComponent &collector, const Vec4 &from, const Vec4 &along, const Vec4 &color);
