// TextureAsset: a texture file that the graphics device has taken in.
#pragma once

#include "assets/cache/Asset.h"

#include "foundation/KVString.h"

/// A texture by file. The pixels live on the device, keyed by this asset's handle; nothing is kept here.
class TextureAsset : public Asset
{
    KV_REFLECTED(TextureAsset)
public:
    /// Has the device read the file; ends in onUploadComplete.
    virtual void startLoad();

    /// Whether it is a file of this asset's name, with any of the extensions that textures have.
    bool comesFrom(const String &file) const override;
    String reload() override;

    /// Called by the graphics system with the result of the upload; a failure is logged with file and reason.
    void onUploadComplete(ErrorCode ec);

    /// Tells who goes without this texture, which did not load; the first of them is enough.
    void reportMissing(const String &wearer);

    /// Path of the file, as "..\assets\textures\black.dds".
    String getFileName() const { return fileName; }
    void setFileName(const String &val) { fileName = val; }

private:
    String fileName;
    bool missingTold = false;
};
