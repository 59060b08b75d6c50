// TextureAssetLoader: texture names to textures.
#pragma once

#include "assets/cache/AssetLoader.h"

/// Loads textures from "..\assets\textures\" by names as "black.dds", or "black" for what is there of .dds and .png.
class TextureAssetLoader : public AssetLoader
{
    KV_REFLECTED(TextureAssetLoader)
public:
    Handle<Asset> startLoad(String assetName, ReflectorPtr callback, RequestHandle h) override;
};
