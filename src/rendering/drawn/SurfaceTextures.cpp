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

} // namespace

void SurfaceTextures::loadTextures()
{
    texturesLoaded = true;
    loadMap(texture, textureName, nullptr);
    loadMap(normalTexture, normalTextureName, flatNormal);
    loadMap(emissiveTexture, emissiveTextureName, black);
    loadMap(specularTexture, specularTextureName, black);
}

void SurfaceTextures::addTexturesTo(GraphicsSystem2::BatchRenderParams &params) const
{
    static const String diffuseMap = SCS("diffuseMap_texture"), normalMap = SCS("normalMap_texture"),
                        emissiveMap = SCS("emissiveMap_texture"), specularMap = SCS("specularMap_texture");
    params.shaderConstants.emplace_back(diffuseMap, texture);
    params.shaderConstants.emplace_back(normalMap, normalTexture);
    params.shaderConstants.emplace_back(emissiveMap, emissiveTexture);
    params.shaderConstants.emplace_back(specularMap, specularTexture);
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
