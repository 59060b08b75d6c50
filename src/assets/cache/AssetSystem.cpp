#include "assets/cache/AssetSystem.h"

#include "foundation/Assertions.h"
#include "foundation/ProfilerScope.h"

#include <algorithm>

/// Notes a load for as long as it runs, however it ends.
class AssetSystem::LoadUnderWay
{
public:
    LoadUnderWay(AssetSystem &system, const AssetCacheKey &key) : system(system)
    {
        system.loadsUnderWay.push_back(key);
    }
    ~LoadUnderWay() { system.loadsUnderWay.pop_back(); }
    LoadUnderWay(const LoadUnderWay &) = delete;
    LoadUnderWay &operator=(const LoadUnderWay &) = delete;

private:
    AssetSystem &system;
};

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
    const Handle<Asset> hKnown = findKnown(*loader, key);
    if (const auto known = hKnown.lookup())
    {
        known->addListener(callback, h);
        return hKnown;
    }
    const LoadUnderWay load(*this, key);
    const Handle<Asset> hAsset = loader->startLoad(assetName, callback, h);
    cache[key] = {hLoader, assetName, hAsset};
    return hAsset;
}

/// The asset of a name that is there already, or is just being loaded and asked for by its own callback.
Handle<Asset> AssetSystem::findKnown(const AssetLoader &loader, const AssetCacheKey &key) const
{
    const auto cached = cache.find(key);
    if (cached != cache.end())
        return cached->second.asset;
    const bool isUnderWay = std::find(loadsUnderWay.begin(), loadsUnderWay.end(), key) != loadsUnderWay.end();
    return isUnderWay ? handle_cast<Asset>(loader.getChild(key.name)) : Handle<Asset>();
}

String AssetSystem::reloadFile(const String &file)
{
    std::vector<Handle<Asset>> found; // listeners may ask for other assets
    for (const auto &[key, entry] : cache)
        if (const auto asset = entry.asset.lookup(); asset && asset->comesFrom(file))
            found.push_back(entry.asset);
    String failure;
    for (const Handle<Asset> &each : found)
        if (const auto asset = each.lookup())
            if (const String why = asset->reload(); !why.empty())
                failure = why;
    return failure;
}

bool AssetSystem::usesFile(const String &file) const
{
    return std::any_of(cache.begin(), cache.end(),
                       [&](const auto &each)
                       {
                           const auto asset = each.second.asset.lookup();
                           return asset && asset->comesFrom(file);
                       });
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
