#include "assets/cache/TextureAssetLoader.h"

#include "assets/cache/TextureAsset.h"

Handle<Asset> TextureAssetLoader::startLoad(String assetName, ReflectorPtr callback, RequestHandle h)
{
    const Handle<TextureAsset> hAsset = construct<TextureAsset>(defaultAllocationCategory);
    const auto asset = hAsset.lookup();
    asset->setName(assetName);
    asset->setParent(getHandle());
    asset->setFileName(SCS("..\\assets\\textures\\") + assetName);
    asset->addListener(callback, h);
    asset->startLoad();
    return hAsset;
}
