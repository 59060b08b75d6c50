#include "assets/models/MeshAssetLoader.h"

#include "assets/files/ContentOverrides.h"
#include "assets/models/MeshAsset.h"

Handle<Asset> MeshAssetLoader::startLoad(String assetName, ReflectorPtr callback, RequestHandle h)
{
    const Handle<MeshAsset> hAsset = construct<MeshAsset>(defaultAllocationCategory);
    const auto asset = hAsset.lookup();
    asset->setName(assetName);
    asset->setParent(getHandle());
    asset->setFileName(contentFile(SCS("models/") + assetName + SCS(".kaVelModel")));
    asset->addListener(callback, h);
    asset->startLoad();
    return hAsset;
}
