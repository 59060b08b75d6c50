#include "port/d3d9/DebugText.h"
#include "port/d3d9/Device.h"
#include "port/d3dx9/ImageFile.h"
#include "port/d3dx9/d3dx9tex.h"
#include "port/win32/HostPath.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{

std::string &textureError()
{
    static std::string text;
    return text;
}

HRESULT failWith(HRESULT result, const std::string &path, const std::string &cause)
{
    textureError() = path + ": " + cause;
    return result;
}

bool readFile(const std::string &path, std::vector<std::byte> &bytes)
{
    // A folder opens like a file, and tells a length without end.
    std::error_code unreadable;
    if (!std::filesystem::is_regular_file(path, unreadable))
        return false;
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file || file.tellg() < 0)
        return false;
    bytes.resize(static_cast<std::size_t>(file.tellg()));
    file.seekg(0);
    file.read(reinterpret_cast<char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.good();
}

bool isCompressed(D3DFORMAT format)
{
    const port::FormatInfo *info = port::findFormat(format);
    return info && info->external == GL_NONE;
}

/// The levels to make: those the file brings, or all of them where the rest can be made from the first.
UINT levelsFor(const port::Image &image)
{
    const auto brought = static_cast<UINT>(image.levels.size());
    return brought == 1 && !isCompressed(image.format) ? 0 : brought;
}

} // namespace

const std::string &port::lastTextureError()
{
    return textureError();
}

HRESULT D3DXCreateTexture(IDirect3DDevice9 *device, UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format,
                          D3DPOOL pool, IDirect3DTexture9 **texture)
{
    if (!device || !texture)
        return D3DERR_INVALIDCALL;
    return device->CreateTexture(width, height, levels == D3DX_DEFAULT ? 0 : levels, usage, format, pool, texture,
                                 nullptr);
}

HRESULT D3DXCreateTextureFromFileA(IDirect3DDevice9 *device, LPCSTR file, IDirect3DTexture9 **texture)
{
    port::Device *ours = port::Device::from(device);
    if (!ours || !file || !texture)
        return failWith(D3DERR_INVALIDCALL, file ? file : "(no file)", "called without a device, file or result");
    const std::string path = port::hostPath(file);
    std::vector<std::byte> bytes;
    if (!readFile(path, bytes))
    {
        const std::string cause = port::explainMissingFile(path.c_str());
        return failWith(D3DERR_NOTFOUND, path, cause.empty() ? "the file cannot be read" : cause);
    }
    try
    {
        port::Image image = port::readImage(bytes);
        if (isCompressed(image.format) && !ours->samplesCompressedWell())
            image = port::decompress(image);
        const port::TextureDescription description{image.width, image.height, levelsFor(image), 0, D3DPOOL_MANAGED};
        port::Texture *created = port::Texture::create(*ours, description, image.format);
        if (!created)
            return failWith(D3DERR_OUTOFVIDEOMEMORY, path,
                            "no graphics memory for its " + std::to_string(image.width) + " x " +
                                std::to_string(image.height) + " pixels");
        created->AddRef();
        for (UINT level = 0; level < image.levels.size(); ++level)
            created->uploadLevel(level, image.levels[level].data());
        if (description.levels == 0)
            created->generateLevels();
        const std::string name = path.substr(path.rfind('/') + 1);
        created->setPrivateData(WKPDID_D3DDebugObjectName, name.data(), static_cast<DWORD>(name.size()));
        *texture = created;
        return D3D_OK;
    }
    catch (const port::ImageError &error)
    {
        return failWith(D3DXERR_INVALIDDATA, path, error.what());
    }
}
