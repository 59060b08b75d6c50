// TreeText: behaviour trees and their nodes in words, for developers.
#pragma once

#include "foundation/KVString.h"

#include <cstddef>

class BTTask;

/// Lines of a tree that `drawTask` writes out; larger trees end with how many more nodes they have.
inline constexpr std::size_t MOST_DRAWN_TASKS = 500;

/// What a node is, as "Sequence", "Action ActAStar", "Condition AlarmBell::rings", "Tree Wander".
String taskLabel(const BTTask &task);

/// Where a node stands: the path of its creature, the name of its tree, and the way down from the root.
///
/// As "Hall/rat: Wander: Selector/2 Sequence/1 Condition rings", where the numbers count the children from 1. Searches
/// the trees of the creature, or the library's for a node of a master.
String taskPath(const BTTask &task);

/// A tree as text: a line a node, two spaces deeper a level, with the last result, ">" before the nodes at work.
String drawTask(BTTask &root);

/// The leaf at which a tree stands, and how: "Guide: Action ActAStar, going on", or by the name of its action, "Wander:
/// strolls".
///
/// Of leaves side by side it is the first that is going on.
String tellTask(const String &behavior, BTTask &root);
