#include "rendering/drawn/TextGeometry.h"

#include "assets/fonts/FontAsset.h"

#include <algorithm>
#include <cmath>

namespace
{

/// What the device draws at a whole number is a pixel's middle; edges lie half a pixel beside.
constexpr float HALF_PIXEL = 0.5f;

} // namespace

void TextGeometry::clear()
{
    vertices.clear();
    indices.clear();
}

void TextGeometry::addText(const TextBlock &block, FontAsset &font, int pixelSize, float left, float top,
                           const Vec4 &color)
{
    if (!std::isfinite(left) || !std::isfinite(top))
        return;
    const Vec4 tint(std::max(color.x, 0.0f), std::max(color.y, 0.0f), std::max(color.z, 0.0f), color.w);
    for (const TextBlock::Line &line : block.getLines())
        for (std::size_t i = line.first; i < line.end; ++i)
        {
            const TextBlock::Glyph &placed = block.getGlyphs()[i];
            if (!TextBlock::isSpace(placed.character))
                addGlyph(placed, font, pixelSize, left + placed.x, top - line.baseline, tint);
        }
}

void TextGeometry::addGlyph(const TextBlock::Glyph &placed, FontAsset &font, int pixelSize, float penX, float penY,
                            const Vec4 &tint)
{
    const float steps = std::floor(penX * FontAsset::SHIFTS + 0.5f);
    const float column = std::floor(steps / FontAsset::SHIFTS);
    const int shift = static_cast<int>(steps - column * FontAsset::SHIFTS);
    const FontAsset::Glyph &glyph = font.getGlyph(placed.glyph, pixelSize, shift);
    if (glyph.width == 0)
        return;
    const float x = column + static_cast<float>(glyph.left);
    const float y = std::floor(penY + placed.rise + 0.5f) + static_cast<float>(glyph.top);
    const auto width = static_cast<float>(glyph.width), height = static_cast<float>(glyph.height);
    const float perColumn = 1.0f / static_cast<float>(font.getAtlas().getWidth());
    const float perRow = 1.0f / static_cast<float>(font.getAtlas().getHeight());
    const auto u = static_cast<float>(glyph.place.x), v = static_cast<float>(glyph.place.y);
    addQuad({x, y, x + width, y - height}, {u * perColumn, v * perRow, (u + width) * perColumn, (v + height) * perRow},
            tint);
}

void TextGeometry::addQuad(const Rectangle &place, const Rectangle &image, const Vec4 &color)
{
    const auto first = static_cast<std::uint32_t>(vertices.size());
    const auto corner = [&](float x, float y, float u, float v)
    {
        vertices.push_back({{x - HALF_PIXEL, y + HALF_PIXEL, 0.0f},
                            {color.x, color.y, color.z},
                            {color.w, 0.0f, 0.0f},
                            {0.0f, 0.0f, 0.0f},
                            {u, v}});
    };
    corner(place.left, place.top, image.left, image.top);
    corner(place.right, place.top, image.right, image.top);
    corner(place.right, place.bottom, image.right, image.bottom);
    corner(place.left, place.bottom, image.left, image.bottom);
    for (const std::uint32_t offset : {0u, 1u, 2u, 0u, 2u, 3u})
        indices.push_back(first + offset);
}
