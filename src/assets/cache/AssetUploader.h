// AssetUploader: what assets need of the graphics device, filled in by the rendering folder.
#pragma once

#include "assets/cache/PixelRectangle.h"

#include "foundation/ErrorCode.h"
#include "foundation/KVString.h"
#include "object/tree/Handle.h"

#include <cstdint>

class MeshAsset;
class TextureAsset;

/// An image of coverage that code makes: the texture is of one grey, and its alpha is the coverage.
struct CoverageImage
{
    int width;
    int height;
    const std::uint8_t *rows; ///< width bytes each, top row first; borrowed for the call
    PixelRectangle changed;   ///< what differs from the last time
    std::uint8_t grey = 255;  ///< 0 black, 255 white; of what changed
};

/// Takes finished data to the graphics device. GraphicsSystem2 installs its own; a test may install another.
///
/// Each call ends in the asset's onUploadComplete with the result that it also returns.
class IAssetUploader
{
public:
    virtual ~IAssetUploader() = default;

    virtual ErrorCode uploadTexture(Handle<TextureAsset> texture) = 0;
    /// Takes another state of its file, or another file, in place of what the device has of a texture; a file that
    /// cannot be read changes nothing.
    ///
    /// It does not end in onUploadComplete.
    /// @return why it failed, as a sentence; empty on success
    virtual String replaceTexture(Handle<TextureAsset> texture) = 0;
    virtual ErrorCode uploadCoverage(Handle<TextureAsset> texture, const CoverageImage &image) = 0;
    virtual ErrorCode uploadMesh(Handle<MeshAsset> mesh) = 0;
};

/// The uploader in charge; starts the graphics system if nothing has been installed yet. Null if that brings none.
IAssetUploader *getAssetUploader();

/// Installs an uploader that the caller keeps alive; null takes it away. Returns the one before.
IAssetUploader *setAssetUploader(IAssetUploader *uploader);
