// FlatGraphicsComponent: base of what is drawn on the screen plane.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"

#include "engine/screen/WindowCoordinate.h"

/// Which side of a flat component stands at its position.
enum HorizontalAnchor
{
    H_LEFT = 0,
    H_CENTER = 1,
    H_RIGHT = 2
};

/// Which side of a flat component stands at its position.
enum VerticalAnchor
{
    V_BOTTOM = 0,
    V_CENTER = 1,
    V_TOP = 2
};

/// A drawn component on the screen plane, placed by its entity's transform in normalised window units.
class FlatGraphicsComponent : public GraphicsComponent2
{
    KV_REFLECTED(FlatGraphicsComponent)
public:
    /// Extent in x, the scale of the entity's transform; 0 without one.
    virtual float getWidth();
    /// Extent in y, the scale of the entity's transform; 0 without one.
    virtual float getHeight();
    /// Runs after the horizontal anchor has changed.
    virtual void onSetHorizontalAnchorPoint(HorizontalAnchor val);
    /// Runs after the vertical anchor has changed.
    virtual void onSetVerticalAnchorPoint(VerticalAnchor val);

    HorizontalAnchor getHorizontalAnchorPoint() const { return horizontalAnchorPoint; }
    /// Stands the component on its position by its left, its middle or its right.
    void setHorizontalAnchorPoint(HorizontalAnchor val);
    VerticalAnchor getVerticalAnchorPoint() const { return verticalAnchorPoint; }
    /// Stands the component on its position by its lower side, its middle or its upper one.
    void setVerticalAnchorPoint(VerticalAnchor val);

    /// Puts the entity's transform at a window coordinate.
    ///
    /// @param relativeTo  entity whose transform is the origin; an invalid handle means the window's origin
    /// @param depth       z of the new position: what lies deeper is drawn behind
    void updateTransformByWindowCoordinates(WindowCoordinate coord, Handle<Entity> relativeTo, float depth = 0.0f);

protected:
    FlatGraphicsComponent() = default;

private:
    HorizontalAnchor horizontalAnchorPoint = H_LEFT;
    VerticalAnchor verticalAnchorPoint = V_BOTTOM;
};
