// RubberBand: pulls a path tight where the cells between allow it.
#pragma once

#include "ai/paths/PathNode.h"
#include "ai/paths/PathSearch.h"

class SquareGrid;

/// Drops nodes from a chain of parents, three at a time: the middle one goes where `checkTriplet` says so.
/// @param rule  what else forbids straight ways; null for nothing
void doRubberbanding(SquareGrid &mainGrid, PathNode *finalNode, const StepRule *rule = nullptr);

/// Whether one may go straight from the first of three nodes to the last.
///
/// All cells of the rectangle between the two have to be walkable; of a rectangle two rows high only the two cells in
/// its second column are looked at. False where one of the three is missing.
bool checkTriplet(SquareGrid &mainGrid, const PathNode *first, const PathNode *middle, const PathNode *last);
