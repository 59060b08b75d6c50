#include "assets/cache/DynamicTextureAsset.h"

#include "assets/cache/AssetUploader.h"

void DynamicTextureAsset::setCoverage(const CoverageImage &image)
{
    if (IAssetUploader *uploader = getAssetUploader())
        uploader->uploadCoverage(::getHandle(this), image).ignoreError(); // told to onUploadComplete
    else
        onUploadComplete(ErrorCode::LOST_ASSET);
}
