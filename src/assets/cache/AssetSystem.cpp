#include "assets/cache/AssetSystem.h"

#include "foundation/Assertions.h"
#include "foundation/ProfilerScope.h"

#include <algorithm>

void AssetSystem::systemStartup() {}

void AssetSystem::systemShutdown()
{
    cache.clear();
    loaders.clear();
}

System::DependencyList AssetSystem::systemDependencies()
{
    return {};
}

std::size_t AssetSystem::KeyHash::operator()(const AssetCacheKey &key) const
{
    return key.loader.getNumber() * std::size_t(0x9E3779B9u) ^ hash_value(key.name);
}

Handle<Asset> AssetSystem::startLoad(ReflectorPtr assetLoader, String assetName, ReflectorPtr callback, RequestHandle h)
{
    static const String dynamicName = SCS("<dynamic>");
    const Handle<AssetLoader> hLoader = getLoader(assetLoader);
    const auto loader = hLoader.lookup();
    if (!loader)
        return Handle<Asset>();
    const ProfilerScope scope(SCS("AssetSystem::startLoad"), assetLoader->getName() + SCS(" ") + assetName);
    if (assetName == dynamicName)
        return loader->startLoad(assetName, callback, h);

    const AssetCacheKey key{hLoader, assetName};
    const auto known = cache.find(key);
    if (known != cache.end())
        if (const auto asset = known->second.asset.lookup())
        {
            const Handle<Asset> hAsset = known->second.asset;
            asset->addListener(callback, h);
            return hAsset;
        }
    return loadAndCache(*loader, key, callback, h);
}

Handle<Asset> AssetSystem::loadAndCache(AssetLoader &loader, const AssetCacheKey &key, const ReflectorPtr &callback,
                                        RequestHandle h)
{
    const bool asksForItself = std::find(loadsUnderWay.begin(), loadsUnderWay.end(), key) != loadsUnderWay.end();
    KV_VERIFY(!asksForItself, "The callback of asset %s asks for that asset again; ask once it has returned.",
              key.name.toCString());
    if (asksForItself)
        return Handle<Asset>();
    loadsUnderWay.push_back(key);
    const Handle<Asset> hAsset = loader.startLoad(key.name, callback, h);
    loadsUnderWay.pop_back();
    cache[key] = {key.loader, key.name, hAsset};
    return hAsset;
}

Handle<AssetLoader> AssetSystem::getLoader(const ReflectorPtr &loaderClass)
{
    const auto known = loaders.find(loaderClass);
    if (known != loaders.end() && known->second.isValid())
        return known->second;
    const bool isLoader = loaderClass && loaderClass->isSubclassOf(AssetLoader::staticType);
    KV_VERIFY(isLoader, "%s is no class of asset loaders; give the reflected class of one, as TextureAssetLoader.",
              loaderClass ? loaderClass->getQualifiedName().toCString() : "Nothing");
    if (!isLoader)
        return Handle<AssetLoader>();
    const auto hLoader = unchecked_handle_cast<AssetLoader>(loaderClass->construct(defaultAllocationCategory));
    const auto loader = hLoader.lookup();
    KV_VERIFY(loader, "An asset loader of class %s cannot be made.", loaderClass->getQualifiedName().toCString());
    if (!loader)
        return Handle<AssetLoader>();
    loader->setName(loaderClass->getName());
    loader->setParent(getHandle());
    loaders[loaderClass] = hLoader;
    return hLoader;
}
