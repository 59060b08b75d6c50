// WellKnownPaths: names in the object tree that more than one file, or a script, relies on.
#pragma once

#include "foundation/KVString.h"

/// The places in the object tree at which the engine looks for something that is made elsewhere, by code or by a script.
///
/// Interned before `main`. Keys of components stand in `ComponentKeys.h`.
namespace WellKnownPaths
{
// Beginnings of absolute paths.
inline const String currentLevel = SCS("c:/");
inline const String systems = SCS("s:/");

// Below the coordinator.
inline const String branchPostOffice = SCS("BranchPostOffice/postOffice");
inline const String pauseMenu = SCS("PauseMenu/menu");
inline const String persistentState = SCS("PersistentState");
inline const String persistentStateComponent = SCS("PersistentState/persist");
inline const String player = SCS("Player");

// Below the root of a map: what is made anew from the map's size, rather than saved.
inline const String mapDataPrefix = SCS(".MapData_");
inline const String mainPathGrid = SCS(".MapData_mainPathGrid");
inline const String pathSaturationGrid = SCS(".MapData_pathSaturationGrid");
inline const String flowGrid = SCS(".MapData_flowGrid");
inline const String partitioningGrid = SCS(".MapData_partitioningGrid");
inline const String floor = SCS(".MapData_floor");
inline const String ceiling = SCS(".MapData_ceiling");

// Below any entity.
inline const String lightOfSwitch = SCS("lightSwitchLight/graphics2");
} // namespace WellKnownPaths
