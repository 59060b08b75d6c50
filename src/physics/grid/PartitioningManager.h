// PartitioningManager: detects and resolves the contacts of a level, grid by grid.
#pragma once

#include "physics/grid/PartitioningGrid.h"

#include "engine/entities/AbstractManager.h"

#include <set>

/// Manager of the key "partitioning": every map's grid finds its contacts and resolves them once a frame.
///
/// Runs the grids in the order of their creation.
class PartitioningManager : public AbstractManager
{
    KV_REFLECTED(PartitioningManager)
public:
    typedef std::set<Handle<PartitioningGrid>> ComponentSet;

    PartitioningManager() = default;

    /// Temporary function for the coordinator to call.
    ///
    /// Detects and then resolves the contacts of each grid, with the frame time of the timer "master".
    void doFrame() override;
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    void addComponentToManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    void removeComponentFromManager(Handle<AbstractComponent> component, Handle<Entity> entity) override;
    /// Murders the grid unless it is dying already.
    void destroyComponent(Handle<AbstractComponent> component) override;
    ReflectorPtr getComponentClass() const override { return PartitioningGrid::staticType; }

private:
    ComponentSet components;
};
