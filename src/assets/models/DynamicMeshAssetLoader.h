// DynamicMeshAssetLoader: a new empty mesh for code to fill.
#pragma once

#include "assets/cache/AssetLoader.h"

/// Makes a DynamicMeshAsset at every call; the name is "<dynamic>" and is not looked at.
class DynamicMeshAssetLoader : public AssetLoader
{
    KV_REFLECTED(DynamicMeshAssetLoader)
public:
    Handle<Asset> startLoad(String assetName, ReflectorPtr callback, RequestHandle h) override;
};
