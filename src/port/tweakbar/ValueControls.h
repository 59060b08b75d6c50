// ValueControls: the control of one value on a bar, by its type.
#pragma once

#include "port/tweakbar/Bars.h"

namespace port
{

/// Lays out the control of a value or a link in the width that is set, and reads it.
void layOutValue(TweakVar &var);

} // namespace port
