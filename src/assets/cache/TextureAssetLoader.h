// TextureAssetLoader: texture names, with their extension, to textures.
#pragma once

#include "assets/cache/AssetLoader.h"

/// Loads textures from "..\assets\textures\"; a name carries its extension, as "black.dds".
class TextureAssetLoader : public AssetLoader
{
    KV_REFLECTED(TextureAssetLoader)
public:
    Handle<Asset> startLoad(String assetName, ReflectorPtr callback, RequestHandle h) override;
};
