// FontAssetLoader: font names, with their extension, to fonts.
#pragma once

#include "assets/cache/AssetLoader.h"

/// Loads fonts from "..\assets\fonts\"; a name carries its extension, as "Inconsolata.otf".
class FontAssetLoader : public AssetLoader
{
    KV_REFLECTED(FontAssetLoader)
public:
    Handle<Asset> startLoad(String assetName, ReflectorPtr callback, RequestHandle h) override;
};
