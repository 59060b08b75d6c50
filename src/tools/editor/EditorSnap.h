// EditorSnap: where things that are moved come to lie by themselves.
#pragma once

#include "tools/editor/SeenMesh.h"

#include <functional>
#include <vector>

class Coordinator;
class Entity;

/// Snaps places to a grid, angles to steps, and boxes to the faces of boxes nearby.
///
/// World space, metres and degrees. A step of 0 snaps to nothing.
class EditorSnap
{
public:
    bool toGrid = true;
    bool toSurfaces = false;
    bool toNeighbours = false;
    float step = 0.25f;           ///< metres
    float angle = 15.f;           ///< degrees
    float neighbourReach = 0.12f; ///< metres within which faces draw each other

    /// The nearest place of the grid.
    Vec4 snapped(const Vec4 &place) const;
    float snappedLength(float length) const;
    float snappedAngle(float degrees) const;

    /// Remembers the boxes of all that is drawn, but of what is left out.
    void gatherNeighbours(Coordinator &level, const std::function<bool(const Entity &)> &leftOut);
    /// How much farther a box has to go to lie flush with a neighbour's face, along the axes that are given as bits.
    Vec4 towardsNeighbours(const SpanBox &box, int axes) const;

private:
    std::vector<SpanBox> neighbours;
};
