// AssetSystem: the one place where external data are asked for by name, and loaded once.
#pragma once

#include "assets/cache/AssetLoader.h"

#include "engine/systems/System.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

/// Keeps one loader of each class and one asset of each (loader, name).
///
/// The interface is that of loading in the background; all loading runs on the main thread, inside startLoad.
class AssetSystem : public System
{
    KV_REFLECTED(AssetSystem)
public:
    /// The asset of that name, loaded now unless it has been already.
    ///
    /// @param assetLoader  reflected class of the loader, as TextureAssetLoader::staticType
    /// @param assetName    name within that loader; "<dynamic>" makes a new, unshared asset at every call
    /// @param callback     called with `h` when the asset is finished, possibly before this returns; may be null. It
    ///                     may ask for the same asset again, though not with itself as the callback.
    /// @return the asset, also when loading failed; an invalid handle for a class that is no loader
    Handle<Asset> startLoad(ReflectorPtr assetLoader, String assetName, ReflectorPtr callback, RequestHandle h);

    /// Takes the assets of a file anew, which has changed; those who have them have the new data.
    ///
    /// Where that fails, the old data stay.
    /// @param file  its designed path, as "../assets/textures/black.dds"
    /// @return why it failed, as a sentence; empty on success, and where no asset comes from the file
    String reloadFile(const String &file);
    /// Whether an asset comes from a file, told by its designed path, or has looked for it in vain.
    bool usesFile(const String &file) const;

protected:
    void systemStartup() override;
    void systemShutdown() override;
    DependencyList systemDependencies() override;

private:
    struct AssetCacheKey
    {
        Handle<AssetLoader> loader;
        String name;

        bool operator==(const AssetCacheKey &rhs) const { return loader == rhs.loader && name == rhs.name; }
    };
    struct AssetCacheEntry
    {
        Handle<AssetLoader> loader;
        String name;
        Handle<Asset> asset;
    };
    struct KeyHash
    {
        std::size_t operator()(const AssetCacheKey &key) const;
    };
    typedef std::unordered_map<AssetCacheKey, AssetCacheEntry, KeyHash> AssetCache;
    typedef std::unordered_map<ReflectorPtr, Handle<AssetLoader>> LoaderCache;

    Handle<AssetLoader> getLoader(const ReflectorPtr &loaderClass);
    class LoadUnderWay;

    Handle<Asset> findKnown(const AssetLoader &loader, const AssetCacheKey &key) const;

    AssetCache cache;
    LoaderCache loaders;
    std::vector<AssetCacheKey> loadsUnderWay; ///< innermost last
};
