// PathManager: plans the paths of a level's creatures, one after the other.
#pragma once

#include "ai/paths/PathRequest.h"
#include "ai/paths/PathSaturation.h"
#include "ai/paths/PathSearch.h"

#include "engine/entities/AbstractManager.h"

#include "foundation/TimeTypes.h"

#include <cstddef>
#include <vector>

class MapRootEntity;
class PathComponent;
class Walkways;

/// Manager of the key "path": takes requests, finds one path at a time over the main path grid of the creature's map,
/// and hands it to the creature's `PathComponent`.
///
/// A frame expands a few cells, so that a far way takes some frames; requests wait in order of their priority, equal
/// ones in order of their arrival, and rise while they wait. Each path that is asked to leaves a trace in the map's
/// saturation grid, which has later paths avoid its cells. Neither moves anybody nor knows where anybody looks.
class PathManager : public AbstractManager
{
    KV_REFLECTED(PathManager)
public:
    /// The most cells that a frame expands.
    static constexpr int MAX_PASSES_PER_FRAME = 30;
    /// Seconds after which a request that waits rises by one.
    static constexpr Seconds MAX_REQUEST_WAIT_TIME = 0.5;

    PathManager() = default;

    /// Hands over what was found, searches on, and has waiting requests age.
    void doFrame() override;
    /// Draws the traces of paths in the map of the search at work, the more crowded the redder; only while the debug
    /// switches for grids and for path searches ask for it.
    void applyDebugDraw(const Handle<DebugCollectorComponent> &dcc) override;
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override {}
    /// Drops what the creature has asked for and not been served with; a search at work ends without delivery.
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void destroyComponent(Handle<AbstractComponent> component) override;

    /// Has those who wait rise by one for every half second, up to RP_Urgent.
    void maintainQueue();
    /// Queues a request behind all that are as urgent.
    void submitRequest(PathRequest request);
    /// Drops the first waiting request of a creature; the search at work is not touched.
    void removeRequest(Handle<Entity> hEntity);
    /// Takes the search at work one step on: hands its outcome over, or expands some cells, or begins the next one.
    void processRequest();

    /// Whether the search stands still for some frames between its steps, for developers to look at.
    bool getSingleStep() const { return singleStep; }
    void setSingleStep(bool set) { singleStep = set; }
    /// Frames between two steps of a search that is stepped.
    int getStepAmount() const { return stepFrameCount; }
    void setStepAmount(int frameCount) { stepFrameCount = frameCount; }
    /// What a path adds to the saturation of its cells, unless they have as much.
    float getMaxSatMapVal() const { return maxSatMapVal; }
    /// Sets it; anything but a number above 0 is logged as an error and changes nothing.
    void setMaxSatMapVal(float val);
    /// Seconds between two beats of the saturation's clock.
    double getSatRelaxTime() const { return satRelaxTime; }
    /// Sets it; anything but a number of seconds above 0 is logged as an error and changes nothing.
    void setSatRelaxTime(double time);

    /// Seconds since the last beat of the saturation's clock.
    double getTimeSinceSatUpdate() const { return timeSinceSatUpdate; }
    /// Frames that a stepped search has stood still.
    int getFrameCount() const { return frameCount; }
    /// How the search at work stands; PS_Unknown while there is none.
    PathStatus getPrevStatus() const { return prevStatus; }
    /// The request at work, or the last one.
    PathRequest getCurrRequest() const { return currRequest; }
    /// The path that was found and not handed over yet, from its end to its start.
    HexCont getCurrentPath() const { return currentPath; }
    /// Count of cells that the search at work has reached.
    int getPoolIndex() const { return search.getNodeCount(); }
    /// Count of requests that wait.
    int getRequestCount() const { return static_cast<int>(pathRequests.size() - firstRequest); }
    /// A waiting request by its place in the queue, the next one first; an empty one where there is none.
    PathRequest getRequest(int place);

    /// Whether the way from a node to a cell beside it passes the corner of a blocked cell; for a stricter search.
    static bool moveCutsCorner(const PathNode &parentNode, const GridCell &nextHex);
    /// Whether both cells are of a grid and can be walked on; for a stricter search.
    static bool isValidMove(const GridCell &hex1, const GridCell &hex2);
    /// Lets the saturation of a grid sink; nothing in a running level calls it, so that saturation only grows there.
    void updateSatMap(Handle<SquareGrid> pSatMap);
    /// Whether a cell of a saturation grid is not crowded.
    bool sampleSatMap(Handle<SquareGrid> pSatMap, const GridCell &hex) const;

private:
    /// A request in the queue; `place` is its position when the queue was sorted last.
    struct Waiting
    {
        PathRequest request;
        std::size_t place = 0;
    };
    typedef std::vector<Waiting> RequestCont;

    /// Orders requests: the more urgent first, then as they stood.
    struct SortObject
    {
        bool operator()(const Waiting &lhs, const Waiting &rhs) const
        {
            if (lhs.request.priority != rhs.request.priority)
                return lhs.request.priority > rhs.request.priority;
            return lhs.place < rhs.place;
        }
    };
    /// What a search needs of its map, for one step.
    struct Surroundings
    {
        SquareGrid *main = nullptr;
        SquareGrid *saturation = nullptr;
        Walkways *ways = nullptr;
    };

    void sortRequests();
    void dropServed();
    PathComponent *findComponent(const Handle<Entity> &hEntity) const;
    void handOver();
    bool takeRequest();
    void doAStar();
    void searchOn(const PathGround &ground);
    Surroundings findSurroundings() const;
    bool beginSearch(const PathGround &ground);
    void finishPath(const PathGround &ground);
    void showSearch();
    void colorSaturationMap(DebugCollectorComponent &collector, SquareGrid &grid) const;

    PathSearch search;
    PathSaturation saturation;
    RequestCont pathRequests;     ///< the served ones in front
    std::size_t firstRequest = 0; ///< that waits
    bool unsorted = false;        ///< the queue has changed since it was sorted
    PathRequest currRequest;
    PathStatus prevStatus = PS_Unknown;
    HexCont currentPath;
    bool singleStep = false;
    int stepFrameCount = 0;
    int frameCount = 0;
    Seconds frameSeconds = 0.0;
    Seconds timeSinceSatUpdate = 0.0;
    float maxSatMapVal = 10.f;
    Seconds satRelaxTime = 0.5;
};
