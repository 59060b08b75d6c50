// SurfaceTextures: the four maps that a surface wears, by name and as assets.
#pragma once

#include "rendering/device/GraphicsSystem2.h"

#include "foundation/KVString.h"
#include "object/tree/Handle.h"
#include "object/tree/KvReflected.h"

#include <tuple>

class Object;
class TextureAsset;

/// The diffuse, normal, emissive and specular map of a drawn component, each with the name that it was asked for by.
///
/// A name is that of a file in the texture folder; without an extension the .dds file goes before the .png file. From
/// load on, a new name requests its map at once; one that fails to load is told once and stood in for: the diffuse map
/// by magenta checks that shine in the dark, the normal map by a flat one. A drawn class derives from it beside its own
/// base, and has the maps as properties.
class SurfaceTextures
{
    KV_REFLECTED_MIXIN
public:
    Handle<TextureAsset> getTexture() const { return texture; }
    /// Diffuse map.
    void setTexture(Handle<TextureAsset> val) { texture = val; }
    String getTextureName() const { return textureName; }
    /// Name of the diffuse map's file; an empty one takes the map away, for what only glows.
    void setTextureName(const String &val);

    Handle<TextureAsset> getNormalTexture() const { return normalTexture; }
    /// Normal map, in tangent space.
    void setNormalTexture(Handle<TextureAsset> val) { normalTexture = val; }
    String getNormalTextureName() const { return normalTextureName; }
    /// Name of the normal map's file; "flatNormal.dds" where none is given.
    void setNormalTextureName(const String &val);

    Handle<TextureAsset> getEmissiveTexture() const { return emissiveTexture; }
    /// Light that the surface gives off by itself.
    void setEmissiveTexture(Handle<TextureAsset> val) { emissiveTexture = val; }
    String getEmissiveTextureName() const { return emissiveTextureName; }
    /// Name of the emissive map's file; "black.dds" where none is given.
    void setEmissiveTextureName(const String &val);

    Handle<TextureAsset> getSpecularTexture() const { return specularTexture; }
    /// Colour and strength of highlights.
    void setSpecularTexture(Handle<TextureAsset> val) { specularTexture = val; }
    String getSpecularTextureName() const { return specularTextureName; }
    /// Name of the specular map's file; "black.dds" where none is given.
    void setSpecularTextureName(const String &val);

    /// The maps, to be compared: surfaces that wear the same ones can share a draw call.
    auto getTextures() const { return std::tie(texture, normalTexture, emissiveTexture, specularTexture); }

protected:
    SurfaceTextures() = default;
    ~SurfaceTextures() = default;

    /// Requests every map by its name or default; without a name, one that is there already stays.
    void loadTextures();
    /// Adds the four maps, or what stands in for them, to what a batch gives its effect; `wearer` is this component.
    void addTexturesTo(GraphicsSystem2::BatchRenderParams &params, const Object &wearer) const;

private:
    Handle<TextureAsset> texture; ///< diffuse
    String textureName;
    Handle<TextureAsset> normalTexture; ///< in tangent space
    String normalTextureName;
    Handle<TextureAsset> emissiveTexture;
    String emissiveTextureName;
    Handle<TextureAsset> specularTexture;
    String specularTextureName;
    bool texturesLoaded = false; ///< asked for; a name set before that requests nothing yet
};

/// Requests a texture by the name of its file; a file that does not load is logged.
Handle<TextureAsset> requestTexture(const String &fileName);
