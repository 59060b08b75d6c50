// AssetLoader: turns the name of one kind of asset into the asset.
#pragma once

#include "assets/cache/Asset.h"

#include "foundation/KVString.h"

/// Base of the loaders, one class a kind of asset. AssetSystem makes and owns one of each.
class AssetLoader : public Object
{
    KV_REFLECTED(AssetLoader)
public:
    /// Makes the asset of that name as a child of this loader and starts loading it.
    ///
    /// `callback` is called with `h` when loading ends, which may be before this returns.
    /// @return the new asset, whatever becomes of the loading; its status tells
    virtual Handle<Asset> startLoad(String assetName, ReflectorPtr callback, RequestHandle h) = 0;
};
