// AssetMemory: how much of the device's memory an asset takes.
#pragma once

#include "object/tree/Handle.h"

class Asset;

/// Bytes that an asset takes on the device: all levels of a texture, the buffers of a mesh.
///
/// 0 for one that has not been uploaded, for an asset of another kind and for none.
int memoryOf(Handle<Asset> asset);
