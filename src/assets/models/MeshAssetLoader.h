// MeshAssetLoader: model names to the meshes of their files.
#pragma once

#include "assets/cache/AssetLoader.h"

/// Loads models from "..\assets\models\"; a name goes without the extension ".kaVelModel".
class MeshAssetLoader : public AssetLoader
{
    KV_REFLECTED(MeshAssetLoader)
public:
    Handle<Asset> startLoad(String assetName, ReflectorPtr callback, RequestHandle h) override;
};
