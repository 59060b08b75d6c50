#include "assets/DynamicTextureAsset.h"

#include "assets/AssetUploader.h"

void DynamicTextureAsset::setCoverage(const CoverageImage &image)
{
    if (IAssetUploader *uploader = getAssetUploader())
        uploader->uploadCoverage(::getHandle(this), image).ignoreError(); // told to onUploadComplete
    else
        onUploadComplete(ErrorCode::LOST_ASSET);
}
