// ListControls: lists, pictures and curves on a bar.
#pragma once

#include "port/tweakbar/Bars.h"

namespace port
{

class BarPictures;

/// Lays out a list, or what its search leaves of pictures, in a frame of a height in pixels; only what is seen is asked
/// for.
/// @{
void layOutList(TweakVar &var, float height);
void layOutPictures(TweakVar &var, float height, BarPictures &pictures);
/// @}

/// Lays out a curve as wide as the bar.
void layOutGraph(TweakVar &var);

} // namespace port
