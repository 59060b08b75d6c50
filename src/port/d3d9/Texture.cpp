#include "port/d3d9/Texture.h"

#include "port/d3d9/Device.h"

#include <algorithm>

namespace port
{

ULONG Surface::AddRef()
{
    return texture.addUser();
}

ULONG Surface::Release()
{
    return texture.removeUser();
}

HRESULT Surface::SetPrivateData(const GUID &identifier, const void *data, DWORD size, DWORD)
{
    return texture.setPrivateData(identifier, data, size);
}

HRESULT Surface::GetDesc(D3DSURFACE_DESC *description)
{
    return texture.GetLevelDesc(level, description);
}

void Surface::hold()
{
    texture.hold();
}

void Surface::letGo()
{
    texture.letGo();
}

D3DVIEWPORT9 Surface::whole() const
{
    return {0, 0, texture.levelWidth(level), texture.levelHeight(level), 0.0f, 1.0f};
}

Texture *Texture::create(Device &device, const TextureDescription &description, D3DFORMAT format)
{
    const FormatInfo *info = findFormat(format);
    if (!info || description.width == 0 || description.height == 0)
        return nullptr;
    while (glGetError() != GL_NO_ERROR)
    {
    }
    auto *created = new Texture(device, description, *info);
    if (glGetError() == GL_NO_ERROR)
        return created;
    delete created;
    return nullptr;
}

Texture::Texture(Device &device, const TextureDescription &wanted, const FormatInfo &format)
    : ResourceOf(device, format.depth ? "depth-stencil surface" : "texture", wanted.pool), formatInfo(format),
      description(wanted)
{
    const UINT full = fullLevelCount(wanted.width, wanted.height);
    description.levels = wanted.levels == 0 ? full : std::min(wanted.levels, full);
    glCreateTextures(GL_TEXTURE_2D, 1, &texture);
    glTextureStorage2D(texture, static_cast<GLsizei>(description.levels), format.internalFormat,
                       static_cast<GLsizei>(wanted.width), static_cast<GLsizei>(wanted.height));
    if (!format.depth)
        glTextureParameteriv(texture, GL_TEXTURE_SWIZZLE_RGBA, format.swizzle);
    for (UINT level = 0; level < description.levels; ++level)
        surfaces.emplace_back(*this, level);
}

Texture::~Texture()
{
    device.forget(*this);
    glDeleteTextures(1, &texture);
}

UINT Texture::levelWidth(UINT level) const
{
    return std::max(1u, description.width >> level);
}

UINT Texture::levelHeight(UINT level) const
{
    return std::max(1u, description.height >> level);
}

HRESULT Texture::GetLevelDesc(UINT level, D3DSURFACE_DESC *out)
{
    if (!out || level >= surfaces.size())
        return D3DERR_INVALIDCALL;
    *out = {formatInfo.format, D3DRTYPE_SURFACE,  description.usage, description.pool, D3DMULTISAMPLE_NONE, 0,
            levelWidth(level), levelHeight(level)};
    return D3D_OK;
}

HRESULT Texture::GetSurfaceLevel(UINT level, IDirect3DSurface9 **surface)
{
    if (!surface || level >= surfaces.size())
        return D3DERR_INVALIDCALL;
    *surface = &surfaces[level];
    (*surface)->AddRef();
    return D3D_OK;
}

bool Texture::isLockable(UINT level, const RECT &region) const
{
    const bool reachable = description.pool != D3DPOOL_DEFAULT || (description.usage & D3DUSAGE_DYNAMIC);
    if (!reachable || formatInfo.depth || lockedLevel >= 0)
        return false;
    const auto width = static_cast<LONG>(levelWidth(level)), height = static_cast<LONG>(levelHeight(level));
    const auto block = static_cast<LONG>(formatInfo.blockSize);
    const bool inside = region.left >= 0 && region.top >= 0 && region.left < region.right &&
                        region.top < region.bottom && region.right <= width && region.bottom <= height;
    const bool aligned = region.left % block == 0 && region.top % block == 0 &&
                         (region.right % block == 0 || region.right == width) &&
                         (region.bottom % block == 0 || region.bottom == height);
    return inside && aligned;
}

HRESULT Texture::LockRect(UINT level, D3DLOCKED_RECT *locked, const RECT *rect, DWORD flags)
{
    if (!locked || level >= surfaces.size())
        return D3DERR_INVALIDCALL;
    const RECT whole{0, 0, static_cast<LONG>(levelWidth(level)), static_cast<LONG>(levelHeight(level))};
    const RECT region = rect ? *rect : whole;
    if (!isLockable(level, region))
        return D3DERR_INVALIDCALL;

    const auto width = static_cast<unsigned>(region.right - region.left);
    const auto height = static_cast<unsigned>(region.bottom - region.top);
    const std::size_t pitch = rowBytes(formatInfo, width);
    lockedBytes.resize(pitch * rowCount(formatInfo, height));
    lockedLevel = static_cast<int>(level);
    lockedRegion = region;
    lockedForReading = flags & D3DLOCK_READONLY;
    if (!(flags & D3DLOCK_DISCARD))
    {
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        const auto size = static_cast<GLsizei>(lockedBytes.size());
        if (formatInfo.external == GL_NONE)
            glGetCompressedTextureSubImage(texture, lockedLevel, region.left, region.top, 0,
                                           static_cast<GLsizei>(width), static_cast<GLsizei>(height), 1, size,
                                           lockedBytes.data());
        else
            glGetTextureSubImage(texture, lockedLevel, region.left, region.top, 0, static_cast<GLsizei>(width),
                                 static_cast<GLsizei>(height), 1, formatInfo.external, formatInfo.type, size,
                                 lockedBytes.data());
    }
    *locked = {static_cast<INT>(pitch), lockedBytes.data()};
    return D3D_OK;
}

HRESULT Texture::UnlockRect(UINT level)
{
    if (lockedLevel != static_cast<int>(level))
        return D3DERR_INVALIDCALL;
    lockedLevel = -1;
    if (!lockedForReading)
    {
        const auto width = static_cast<unsigned>(lockedRegion.right - lockedRegion.left);
        uploadRegion(level, lockedRegion, lockedBytes.data(), rowBytes(formatInfo, width));
    }
    lockedBytes = {};
    return D3D_OK;
}

void Texture::uploadLevel(UINT level, const void *rows)
{
    const RECT whole{0, 0, static_cast<LONG>(levelWidth(level)), static_cast<LONG>(levelHeight(level))};
    uploadRegion(level, whole, rows, rowBytes(formatInfo, levelWidth(level)));
}

void Texture::uploadRegion(UINT level, const RECT &region, const void *rows, std::size_t pitch)
{
    const GLsizei width = region.right - region.left, height = region.bottom - region.top;
    const std::size_t bytes = pitch * rowCount(formatInfo, static_cast<unsigned>(height));
    const auto target = static_cast<GLint>(level);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    if (formatInfo.external == GL_NONE)
        glCompressedTextureSubImage2D(texture, target, region.left, region.top, width, height,
                                      formatInfo.internalFormat, static_cast<GLsizei>(bytes), rows);
    else
        glTextureSubImage2D(texture, target, region.left, region.top, width, height, formatInfo.external,
                            formatInfo.type, rows);
    device.countUpload(bytes);
}

void Texture::generateLevels()
{
    if (surfaces.size() > 1)
        glGenerateTextureMipmap(texture);
}

void Texture::onNamed()
{
    glObjectLabel(GL_TEXTURE, texture, static_cast<GLsizei>(name.size()), name.data());
}

std::string Texture::describe() const
{
    return Resource::describe() + " of " + std::to_string(description.width) + " x " +
           std::to_string(description.height) + ", " + formatInfo.name;
}

} // namespace port
