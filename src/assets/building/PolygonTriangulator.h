// PolygonTriangulator: cuts a plan with holes into triangles.
#pragma once

#include "assets/building/MeshBuilder.h"

#include "foundation/ErrorCode.h"

#include <cstdint>
#include <vector>

/// A plan in triangles. Point numbers count into `points`; the plan is seen from above, x right and y up.
struct TriangulatedPlan
{
    /// A stretch of the border.
    struct Side
    {
        std::uint32_t from, to; ///< the plan lies to the left
        float along;            ///< way along the outline or hole to `from`, metres
    };

    std::vector<MeshVector2> points;      ///< those given, without repetitions, metres
    std::vector<std::uint32_t> triangles; ///< three points each, clockwise
    std::vector<Side> sides;              ///< the whole border, without stretches that a hole and the outline share
};

/// Cuts a plan into triangles between its own points; every point of the border is a corner of a triangle.
///
/// Works on a raster of the greatest coordinate's 2^-22, a micrometre at least: points in one cell are one point, and
/// an edge that passes a point within one and a half cells runs through it.
/// @return MAP_DATA_ERROR for an outline or hole that crosses itself or another, lies outside or has no area,
///         OUT_OF_BOUNDS for a coordinate that is no number or beyond 1e6
/// @cost the square of the points, a few nanoseconds each
ErrorReturn<TriangulatedPlan> triangulate(const MeshPolygon &polygon);
