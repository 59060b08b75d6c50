// MeshAsset: a mesh that the graphics device has taken in, from a model file or from code.
#pragma once

#include "assets/cache/Asset.h"
#include "assets/models/Mesh.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

class MeshBuilder;

/// The first mesh of a model file, in memory and on the device.
class MeshAsset : public Asset
{
    KV_REFLECTED(MeshAsset)
public:
    /// Reads the file and uploads its first mesh.
    ///
    /// A file that does not load gives the status NOT_IMPLEMENTED; its reason is on the standard error stream and in
    /// the log. A failed upload's code becomes the status.
    virtual void startLoad();

    bool comesFrom(const String &file) const override;
    /// Takes the first mesh of the file anew; one that is cut short, holds none or cannot be drawn is refused.
    String reload() override;

    /// Called by the graphics system with the result of the upload.
    void onUploadComplete(ErrorCode ec);

    /// Replaces the data and uploads it: from a script, what its `MeshBuilder` has gathered so far.
    void setMeshData(const MeshBuilder &builder);
    void setMeshData(const Mesh &mesh);
    void setMeshData(const Mesh::VertexBufferType &newVertices,
                     const Mesh::IndexBufferType &newIndices = Mesh::IndexBufferType(),
                     MeshPrimitiveType newPrimType = MPT_TRIANGLES);

    const Mesh &getMeshData() const { return meshData; }

    /// Least x, y and z of the vertices, model space, w 1; the origin for a mesh without any.
    Vec4 getBoundsMin() const { return boundsMin; }
    /// Greatest x, y and z of the vertices, model space, w 1; the origin for a mesh without any.
    Vec4 getBoundsMax() const { return boundsMax; }

    /// Path of the file, as "..\assets\models\chair.kaVelModel"; "<dynamic>" for a mesh made by code.
    String getFileName() const { return fileName; }
    void setFileName(const String &val) { fileName = val; }

private:
    void measure();
    void upload();

    String fileName;
    Mesh meshData;
    Vec4 boundsMin = Vec4(0.f, 0.f, 0.f, 1.f); ///< model space, metres
    Vec4 boundsMax = Vec4(0.f, 0.f, 0.f, 1.f); ///< model space, metres
};
