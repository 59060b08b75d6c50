// ScreenSpaceHelperComponent: keeps a screen-space object where window coordinates say.
#pragma once

#include "engine/entities/SimpleComponent.h"
#include "engine/screen/WindowCoordinate.h"

#include "foundation/Vector.h"

/// Places its entity on the screen by window coordinates in every frame, under the component key "screenSpaceHelper".
///
/// Screen space is normalised window units, x and y from the same corner as window coordinates; z is handed on as it
/// stands. Acts only on an entity that is drawn, that is one with a "graphics2" component.
class ScreenSpaceHelperComponent : public SimpleComponent
{
    KV_REFLECTED(ScreenSpaceHelperComponent)
public:
    ScreenSpaceHelperComponent() = default;

    /// Converts the window position into the transform's position.
    void doFrame() override;

    /// How x of the window position is measured.
    WindowCoordinateSystem getWindowCoordinateSystemX() const { return windowCoordinateSystemX; }
    void setWindowCoordinateSystemX(WindowCoordinateSystem val) { windowCoordinateSystemX = val; }
    /// How y of the window position is measured.
    WindowCoordinateSystem getWindowCoordinateSystemY() const { return windowCoordinateSystemY; }
    void setWindowCoordinateSystemY(WindowCoordinateSystem val) { windowCoordinateSystemY = val; }
    /// Place in the window, x and y each in its own coordinate system; z is depth.
    Vec4 getWindowPosition() const { return windowPosition; }
    void setWindowPosition(Vec4 val) { windowPosition = val; }
    /// Whether the window position counts from the parent's transform in place of the window's corner.
    bool getRelToParent() const { return relToParent; }
    void setRelToParent(bool val) { relToParent = val; }

private:
    WindowCoordinateSystem windowCoordinateSystemX = WCS_NORMALIZED;
    WindowCoordinateSystem windowCoordinateSystemY = WCS_NORMALIZED;
    Vec4 windowPosition = Vec4(0.f, 0.f, 0.f, 1.f);
    bool relToParent = false;
};
