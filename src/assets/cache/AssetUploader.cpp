#include "assets/cache/AssetUploader.h"

#include "engine/systems/System.h"
#include "foundation/KVString.h"

#include <utility>

namespace
{

IAssetUploader *installedUploader = nullptr;

} // namespace

IAssetUploader *getAssetUploader()
{
    // Content may ask for an asset before anything has shown a picture: the first upload starts the device.
    if (!installedUploader)
        getSystem(SCS("GraphicsSystem2"));
    return installedUploader;
}

IAssetUploader *setAssetUploader(IAssetUploader *uploader)
{
    return std::exchange(installedUploader, uploader);
}
