// ScreenPixels: how the screen layers' units and the pixels of the picture fit together.
#pragma once

#include "foundation/Vector.h"

/// Pixels of the back buffer that one normalised window unit takes; 1 while there is no window.
float getPixelsPerUnit();

/// The nearest place on the screen that lies on the edges of pixels; z and w as they are.
Vec4 snapToPixels(const Vec4 &screenPosition);
