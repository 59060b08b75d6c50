#include "assets/cache/TextureAssetLoader.h"

#include "assets/cache/TextureAsset.h"
#include "assets/cache/TextureLookup.h"

Handle<Asset> TextureAssetLoader::startLoad(String assetName, ReflectorPtr callback, RequestHandle h)
{
    const Handle<TextureAsset> hAsset = construct<TextureAsset>(defaultAllocationCategory);
    const auto asset = hAsset.lookup();
    asset->setName(assetName);
    asset->setParent(getHandle());
    asset->setFileName(findTextureFile(assetName));
    asset->addListener(callback, h);
    asset->startLoad();
    return hAsset;
}
