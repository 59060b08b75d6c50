// BoundingVolumeManager: keeps the collision volumes of a level in their grids.
#pragma once

#include "engine/entities/SimpleManager.h"

/// Manager of the key "boundingVolume": each volume follows its transform once a frame, oldest first.
class BoundingVolumeManager : public SimpleManager
{
    KV_REFLECTED(BoundingVolumeManager)
public:
    BoundingVolumeManager() = default;

    void doFrame() override;
    Handle<AbstractComponent> constructComponent(const ReflectorPtr &type) override;
    ReflectorPtr getComponentClass() const override;
};
