#include "engine/screen/WindowCoordinate.h"

WindowCoordinate WindowCoordinate::convert(WindowCoordinateSystem xTarget, WindowCoordinateSystem yTarget, int xlength,
                                           int ylength, float normalizationFactor) const
{
    return WindowCoordinate(convertSingleWindowCoordinate(x, wcsX, xTarget, xlength, normalizationFactor),
                            convertSingleWindowCoordinate(y, wcsY, yTarget, ylength, normalizationFactor), xTarget,
                            yTarget);
}

float WindowCoordinate::convertSingleWindowCoordinate(float in, WindowCoordinateSystem source,
                                                      WindowCoordinateSystem target, int axisLength,
                                                      float normalizationFactor) const
{
    if (source == target)
        return in;

    const float axis = static_cast<float>(axisLength);
    switch (source)
    {
    case WCS_NORMALIZED:
        return in < 0.0f ? in + axis / normalizationFactor : in;
    case WCS_PIXEL:
        return in / normalizationFactor;
    case WCS_PERCENT:
        return in / normalizationFactor * axis;
    case WCS_NORMALIZED_NOWRAP:
    case WCS_MAX:
        break;
    }
    return in;
}
