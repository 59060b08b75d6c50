// GraphicsSystem2: textures and meshes on their way to the device.
#include "rendering/device/GraphicsSystem2.h"

#include "rendering/device/D3DPerfScopedEvent.h"

#include "assets/cache/ShaderAsset.h"
#include "assets/cache/TextureAsset.h"
#include "assets/models/MeshAsset.h"

ErrorCode GraphicsSystem2::uploadMesh(Handle<MeshAsset> mesh)
{
    static const String eventName = SCS("uploadMesh");
    const D3DPerfScopedEvent event(eventName);
    const auto asset = mesh.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    if (!meshes.find(mesh))
    {
        meshes.releaseDead();
        textures.releaseDead();
    }
    const ErrorCode result = device ? meshes.upload(*device, mesh) : ErrorCode(ErrorCode::LOST_ASSET);
    asset->onUploadComplete(result);
    return result;
}

ErrorCode GraphicsSystem2::uploadTexture(Handle<TextureAsset> texture)
{
    const auto asset = texture.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    const ErrorCode result = device ? textures.upload(*device, texture) : ErrorCode(ErrorCode::LOST_ASSET);
    asset->onUploadComplete(result);
    return result;
}

String GraphicsSystem2::replaceTexture(Handle<TextureAsset> texture)
{
    return device ? textures.replace(*device, texture) : SCS("There is no graphics device.");
}

String GraphicsSystem2::reloadEffect(const String &name)
{
    return shaders.renewShader(name);
}

ErrorCode GraphicsSystem2::uploadCoverage(Handle<TextureAsset> texture, const CoverageImage &image)
{
    const auto asset = texture.lookup();
    if (!asset)
        return ErrorCode::BAD_HANDLE;
    const ErrorCode result =
        device ? textures.uploadCoverage(*device, texture, image) : ErrorCode(ErrorCode::LOST_ASSET);
    asset->onUploadComplete(result);
    return result;
}

ErrorCode GraphicsSystem2::uploadShader(Handle<ShaderAsset> shader)
{
    return ErrorCode::NOT_IMPLEMENTED;
}

ErrorReturn<GraphicsSystem2::MeshData> GraphicsSystem2::getMeshData(const Handle<MeshAsset> &mesh)
{
    const MeshData *data = meshes.find(mesh);
    if (!data)
        return ErrorCode(ErrorCode::UNKNOWN_KEY);
    return *data;
}

Vec4 GraphicsSystem2::getMeshSphere(const Handle<MeshAsset> &mesh) const
{
    const MeshData *data = meshes.find(mesh);
    return data ? data->sphere : Vec4(0, 0, 0, -1);
}

IDirect3DTexture9 *GraphicsSystem2::getTexturePtr(const Handle<TextureAsset> &texture)
{
    return textures.find(texture);
}
