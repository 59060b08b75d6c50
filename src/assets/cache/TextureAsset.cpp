#include "assets/cache/TextureAsset.h"

#include "assets/cache/AssetUploader.h"
#include "assets/cache/TextureLookup.h"
#include "foundation/Assertions.h"
#include "port/win32/HostPath.h"

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

bool TextureAsset::comesFrom(const String &file) const
{
    return isTextureFileOf(getName(), file) || port::hostPath(fileName.toCString()) == port::hostPath(file.toCString());
}

String TextureAsset::reload()
{
    IAssetUploader *uploader = getAssetUploader();
    if (!uploader)
        return SCS("There is no graphics device.");
    const String before = fileName;
    if (const String found = lookForTextureFile(getName()); !found.empty())
        fileName = found;
    String failure = uploader->replaceTexture(::getHandle(this));
    if (!failure.empty())
    {
        fileName = before;
        return failure;
    }
    missingTold = false;
    setStatus(ErrorCode::SUCCESS);
    return String();
}

void TextureAsset::reportMissing(const String &wearer)
{
    if (missingTold)
        return;
    missingTold = true;
    KV_VERIFY(false, "%s wears the texture %s, which did not load", wearer.toCString(), fileName.toCString());
}
