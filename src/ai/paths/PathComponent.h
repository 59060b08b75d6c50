// PathComponent: a creature's end of the planning of paths.
#pragma once

#include "ai/paths/PathRequest.h"

#include "engine/entities/SimpleComponent.h"

#include <cstddef>

/// Asks for paths on behalf of its entity and keeps the last one, under the component key "path".
///
///     path = kaVel.addComponent(creature, 'path', 'PathComponent')
///     path.submitPathRequest(kaVel.PathRequest(creature, grid.getCell(3, 4)))
///
/// The path arrives some frames later: `isRequestPending` is false then, and `requestStatus` says what came of it.
/// `getNextPathStep` gives its cells one by one, from the creature's own to the last. Moves nobody.
class PathComponent : public SimpleComponent
{
    KV_REFLECTED(PathComponent)
public:
    PathComponent() = default;

    void doFrame() override {}
    /// Draws the path with the switch of path information, the cells that the search has reached with that of path
    /// searches: those that wait green, those that are done with grey.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;

    /// Hands a request to the level's path manager, whoever it is for.
    void submitPathRequest(PathRequest request);
    /// Takes back what was asked for; nothing happens where nothing is pending.
    ///
    /// A search that is at work already goes on, and its outcome still comes.
    void cancelPathRequest();
    /// Takes a path, from its last cell to its first, and stands before its first.
    void acceptPath(const HexCont &calculatedPath);
    /// Takes what came of the request.
    void acceptOutcome(PathStatus status_);
    /// Takes the cells of a search that developers look at.
    void acceptDebugNodes(const HexCont &openList, const HexCont &closedList, const HexCont &calculatedPath);
    /// Goes on to the next cell of the path and returns it; no cell when there is none left.
    GridCell getNextPathStep();
    /// Forgets the path.
    void clearPath();
    /// Gives up the path that was followed, and says so by `wasPathCancelled`.
    void cancelCurrentPath();

    /// Whether there are cells of the path to go to.
    bool pathRemaining() const { return !currPath.empty() && currNode > 0; }
    /// Whether a request or a path was given up since the last request.
    bool wasPathCancelled() const { return pathCancelled; }
    /// Whether an outcome is to come.
    bool isRequestPending() const { return requestPending; }
    /// What came of the last request that was answered.
    PathStatus requestStatus() const { return status; }
    /// Sets what came of it, as whoever has taken notice of it does with PS_Unknown.
    void setRequestStatus(PathStatus val) { status = val; }
    /// The cell that the creature is to reach, for whoever wants to keep it here.
    GridCell getPathTarget() const { return pathTarget; }
    void setPathTarget(GridCell destination) { pathTarget = destination; }

    /// The cells that `getNextPathStep` walks, from the last to the first.
    HexCont getCurrPath() const { return currPath; }
    /// The path as it came from the manager, from the last cell to the first.
    HexCont getPath() const { return path; }
    /// How many cells of the path are left.
    int getCurrNode() const { return static_cast<int>(currNode); }
    /// The cells that developers see: of the path, waiting, and done with.
    HexCont getDebugPathNodes() const { return debugPathNodes; }
    HexCont getDebugOpenNodes() const { return debugOpenNodes; }
    HexCont getDebugClosedNodes() const { return debugClosedNodes; }
    /// The path without a copy, good until the next one comes.
    const HexCont &borrowPath() const { return path; }

private:
    GridCell pathTarget;
    HexCont currPath;
    HexCont debugPathNodes;
    HexCont debugOpenNodes;
    HexCont debugClosedNodes;
    std::size_t currNode = 0; ///< index into currPath, one past the cell to go to next
    bool requestPending = false;
    bool pathCancelled = false;
    PathStatus status = PS_Unknown;
    HexCont path;
};
