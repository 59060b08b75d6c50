// SurfaceTextures: the four maps that a surface wears, by name and as assets.
#pragma once

#include "rendering/GraphicsSystem2.h"

#include "foundation/KVString.h"
#include "object/Handle.h"

#include <tuple>

class TextureAsset;

/// Diffuse, normal, emissive and specular map of one drawn component, each with the name that it was asked for by.
///
/// A name is that of a file in the texture folder, with extension. From load on, a new name requests its map at once;
/// a map that fails to load leaves a gap, never a fault.
class SurfaceTextures
{
public:
    /// Requests every map by its name or default; without a name, one that is there already stays.
    void load();
    /// Adds the four maps to what a batch gives its effect.
    void addTo(GraphicsSystem2::BatchRenderParams &params) const;

    /// Names the diffuse map; an empty name takes it away.
    void setTextureName(const String &val);
    /// Names the normal map; an empty name brings the default back, here and below.
    void setNormalTextureName(const String &val);
    void setEmissiveTextureName(const String &val);
    void setSpecularTextureName(const String &val);

    /// The maps, to be compared: surfaces that wear the same ones can share a draw call.
    auto getTextures() const { return std::tie(texture, normalTexture, emissiveTexture, specularTexture); }

    Handle<TextureAsset> texture; ///< diffuse
    String textureName;
    Handle<TextureAsset> normalTexture;   ///< in tangent space
    String normalTextureName;             ///< "flatNormal.dds" is loaded where none is given
    Handle<TextureAsset> emissiveTexture; ///< light that the surface gives off by itself
    String emissiveTextureName;           ///< "black.dds" is loaded where none is given
    Handle<TextureAsset> specularTexture; ///< colour and strength of highlights
    String specularTextureName;           ///< "black.dds" is loaded where none is given

private:
    bool loaded = false;
};

/// Requests a texture by its file name, with extension; a file that does not load is logged and draws as black.
Handle<TextureAsset> requestTexture(const String &fileName);
