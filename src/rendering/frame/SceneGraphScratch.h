// SceneGraphScratch: the working lists of one pass, kept from frame to frame so that a pass allocates nothing.
#pragma once

#include "rendering/frame/SceneGraph.h"

#include "physics/grid/PartitioningGrid.h"

/// What one pass collects while it runs.
struct SceneGraph::Scratch
{
    LayerComponentList objectsToDraw;
    std::vector<Vec4> hullTriangles; ///< world space, three points a triangle
    PartitioningGrid::GridCellAddressList cells;
};

/// Working lists for the duration of one pass; a pass inside a pass gets its own.
class SceneGraph::ScratchScope
{
public:
    explicit ScratchScope(SceneGraph &sceneGraph_) : sceneGraph(sceneGraph_)
    {
        if (sceneGraph.scratchDepth == sceneGraph.scratch.size())
            sceneGraph.scratch.push_back(std::make_unique<Scratch>());
        lists = sceneGraph.scratch[sceneGraph.scratchDepth++].get();
        lists->objectsToDraw.clear();
        lists->hullTriangles.clear();
        lists->cells.clear();
    }
    ~ScratchScope() { --sceneGraph.scratchDepth; }

    ScratchScope(const ScratchScope &) = delete;
    ScratchScope &operator=(const ScratchScope &) = delete;

    Scratch *operator->() const { return lists; }
    Scratch &operator*() const { return *lists; }

private:
    SceneGraph &sceneGraph;
    Scratch *lists;
};
