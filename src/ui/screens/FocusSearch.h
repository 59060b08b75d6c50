// FocusSearch: which widget lies in a direction from another one.
#pragma once

#include "ui/widgets/WidgetRect.h"

#include <cstddef>
#include <vector>

/// The nearest of some places in a direction.
///
/// What lies straight ahead goes before what lies aslant. Up and down begin again at the other end where nothing lies
/// ahead; left and right do not.
/// @param places  all, with the one that is left
/// @param from    its number
/// @param x, y    the direction: one of them 1 or -1, right and down; the other 0
/// @return its number; `from` where there is none
std::size_t findInDirection(const std::vector<WidgetRect> &places, std::size_t from, int x, int y);
