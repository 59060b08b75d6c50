// Footprint: the rectangle on which something stands, seen from above.
#pragma once

#include "physics/acoustics/PlanPoint.h"

struct OrientedBox;

/// A turned rectangle in the plane of a map's path grid, metres.
struct Footprint
{
    PlanPoint middle;
    PlanPoint along = PlanPoint(1.f, 0.f); ///< direction of one pair of sides, length 1
    float halfAlong = 0.f;
    float halfAcross = 0.f;

    Footprint() = default;
    /// What a box covers: its own sides where it stands upright, else the rectangle around it along the axes.
    explicit Footprint(const OrientedBox &box);

    /// How far the rectangle reaches from its middle along the axes of the plane.
    PlanPoint reach() const;
    /// Metres from a point; 0 inside.
    float distanceTo(const PlanPoint &point) const;
    /// Metres from the nearest point of a segment; 0 for one that meets the rectangle.
    float distanceTo(const PlanPoint &from, const PlanPoint &to) const;
    bool isFinite() const;

private:
    PlanPoint toOwn(const PlanPoint &point) const;
    float ownDistance(const PlanPoint &own) const;
    bool isMetBy(const PlanPoint &ownFrom, const PlanPoint &ownWay) const;
};
