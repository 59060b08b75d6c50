// ShaderAsset: the place of effects among the assets.
#pragma once

#include "assets/cache/Asset.h"

#include "foundation/KVString.h"

/// An effect file by name. Effects are compiled by ShaderBank at start; no loader makes assets of them.
class ShaderAsset : public Asset
{
    KV_REFLECTED(ShaderAsset)
public:
    /// Path of the effect file.
    String getFileName() const { return fileName; }
    void setFileName(const String &val) { fileName = val; }

private:
    String fileName;
};
