// BarPlacement: where bars come up, and that they stay inside the window.
#pragma once

#include "port/tweakbar/Bars.h"

namespace port
{

/// Sets the place of the bar that is laid out next.
///
/// A bar comes up where it was wanted or last stood, and otherwise where it covers the least of the others. Wherever it
/// is, it is moved back into the window, and made smaller where it is larger than that.
void placeBar(TwBar &bar, const std::vector<TweakPlace> &others);

/// Notes where the bar stands that is being laid out, and gives what of the window it covers.
TweakPlace placeOfWindow(TwBar &bar);

/// Where a bar of a size would cover the least of the others: columns from the top left, then below each other. One that
/// finds no room of its own is made lower, down to half of its height, before it covers any.
TweakPlace findRoom(int width, int height, int windowWidth, int windowHeight, const std::vector<TweakPlace> &others);

} // namespace port
