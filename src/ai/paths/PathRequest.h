// PathRequest: what a creature asks of the path manager.
#pragma once

#include "engine/entities/Entity.h"
#include "physics/grid/GridCell.h"

/// How soon a path is wanted; a request that waits rises by one every half second.
enum RequestPriority : int
{
    RP_Normal = 0,
    RP_High = 1,
    RP_Urgent = 2
};

/// How a search or a request stands.
enum PathStatus : int
{
    PS_InProgress = 0, ///< the search is at work
    PS_Succeeded = 1,  ///< a path was found
    PS_Failed = 2,     ///< there is no path
    PS_Unknown = 3     ///< nothing was asked, or nothing has been answered yet
};

/// A creature's wish for a path from where it stands to a cell of its map's main path grid.
///
/// A value that is copied freely; it keeps neither the creature nor the grid alive. Scripts make it by its name:
///
///     path.submitPathRequest(kaVel.PathRequest(creature, grid.getCell(3, 4)))
struct PathRequest
{
    PathRequest() = default;
    PathRequest(Handle<Entity> entityHandle, const GridCell &destHex, int priorityLevel = RP_Normal,
                bool doRubberbanding = true, bool applySatMap = true)
        : hEntity(entityHandle), destination(destHex), priority(priorityLevel), rubberbanding(doRubberbanding),
          saturation(applySatMap)
    {
    }

    Handle<Entity> hEntity;    ///< who asks, and from where
    GridCell destination;      ///< of the main path grid of its map
    int priority = RP_Normal;  ///< higher ones come first; see `RequestPriority`
    double timeInQueue = 0.0;  ///< seconds since it was asked or last rose
    bool rubberbanding = true; ///< leaves out cells where the way between their neighbours is free
    bool saturation = true;    ///< the path makes its cells dearer for those that come later
};

/// How requests cross the reflection layer: as the script class `PathRequest`.
/// @{
void SetToVariant(Variant &v, const PathRequest &request);
bool fromVariant(const Variant &v, PathRequest &request);
/// @}
