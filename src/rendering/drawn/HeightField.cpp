#include "rendering/drawn/HeightField.h"

#include "rendering/device/GraphicsSystem2.h"

#include "assets/building/MeshBuilder.h"
#include "assets/files/ContentOverrides.h"

#include "foundation/precompile.h"
#include "port/d3d9/d3d9.h"
#include "port/d3dx9/d3dx9tex.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>

namespace
{

/// Where a place of 0..1 lies among points: the one before it, and the way to the next.
struct GridPlace
{
    int before;
    float part;

    GridPlace(float place, int points)
    {
        const float cells = static_cast<float>(points - 1);
        const float at = place > 0 ? std::min(place, 1.0f) * cells : 0.0f; // what is no number goes to 0
        before = std::min(static_cast<int>(at), std::max(points - 2, 0));
        part = at - static_cast<float>(before);
    }
};

float shareOf(int point, int points)
{
    return static_cast<float>(point) / static_cast<float>(points - 1);
}

MeshVector3 normalized(const MeshVector3 &v)
{
    return v / std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

/// Height that a texel stands for; false for a format whose texels are none.
bool readTexel(D3DFORMAT format, const unsigned char *row, unsigned column, float &height)
{
    switch (format)
    {
    case D3DFMT_A8R8G8B8:
    case D3DFMT_X8R8G8B8:
    case D3DFMT_A8B8G8R8:
    case D3DFMT_X8B8G8R8:
        height = static_cast<float>(row[column * 4] + row[column * 4 + 1] + row[column * 4 + 2]) / 765.0f;
        return true;
    case D3DFMT_L8:
        height = static_cast<float>(row[column]) / 255.0f;
        return true;
    case D3DFMT_R32F:
        std::memcpy(&height, row + column * sizeof(float), sizeof(float));
        return std::isfinite(height);
    default:
        return false;
    }
}

bool readTexels(IDirect3DTexture9 &texture, const D3DSURFACE_DESC &size, std::vector<float> &heights)
{
    D3DLOCKED_RECT locked = {};
    if (FAILED(texture.LockRect(0, &locked, nullptr, D3DLOCK_READONLY)))
        return false;
    heights.resize(static_cast<std::size_t>(size.Width) * size.Height);
    bool readable = true;
    for (unsigned y = 0; y < size.Height && readable; ++y)
    {
        const auto *row =
            static_cast<const unsigned char *>(locked.pBits) + static_cast<std::ptrdiff_t>(y) * locked.Pitch;
        for (unsigned x = 0; x < size.Width && readable; ++x)
            readable = readTexel(size.Format, row, x, heights[static_cast<std::size_t>(y) * size.Width + x]);
    }
    texture.UnlockRect(0);
    return readable;
}

} // namespace

void HeightField::reset(int columns_, int rows_)
{
    columns = std::clamp(columns_, leastPoints, mostPoints);
    rows = std::clamp(rows_, leastPoints, mostPoints);
    heights.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), 0.0f);
}

void HeightField::assign(const std::vector<float> &samples, int columns_, int rows_)
{
    reset(columns_, rows_);
    if (columns_ < 1 || rows_ < 1 ||
        samples.size() < static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_))
        return;
    const auto sample = [&](int column, int row)
    {
        return samples[static_cast<std::size_t>(std::min(row, rows_ - 1)) * static_cast<std::size_t>(columns_) +
                       static_cast<std::size_t>(std::min(column, columns_ - 1))];
    };
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
        {
            const GridPlace x(shareOf(column, columns), columns_), y(shareOf(row, rows), rows_);
            const float upper = lerp(sample(x.before, y.before), sample(x.before + 1, y.before), x.part);
            const float lower = lerp(sample(x.before, y.before + 1), sample(x.before + 1, y.before + 1), x.part);
            set(column, row, lerp(upper, lower, y.part));
        }
}

void HeightField::set(int column, int row, float height)
{
    if (column >= 0 && column < columns && row >= 0 && row < rows && std::isfinite(height))
        heights[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) + static_cast<std::size_t>(column)] =
            height;
}

float HeightField::get(int column, int row) const
{
    return heights[static_cast<std::size_t>(std::clamp(row, 0, rows - 1)) * static_cast<std::size_t>(columns) +
                   static_cast<std::size_t>(std::clamp(column, 0, columns - 1))];
}

float HeightField::heightAt(float x, float z) const
{
    const GridPlace u(x + 0.5f, columns), v(0.5f - z, rows);
    const float topLeft = get(u.before, v.before), bottomRight = get(u.before + 1, v.before + 1);
    if (u.part >= v.part)
    {
        const float topRight = get(u.before + 1, v.before);
        return topLeft + (topRight - topLeft) * u.part + (bottomRight - topRight) * v.part;
    }
    const float bottomLeft = get(u.before, v.before + 1);
    return topLeft + (bottomLeft - topLeft) * v.part + (bottomRight - bottomLeft) * u.part;
}

void HeightField::buildMesh(MeshBuilder &builder, float repeat) const
{
    const auto first = static_cast<MeshBuilder::Index>(builder.getVertices().size());
    const auto wide = static_cast<MeshBuilder::Index>(columns);
    builder.reserve(heights.size(), heights.size() * 2);
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
        {
            const float u = shareOf(column, columns), v = shareOf(row, rows);
            // Slopes between the neighbours on both sides; at the rim there is only one.
            const float across = shareOf(std::min(column + 1, columns - 1) - std::max(column - 1, 0), columns);
            const float along = shareOf(std::min(row + 1, rows - 1) - std::max(row - 1, 0), rows);
            const float slopeX = (get(column + 1, row) - get(column - 1, row)) / across;
            const float slopeV = (get(column, row + 1) - get(column, row - 1)) / along;
            builder.addVertex({{u - 0.5f, get(column, row), 0.5f - v},
                               normalized({-slopeX, 1, slopeV}),
                               normalized({1, slopeX, 0}),
                               normalized({0, slopeV, -1}),
                               {u * repeat, v * repeat}});
        }
    for (MeshBuilder::Index row = 0; row + 1 < static_cast<MeshBuilder::Index>(rows); ++row)
        for (MeshBuilder::Index column = 0; column + 1 < wide; ++column)
        {
            const MeshBuilder::Index topLeft = first + row * wide + column, bottomLeft = topLeft + wide;
            builder.addQuad(topLeft, topLeft + 1, bottomLeft + 1, bottomLeft);
        }
}

bool readHeightImage(const String &fileName, HeightField &field, String &cause)
{
    const String path = contentFile(SCS("textures/") + fileName);
    IDirect3DTexture9 *loaded = nullptr;
    if (FAILED(D3DXCreateTextureFromFileA(getSystemDeref<GraphicsSystem2>().getDevice(), path.toCString(), &loaded)))
    {
        cause = String::copyFromCString(port::lastTextureError().c_str()) +
                SCS(" (name an image of the texture folder that can be read)");
        return false;
    }
    const std::unique_ptr<IDirect3DTexture9, void (*)(IDirect3DTexture9 *)> texture(loaded, [](IDirect3DTexture9 *t)
                                                                                    { t->Release(); });
    D3DSURFACE_DESC size = {};
    std::vector<float> heights;
    if (FAILED(texture->GetLevelDesc(0, &size)) || !readTexels(*texture, size, heights))
    {
        cause = path + SCS(": its pixels tell no heights (compressed, or not numbers). Save it as PNG, or as DDS with "
                           "32-bit colours or 32-bit floats.");
        return false;
    }
    field.assign(heights, static_cast<int>(size.Width), static_cast<int>(size.Height));
    return true;
}
