#include "assets/fonts/FontAssetLoader.h"

#include "assets/fonts/FontAsset.h"

Handle<Asset> FontAssetLoader::startLoad(String assetName, ReflectorPtr callback, RequestHandle h)
{
    const Handle<FontAsset> hAsset = construct<FontAsset>(defaultAllocationCategory);
    const auto asset = hAsset.lookup();
    asset->setName(assetName);
    asset->setParent(getHandle());
    asset->setFileName(SCS("..\\assets\\fonts\\") + assetName);
    asset->addListener(callback, h);
    asset->startLoad();
    return hAsset;
}
