// BarWidgets: one bar as Dear ImGui windows and controls.
#pragma once

#include "port/tweakbar/Bars.h"

namespace port
{

class BarPictures;

/// Lays a bar out in the present frame and reads its controls; returns where it stands, inside the window.
/// @param others  where the bars stand that were laid out before, beside which a new one comes up
TweakPlace layOutBar(TwBar &bar, const std::vector<TweakPlace> &others, BarPictures &pictures);

} // namespace port
