#include "assets/cache/TextureAsset.h"

#include "assets/cache/AssetUploader.h"
#include "foundation/Assertions.h"

void TextureAsset::startLoad()
{
    if (IAssetUploader *uploader = getAssetUploader())
        uploader->uploadTexture(::getHandle(this)).ignoreError(); // told to onUploadComplete
    else
        onUploadComplete(ErrorCode::LOST_ASSET);
}

void TextureAsset::onUploadComplete(ErrorCode ec)
{
    KV_VERIFY(ec.succeeded(), "Upload of texture asset %s failed: %s", fileName.toCString(), ec.toString().toCString());
    setStatus(ec);
}

void TextureAsset::reportMissing(const String &wearer)
{
    if (missingTold)
        return;
    missingTold = true;
    KV_VERIFY(false, "%s wears the texture %s, which did not load", wearer.toCString(), fileName.toCString());
}
