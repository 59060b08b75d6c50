#include "assets/models/DynamicMeshAssetLoader.h"

#include "assets/models/DynamicMeshAsset.h"

Handle<Asset> DynamicMeshAssetLoader::startLoad(String assetName, ReflectorPtr callback, RequestHandle h)
{
    const Handle<DynamicMeshAsset> hAsset = construct<DynamicMeshAsset>(defaultAllocationCategory);
    const auto asset = hAsset.lookup();
    asset->setParent(getHandle());
    asset->setFileName(assetName);
    asset->addListener(callback, h);
    return hAsset;
}
