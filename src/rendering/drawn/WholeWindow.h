// WholeWindow: the window's size in the units of screen-space layout.
#pragma once

#include "engine/screen/WindowCoordinate.h"

/// The far corner of the window in normalised units: its width and height, of which the larger is 1.
WindowCoordinate getWholeWindow();
