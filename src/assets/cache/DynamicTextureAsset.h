// DynamicTextureAsset: a texture made and remade by code.
#pragma once

#include "assets/cache/TextureAsset.h"

struct CoverageImage;

/// A texture without a file: of one grey, mostly white, with an alpha that code fills in, as often as needed.
///
/// Its owner murders it.
///
/// The device's copy survives a loss of the device.
class DynamicTextureAsset : public TextureAsset
{
    KV_REFLECTED(DynamicTextureAsset)
public:
    DynamicTextureAsset() = default;

    /// Reads nothing: the asset stays not ready until setCoverage.
    void startLoad() override {}

    /// Brings the changed part of an image to the device; all of it the first time and after a change of size.
    void setCoverage(const CoverageImage &image);
};
