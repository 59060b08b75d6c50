// GlobalConfigSystem: the debug switches of the whole program.
#pragma once

#include "engine/systems/System.h"

/// A plain bag of debug switches, each a property that scripts, the console and tweak bars reach by name.
class GlobalConfigSystem : public System
{
    KV_REFLECTED(GlobalConfigSystem)
public:
    GlobalConfigSystem() = default;

    /// Whether any debug drawing happens at all.
    bool getDebugDrawEnabled() const { return debugDrawEnabled; }
    void setDebugDrawEnabled(bool val) { debugDrawEnabled = val; }
    /// Whether debug drawing shows the axes of transforms.
    bool getDebugDrawTransformAxesEnabled() const { return debugDrawTransformAxesEnabled; }
    void setDebugDrawTransformAxesEnabled(bool val) { debugDrawTransformAxesEnabled = val; }
    /// Whether debug drawing shows the paths of creatures.
    bool getDebugDrawPathInfoEnabled() const { return debugDrawPathInfoEnabled; }
    void setDebugDrawPathInfoEnabled(bool val) { debugDrawPathInfoEnabled = val; }
    /// Whether debug drawing shows the forces within flocks.
    bool getDebugDrawFlockInfoEnabled() const { return debugDrawFlockInfoEnabled; }
    void setDebugDrawFlockInfoEnabled(bool val) { debugDrawFlockInfoEnabled = val; }
    /// Whether debug drawing shows steering forces.
    bool getDebugDrawSteerInfoEnabled() const { return debugDrawSteerInfoEnabled; }
    void setDebugDrawSteerInfoEnabled(bool val) { debugDrawSteerInfoEnabled = val; }
    /// Whether debug drawing shows the hit boxes of bounding volumes.
    bool getDebugDrawHitBoxes() const { return debugDrawHitBoxes; }
    void setDebugDrawHitBoxes(bool val) { debugDrawHitBoxes = val; }
    /// Whether debug drawing shows the volumes that lights fill.
    bool getDebugDrawLightVolumes() const { return debugDrawLightVolumes; }
    void setDebugDrawLightVolumes(bool val) { debugDrawLightVolumes = val; }
    /// Whether debug drawing shows the nodes of path searches.
    bool getDebugDrawPathfindingData() const { return debugDrawPathfindingData; }
    void setDebugDrawPathfindingData(bool val) { debugDrawPathfindingData = val; }
    /// Whether debug drawing shows the cells of grids.
    bool getDebugDrawGridsEnabled() const { return debugDrawGridsEnabled; }
    void setDebugDrawGridsEnabled(bool val) { debugDrawGridsEnabled = val; }
    /// Whether the console may be opened.
    bool getConsoleEnabled() const { return consoleEnabled; }
    void setConsoleEnabled(bool val) { consoleEnabled = val; }
    /// Whether debug drawing shows what influences flow fields.
    bool getDebugFlowFieldInfluenceInfoEnabled() const { return debugFlowFieldInfluenceInfoEnabled; }
    void setDebugFlowFieldInfluenceInfoEnabled(bool val) { debugFlowFieldInfluenceInfoEnabled = val; }
    /// Whether debug drawing is limited to what systems draw.
    bool getDebugDrawSystemsOnly() const { return debugDrawSystemsOnly; }
    void setDebugDrawSystemsOnly(bool val) { debugDrawSystemsOnly = val; }
    /// Whether debug drawing shows the frustums of viewers.
    bool getDebugDrawViewerFrustums() const { return debugDrawViewerFrustums; }
    void setDebugDrawViewerFrustums(bool val) { debugDrawViewerFrustums = val; }
    /// Whether debug drawing shows the cells of partitioning grids.
    bool getDebugDrawPartitioningGrid() const { return debugDrawPartitioningGrid; }
    void setDebugDrawPartitioningGrid(bool val) { debugDrawPartitioningGrid = val; }
    /// Whether debug drawing shows the contacts that were found in the frame.
    bool getDebugDrawContacts() const { return debugDrawContacts; }
    void setDebugDrawContacts(bool val) { debugDrawContacts = val; }
    /// Whether debug drawing shows force volumes and what they push.
    bool getDebugDrawForceVolumes() const { return debugDrawForceVolumes; }
    void setDebugDrawForceVolumes(bool val) { debugDrawForceVolumes = val; }
    /// Whether debug drawing shows the ways by which sounds are heard, and the rooms that return them.
    bool getDebugDrawSoundWays() const { return debugDrawSoundWays; }
    void setDebugDrawSoundWays(bool val) { debugDrawSoundWays = val; }
    /// Whether debug drawing writes above each creature what it does and why.
    bool getDebugDrawMinds() const { return debugDrawMinds; }
    void setDebugDrawMinds(bool val) { debugDrawMinds = val; }
    /// Whether debug drawing shows what creatures see and hear, and what they make of it.
    bool getDebugDrawPerception() const { return debugDrawPerception; }
    void setDebugDrawPerception(bool val) { debugDrawPerception = val; }
    /// Ambient light level that a new level's scene starts with, 0..1.
    float getDefaultSceneAmbient() const { return defaultSceneAmbient; }
    void setDefaultSceneAmbient(float val) { defaultSceneAmbient = val; }

protected:
    void systemStartup() override {}
    void systemShutdown() override {}
    DependencyList systemDependencies() override { return {}; }

private:
    bool debugDrawEnabled = false;
    bool debugDrawTransformAxesEnabled = false;
    bool debugDrawPathInfoEnabled = false;
    bool debugDrawFlockInfoEnabled = false;
    bool debugDrawSteerInfoEnabled = false;
    bool debugDrawHitBoxes = false;
    bool debugDrawLightVolumes = false;
    bool debugDrawPathfindingData = false;
    bool debugDrawGridsEnabled = false;
    bool consoleEnabled = false;
    bool debugFlowFieldInfluenceInfoEnabled = false;
    bool debugDrawSystemsOnly = false;
    bool debugDrawViewerFrustums = false;
    bool debugDrawPartitioningGrid = false;
    bool debugDrawContacts = false;
    bool debugDrawForceVolumes = false;
    bool debugDrawSoundWays = false;
    bool debugDrawMinds = false;
    bool debugDrawPerception = false;
    float defaultSceneAmbient = 0.2f; ///< 0..1
};
