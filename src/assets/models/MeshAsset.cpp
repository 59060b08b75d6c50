#include "assets/models/MeshAsset.h"

#include "assets/cache/AssetUploader.h"
#include "assets/building/MeshBuilder.h"
#include "assets/models/ModelFile.h"
#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "port/win32/HostPath.h"

#include <string>
#include <utility>

void MeshAsset::startLoad()
{
    ModelFile file;
    if (!file.load(fileName))
    {
        KV_LOGF(Logger_::I_ERROR, "The model %s did not load; objects that use it are not drawn. %s",
                fileName.toCString(), port::explainMissingFile(fileName.toCString()).c_str());
        setStatus(ErrorCode::NOT_IMPLEMENTED);
        return;
    }
    const bool hasMesh = file.getMeshCount() > 0;
    meshData = file.takeMesh(0);
    if (hasMesh)
        return upload();
    KV_LOGF(Logger_::I_ERROR, "The model %s holds no mesh; export it again.", fileName.toCString());
    setStatus(ErrorCode::NOT_IMPLEMENTED);
}

bool MeshAsset::comesFrom(const String &file) const
{
    return port::hostPath(fileName.toCString()) == port::hostPath(file.toCString());
}

String MeshAsset::reload()
{
    ModelFile file;
    if (const std::string missing = port::explainMissingFile(fileName.toCString()); !missing.empty())
        return String::copyFrom(missing);
    file.load(fileName); // what is wrong stands in its fault
    if (!file.getFault().empty())
        return SCS("The model cannot be read: ") + file.getFault() + SCS(".");
    if (file.getMeshCount() == 0)
        return SCS("The model holds no mesh.");
    Mesh mesh = file.takeMesh(0);
    if (!mesh.checkDrawable().succeeded())
        return SCS("The model's mesh cannot be drawn: an index lies beyond its vertices, or its type is none.");
    meshData = std::move(mesh);
    upload();
    return getStatus().succeeded() ? String() : getStatus().toString();
}

void MeshAsset::onUploadComplete(ErrorCode ec)
{
    setStatus(ec);
}

void MeshAsset::setMeshData(const Mesh &mesh)
{
    meshData = mesh;
    upload();
}

void MeshAsset::setMeshData(const MeshBuilder &builder)
{
    setMeshData(builder.toMesh());
}

void MeshAsset::setMeshData(const Mesh::VertexBufferType &newVertices, const Mesh::IndexBufferType &newIndices,
                            MeshPrimitiveType newPrimType)
{
    meshData.setData(newVertices, newIndices, newPrimType);
    upload();
}

void MeshAsset::measure()
{
    const MeshBounds bounds = boundsOf(meshData.getVertexBufferData());
    boundsMin = bounds.minimum;
    boundsMax = bounds.maximum;
}

void MeshAsset::upload()
{
    measure();
    if (IAssetUploader *uploader = getAssetUploader())
        uploader->uploadMesh(::getHandle(this)).ignoreError(); // told to onUploadComplete
    else
        onUploadComplete(ErrorCode::LOST_ASSET);
}
