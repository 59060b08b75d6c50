// BarWidgets: one bar as Dear ImGui windows and controls.
#pragma once

#include "port/tweakbar/Bars.h"

namespace port
{

/// Lays a bar out in the present frame and reads its controls; returns where it stands.
/// @param index  its number among those shown, which decides where it first comes up
TweakPlace layOutBar(TwBar &bar, int index);

} // namespace port
