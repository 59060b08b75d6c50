#include "port/d3d9/DeviceWorld.h"

#include "port/d3d9/Device.h"

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <ostream>
#include <unistd.h>

void PrintTo(const Pixel &pixel, std::ostream *stream)
{
    *stream << "(" << pixel.r << ", " << pixel.g << ", " << pixel.b << ", " << pixel.a << ")";
}

D3DPRESENT_PARAMETERS DeviceWorld::parameters(UINT width, UINT height)
{
    D3DPRESENT_PARAMETERS result{};
    result.BackBufferWidth = width;
    result.BackBufferHeight = height;
    result.BackBufferFormat = D3DFMT_X8R8G8B8;
    result.BackBufferCount = 1;
    result.SwapEffect = D3DSWAPEFFECT_DISCARD;
    result.Windowed = TRUE;
    result.EnableAutoDepthStencil = TRUE;
    result.AutoDepthStencilFormat = D3DFMT_D24S8;
    result.PresentationInterval = D3DPRESENT_INTERVAL_IMMEDIATE;
    return result;
}

void DeviceWorld::SetUp()
{
    static std::atomic<int> count = 0;
    folder = std::filesystem::temp_directory_path() /
             ("device_world_" + std::to_string(getpid()) + "_" + std::to_string(++count));
    std::filesystem::create_directories(folder);
    setenv("SDL_VIDEODRIVER", "offscreen", 0);
    *direct3D.out() = Direct3DCreate9(D3D_SDK_VERSION);
    D3DPRESENT_PARAMETERS wanted = parameters(64, 64);
    ASSERT_EQ(D3D_OK, direct3D->CreateDevice(D3DADAPTER_DEFAULT, D3DDEVTYPE_HAL, nullptr,
                                             D3DCREATE_HARDWARE_VERTEXPROCESSING, &wanted, device.out()));
}

DeviceWorld::~DeviceWorld()
{
    device.reset();
    EXPECT_EQ(nullptr, port::Device::current()) << "a reference to the device or one of its resources was lost";
    std::filesystem::remove_all(folder);
}

std::string DeviceWorld::write(const std::string &name, const std::string &content)
{
    const std::filesystem::path path = folder / name;
    std::ofstream(path, std::ios::binary) << content;
    return path.string();
}

std::string DeviceWorld::write(const std::string &name, const std::vector<unsigned char> &content)
{
    return write(name, std::string(content.begin(), content.end()));
}

std::string DeviceWorld::compilerOutput(const std::string &text, HRESULT &result)
{
    const std::string file = write("test.fx", text);
    Owned<ID3DXEffect> effect;
    Owned<ID3DXBuffer> errors;
    result = D3DXCreateEffectFromFileA(device, file.c_str(), nullptr, nullptr, 0, nullptr, effect.out(), errors.out());
    if (!errors)
        return std::string();
    std::string output = static_cast<const char *>(errors->GetBufferPointer());
    EXPECT_EQ(output.size() + 1, errors->GetBufferSize());
    for (std::size_t at; (at = output.find(folder.string() + "/")) != std::string::npos;)
        output.erase(at, folder.string().size() + 1);
    return output;
}

void DeviceWorld::makeEffect(const std::string &text, Owned<ID3DXEffect> &effect)
{
    const std::string file = write("test.fx", text);
    Owned<ID3DXBuffer> errors;
    const HRESULT result =
        D3DXCreateEffectFromFileA(device, file.c_str(), nullptr, nullptr, 0, nullptr, effect.out(), errors.out());
    ASSERT_EQ(D3D_OK, result) << (errors ? static_cast<const char *>(errors->GetBufferPointer()) : "");
}

void DeviceWorld::makeIndices(const std::vector<DWORD> &list, Owned<IDirect3DIndexBuffer9> &buffer)
{
    const auto bytes = static_cast<UINT>(list.size() * sizeof(DWORD));
    ASSERT_EQ(D3D_OK, device->CreateIndexBuffer(bytes, D3DUSAGE_WRITEONLY, D3DFMT_INDEX32, D3DPOOL_MANAGED,
                                                buffer.out(), nullptr));
    void *data = nullptr;
    ASSERT_EQ(D3D_OK, buffer->Lock(0, 0, &data, 0));
    std::copy(list.begin(), list.end(), static_cast<DWORD *>(data));
    ASSERT_EQ(D3D_OK, buffer->Unlock());
}

void DeviceWorld::makeDeclaration(const std::vector<D3DVERTEXELEMENT9> &elements,
                                  Owned<IDirect3DVertexDeclaration9> &out)
{
    std::vector<D3DVERTEXELEMENT9> list = elements;
    list.push_back(D3DDECL_END());
    ASSERT_EQ(D3D_OK, device->CreateVertexDeclaration(list.data(), out.out()));
}

void DeviceWorld::draw(ID3DXEffect &effect, const char *technique, UINT triangles)
{
    ASSERT_EQ(D3D_OK, effect.SetTechnique(effect.GetTechniqueByName(technique)));
    UINT passes = 0;
    ASSERT_EQ(D3D_OK, effect.Begin(&passes, 0));
    ASSERT_GE(passes, 1u);
    ASSERT_EQ(D3D_OK, effect.BeginPass(0));
    ASSERT_EQ(D3D_OK, device->DrawPrimitive(D3DPT_TRIANGLELIST, 0, triangles));
    ASSERT_EQ(D3D_OK, effect.EndPass());
    ASSERT_EQ(D3D_OK, effect.End());
}

Pixel DeviceWorld::pixelOf(IDirect3DTexture9 *texture, int x, int y)
{
    const auto &image = *static_cast<port::Texture *>(texture);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    if (image.format().external == GL_NONE)
    {
        // Compressed pixels come in blocks only.
        std::vector<unsigned char> all(std::size_t(image.levelWidth(0)) * image.levelHeight(0) * 4);
        glGetTextureImage(image.id(), 0, GL_RGBA, GL_UNSIGNED_BYTE, static_cast<GLsizei>(all.size()), all.data());
        const unsigned char *at = &all[(std::size_t(y) * image.levelWidth(0) + std::size_t(x)) * 4];
        return {at[0], at[1], at[2], at[3]};
    }
    unsigned char bytes[4] = {};
    glGetTextureSubImage(image.id(), 0, x, y, 0, 1, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, 4, bytes);
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

Pixel DeviceWorld::pixel(int x, int y)
{
    Pixel color = pixelOf(port::Device::from(device)->getBackBufferTexture(), x, y);
    color.a = 255; // the format has none, whatever its unused byte holds
    return color;
}
