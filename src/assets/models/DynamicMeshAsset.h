// DynamicMeshAsset: a mesh made and remade by code.
#pragma once

#include "assets/models/MeshAsset.h"

/// A mesh without a file: setMeshData fills it, as often as needed. Never shared: its owner takes it as a child, or
/// murders it.
class DynamicMeshAsset : public MeshAsset
{
    KV_REFLECTED(DynamicMeshAsset)
public:
    /// Reads nothing: the asset stays not ready until setMeshData.
    void startLoad() override;
};
