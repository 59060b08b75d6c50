// WindowCoordinate: a point of the window in the units of screen-space layout.
#pragma once

/// The units in which one axis of a window coordinate is given.
enum WindowCoordinateSystem
{
    WCS_PIXEL = 0,             ///< pixels from the window's origin
    WCS_NORMALIZED = 1,        ///< 1.0 is the longer side of the window; negative values count from the far edge
    WCS_NORMALIZED_NOWRAP = 2, ///< as WCS_NORMALIZED, but negative values lie before the origin, off screen
    WCS_PERCENT = 3,           ///< 1.0 is the whole of this axis
    WCS_MAX = 4                ///< number of systems
};

/// A point or extent in the window; each axis has its own units and converts by itself.
class WindowCoordinate
{
public:
    explicit WindowCoordinate(float x_ = 0.0f, float y_ = 0.0f, WindowCoordinateSystem wcsX_ = WCS_NORMALIZED,
                              WindowCoordinateSystem wcsY_ = WCS_NORMALIZED)
        : x(x_), y(y_), wcsX(wcsX_), wcsY(wcsY_)
    {
    }

    /// The same point, labelled with the target systems.
    ///
    /// An axis whose system already is the target keeps its value. Any other is brought to normalised units, whatever
    /// the target: nothing leads back to pixels or percent, so the result under those labels is normalised as well.
    /// @param xlength, ylength     the window's size in pixels
    /// @param normalizationFactor  the pixels of one normalised unit, not 0
    WindowCoordinate convert(WindowCoordinateSystem xTarget, WindowCoordinateSystem yTarget, int xlength, int ylength,
                             float normalizationFactor) const;

    float x = 0.0f;
    float y = 0.0f;
    WindowCoordinateSystem wcsX = WCS_NORMALIZED;
    WindowCoordinateSystem wcsY = WCS_NORMALIZED;

private:
    float convertSingleWindowCoordinate(float in, WindowCoordinateSystem source, WindowCoordinateSystem target,
                                        int axisLength, float normalizationFactor) const;
};
