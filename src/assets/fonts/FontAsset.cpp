#include "assets/fonts/FontAsset.h"

#include "assets/cache/AssetUploader.h"
#include "assets/cache/DynamicTextureAsset.h"
#include "foundation/Logger.h"

#include <cmath>

namespace
{

std::uint64_t glyphKey(unsigned glyph, int pixelSize, int shift)
{
    return std::uint64_t(glyph) << 32 | std::uint64_t(pixelSize) << 8 | std::uint64_t(shift);
}

} // namespace

FontAsset::Shaper::Shaper(const FontFaces &faces_, int pixelSize_)
    : faces(faces_), size(static_cast<float>(pixelSize_)), ascent(std::round(faces.getOwn().getAscent() * size)),
      lineHeight(std::round(faces.getOwn().getLineHeight() * size))
{
}

void FontAsset::Shaper::shape(std::u32string_view run, std::vector<ShapedGlyph> &glyphs) const
{
    faces.shape(run, size, glyphs);
}

void FontAsset::startLoad()
{
    std::vector<std::uint8_t> contents;
    String fault = readFontFile(fileName, contents);
    if (fault.empty())
        fault = faces.load(std::move(contents));
    if (fault.empty())
    {
        texture = construct<DynamicTextureAsset>(defaultAllocationCategory);
        texture.lookup()->setParent(getHandle());
        texture.lookup()->setFileName(SCS("<dynamic>"));
        setStatus(ErrorCode::SUCCESS);
        return;
    }
    KV_LOGF(
        Logger_::I_ERROR,
        "The font %s did not load; texts that use it are not drawn. %s Put a .ttf or .otf file with outlines there.",
        fileName.toCString(), fault.toCString());
    setStatus(ErrorCode::LOST_ASSET);
}

const FontAsset::Glyph &FontAsset::getGlyph(unsigned glyph, int pixelSize, int shift)
{
    const std::uint64_t key = glyphKey(glyph, pixelSize, shift);
    const auto known = glyphs.find(key);
    if (known != glyphs.end())
        return known->second;
    const Glyph drawn = draw(glyph, pixelSize, shift);
    return glyphs.emplace(key, drawn).first->second;
}

FontAsset::Glyph FontAsset::draw(unsigned glyph, int pixelSize, int shift)
{
    faces.rasterize(glyph, pixelSize, static_cast<float>(shift) / SHIFTS, picture);
    const unsigned restarts = atlas.getRestarts();
    GlyphAtlas::Place place;
    if (picture.width == 0 || !atlas.add(picture.width, picture.height, picture.rows.data(), place))
        return Glyph();
    if (atlas.getRestarts() != restarts)
        glyphs.clear(); // none of them is there any longer
    return {place, picture.width, picture.height, picture.left, picture.top};
}

void FontAsset::updateTexture()
{
    const PixelRectangle changed = atlas.takeChanges();
    const auto asset = texture.lookup();
    if (asset && !changed.isEmpty())
        asset->setCoverage({atlas.getWidth(), atlas.getHeight(), atlas.getRows().data(), changed});
}

Handle<TextureAsset> FontAsset::getTexture() const
{
    return texture;
}
