// PixelRectangle: a part of a picture.
#pragma once

/// A rectangle of pixels; right and bottom lie outside it.
struct PixelRectangle
{
    int left = 0, top = 0, right = 0, bottom = 0;

    bool isEmpty() const { return left >= right || top >= bottom; }
};
