#include "assets/fonts/FontAssetLoader.h"

#include "assets/files/ContentOverrides.h"
#include "assets/fonts/FontAsset.h"
#include "assets/fonts/FontFaces.h"

#include "foundation/Logger.h"

namespace
{
/// Whether a file that stands in for a font is one; told where it is none.
bool isFont(const String &file)
{
    std::vector<std::uint8_t> contents;
    String fault = readFontFile(file, contents);
    if (fault.empty())
        fault = FontFaces().load(std::move(contents));
    if (!fault.empty())
        KV_LOGF(Logger_::I_ERROR, "The font %s is left out: %s", file.toCString(), fault.toCString());
    return fault.empty();
}
} // namespace

Handle<Asset> FontAssetLoader::startLoad(String assetName, ReflectorPtr callback, RequestHandle h)
{
    const Handle<FontAsset> hAsset = construct<FontAsset>(defaultAllocationCategory);
    const auto asset = hAsset.lookup();
    asset->setName(assetName);
    asset->setParent(getHandle());
    const String name = SCS("fonts/") + assetName;
    if (!overridingFile(name).empty() && !isFont(overridingFile(name)))
        overrideContent(name, String()); // which leaves the game's own
    asset->setFileName(contentFile(name));
    asset->addListener(callback, h);
    asset->startLoad();
    return hAsset;
}
