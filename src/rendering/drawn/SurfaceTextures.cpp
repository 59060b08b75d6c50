#include "rendering/drawn/SurfaceTextures.h"

#include "rendering/frame/RenderParams.h"

#include "assets/cache/AssetSystem.h"
#include "assets/cache/TextureAsset.h"
#include "assets/cache/TextureAssetLoader.h"
#include "engine/systems/RequestHandle.h"

namespace
{

constexpr const char *flatNormal = "flatNormal.dds";
constexpr const char *black = "black.dds";
constexpr const char *checks = "missing.dds";

/// The map of a name, or a default where there is none; with neither, no map.
Handle<TextureAsset> requestMap(const String &name, const char *defaultName)
{
    if (!name.empty())
        return requestTexture(name);
    return defaultName ? requestTexture(String::fromStaticCString(defaultName)) : Handle<TextureAsset>();
}

/// A map that was put in its place as an asset stays, unless a name asks for another.
void loadMap(Handle<TextureAsset> &texture, const String &name, const char *defaultName)
{
    if (!name.empty() || !texture.isValid())
        texture = requestMap(name, defaultName);
}

/// What is worn in place of maps that did not load.
struct StandIns
{
    Handle<TextureAsset> diffuse, normal, dark;
};

/// The same for all surfaces; requested by the first that is loaded, and again where the assets have gone meanwhile.
const StandIns &standIns()
{
    static StandIns all;
    if (!all.diffuse.isValid())
        all = {requestMap(String(), checks), requestMap(String(), flatNormal), requestMap(String(), black)};
    return all;
}

/// Whether a map can be worn; one that did not load is told.
bool isWorn(const Handle<TextureAsset> &map, const Object &wearer)
{
    const auto asset = map.lookup();
    if (!asset)
        return false;
    if (asset->getStatus().succeeded())
        return true;
    const auto entity = wearer.getParent().lookup();
    asset->reportMissing(entity ? entity->getName() : wearer.getName());
    return false;
}

} // namespace

void SurfaceTextures::loadTextures()
{
    texturesLoaded = true;
    standIns();
    loadMap(texture, textureName, nullptr);
    loadMap(normalTexture, normalTextureName, flatNormal);
    loadMap(emissiveTexture, emissiveTextureName, black);
    loadMap(specularTexture, specularTextureName, black);
}

void SurfaceTextures::addTexturesTo(GraphicsSystem2::BatchRenderParams &params, const Object &wearer) const
{
    static const String diffuseMap = SCS("diffuseMap_texture"), normalMap = SCS("normalMap_texture"),
                        emissiveMap = SCS("emissiveMap_texture"), specularMap = SCS("specularMap_texture");
    const auto add = [&](const String &parameter, const Handle<TextureAsset> &map, const Handle<TextureAsset> &standIn)
    { params.shaderConstants.emplace_back(parameter, isWorn(map, wearer) ? map : standIn); };
    const StandIns &others = standIns();
    // What only glows needs no diffuse map. Checks shine in the dark, too.
    const bool onlyGlows = !texture.isValid() && emissiveTexture != others.dark;
    const bool bare = !isWorn(texture, wearer) && !onlyGlows;
    add(diffuseMap, texture, bare ? others.diffuse : others.dark);
    add(normalMap, normalTexture, others.normal);
    add(emissiveMap, bare ? others.diffuse : emissiveTexture, others.dark);
    add(specularMap, specularTexture, others.dark);
}

void SurfaceTextures::setTextureName(const String &val)
{
    textureName = val;
    if (texturesLoaded)
        texture = requestMap(val, nullptr);
}

void SurfaceTextures::setNormalTextureName(const String &val)
{
    normalTextureName = val;
    if (texturesLoaded)
        normalTexture = requestMap(val, flatNormal);
}

void SurfaceTextures::setEmissiveTextureName(const String &val)
{
    emissiveTextureName = val;
    if (texturesLoaded)
        emissiveTexture = requestMap(val, black);
}

void SurfaceTextures::setSpecularTextureName(const String &val)
{
    specularTextureName = val;
    if (texturesLoaded)
        specularTexture = requestMap(val, black);
}

Handle<TextureAsset> requestTexture(const String &fileName)
{
    return handle_cast<TextureAsset>(getSystemDeref<AssetSystem>().startLoad(TextureAssetLoader::staticType, fileName,
                                                                             nullptr, getNextRequestHandle()));
}
