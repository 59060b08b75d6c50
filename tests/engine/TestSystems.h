// TestSystems: systems that note their starts and stops.
#pragma once

#include "engine/systems/System.h"

#include <functional>
#include <string>
#include <vector>

/// What the test systems did, in order: "start X", "stop X", "run X".
extern std::vector<std::string> systemJournal;

/// A system without dependencies whose frame step stands at priority 500, that of the managers "director".
class TestGroundSystem : public System
{
    KV_REFLECTED(TestGroundSystem)
public:
    TestGroundSystem() = default;

    /// The frame step.
    void step();

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override { return {}; }
    UpdaterList getUpdaters() override;
};

/// A system that needs the ground.
class TestFloorSystem : public System
{
    KV_REFLECTED(TestFloorSystem)
public:
    TestFloorSystem() = default;

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
};

/// A system that needs the floor and the ground.
class TestRoofSystem : public System
{
    KV_REFLECTED(TestRoofSystem)
public:
    TestRoofSystem() = default;

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;
};
