#include "port/d3d9/DeviceWorld.h"
#include "port/d3d9/Device.h"
#include "port/d3dx9/ImageFile.h"
#include "port/d3dx9/d3dx9tex.h"

#include <cstdint>
#include <cstring>
#include <stb/stb_image_write.h>

namespace
{

using Bytes = std::vector<unsigned char>;

void append(Bytes &bytes, std::uint32_t word)
{
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<unsigned char>(word >> shift));
}

struct DdsFormat
{
    std::uint32_t flags, fourCC, bits, r, g, b, a;
};
constexpr DdsFormat dxt1{4, 0x31545844, 0, 0, 0, 0, 0};
constexpr DdsFormat dxt3{4, 0x33545844, 0, 0, 0, 0, 0};
constexpr DdsFormat dxt5{4, 0x35545844, 0, 0, 0, 0, 0};
constexpr DdsFormat argb{0x41, 0, 32, 0xff0000, 0xff00, 0xff, 0xff000000};

Bytes dds(std::uint32_t width, std::uint32_t height, std::uint32_t levels, const DdsFormat &format, const Bytes &pixels)
{
    Bytes bytes = {'D', 'D', 'S', ' '};
    for (std::uint32_t word : {124u, 0x21007u, height, width, 0u, 0u, levels})
        append(bytes, word);
    for (int word = 0; word < 11; ++word)
        append(bytes, 0);
    for (std::uint32_t word : {32u, format.flags, format.fourCC, format.bits, format.r, format.g, format.b, format.a,
                               0x1000u, 0u, 0u, 0u, 0u})
        append(bytes, word);
    bytes.insert(bytes.end(), pixels.begin(), pixels.end());
    return bytes;
}

/// A block whose first row runs from white over two steps to black, and whose other rows are white.
const Bytes colorBlock = {0xff, 0xff, 0x00, 0x00, 0x78, 0x00, 0x00, 0x00};

class TextureFile : public DeviceWorld
{
protected:
    HRESULT load(const std::string &file) { return D3DXCreateTextureFromFileA(device, file.c_str(), texture.out()); }
    Owned<IDirect3DTexture9> texture;
};

} // namespace

TEST_F(TextureFile, PngArrivesWithAlphaAndAllSmallerLevels)
{
    unsigned char pixels[8 * 4 * 4];
    for (int pixel = 0; pixel < 32; ++pixel)
    {
        const unsigned char color[] = {static_cast<unsigned char>(pixel * 8), 100, 50,
                                       static_cast<unsigned char>(255 - pixel)};
        std::memcpy(pixels + pixel * 4, color, 4);
    }
    const std::string file = (folder / "image.png").string();
    ASSERT_TRUE(stbi_write_png(file.c_str(), 8, 4, 4, pixels, 32));
    ASSERT_EQ(D3D_OK, load(file));
    EXPECT_EQ(4u, texture->GetLevelCount());
    EXPECT_EQ((Pixel{0, 100, 50, 255}), pixelOf(texture, 0, 0));
    EXPECT_EQ((Pixel{248, 100, 50, 224}), pixelOf(texture, 7, 3));
}

TEST_F(TextureFile, DdsBringsItsOwnLevels)
{
    Bytes pixels;
    for (int pixel = 0; pixel < 4; ++pixel)
        append(pixels, 0x80102030u + static_cast<std::uint32_t>(pixel));
    append(pixels, 0xff0000ffu);
    ASSERT_EQ(D3D_OK, load(write("levels.dds", dds(2, 2, 2, argb, pixels))));
    ASSERT_EQ(2u, texture->GetLevelCount());
    EXPECT_EQ((Pixel{0x10, 0x20, 0x33, 0x80}), pixelOf(texture, 1, 1));
    D3DLOCKED_RECT locked;
    ASSERT_EQ(D3D_OK, texture->LockRect(1, &locked, nullptr, D3DLOCK_READONLY));
    EXPECT_EQ(0, std::memcmp(locked.pBits, "\xff\x00\x00\xff", 4));
    EXPECT_EQ(D3D_OK, texture->UnlockRect(1));
}

TEST_F(TextureFile, CompressedDdsStaysCompressedWhereHardwareReadsIt)
{
    ASSERT_EQ(D3D_OK, load(write("block.dds", dds(4, 4, 1, dxt1, colorBlock))));
    D3DSURFACE_DESC description;
    texture->GetLevelDesc(0, &description);
    const bool kept = port::Device::current()->samplesCompressedWell();
    EXPECT_EQ(kept ? D3DFMT_DXT1 : D3DFMT_A8B8G8R8, description.Format);
    EXPECT_EQ((Pixel{255, 255, 255, 255}), pixelOf(texture, 0, 0));
    EXPECT_EQ((Pixel{0, 0, 0, 255}), pixelOf(texture, 3, 0));
}

TEST_F(TextureFile, OwnDecompressionAgreesWithTheDriver)
{
    Bytes smoothAlpha = {200, 40, 0x88, 0xc6, 0xfa, 0x88, 0xc6, 0xfa},
          flatAlpha = {0x10, 0x32, 0x54, 0x76, 0x98, 0xba, 0xdc, 0xfe};
    const Bytes hole = {0x00, 0x00, 0xff, 0xff, 0xe4, 0x1b, 0xe4, 0x1b}; // three colours and a hole
    const auto with = [](Bytes alpha, const Bytes &color)
    {
        alpha.insert(alpha.end(), color.begin(), color.end());
        return alpha;
    };
    const struct
    {
        DdsFormat format;
        Bytes block;
    } cases[] = {{dxt1, colorBlock},
                 {dxt1, hole},
                 {dxt3, with(flatAlpha, colorBlock)},
                 {dxt5, with(smoothAlpha, colorBlock)},
                 {dxt5, with({40, 200, 0x88, 0xc6, 0xfa, 0x88, 0xc6, 0xfa}, hole)}};
    for (const auto &entry : cases)
    {
        const Bytes file = dds(4, 4, 1, entry.format, entry.block);
        std::vector<std::byte> bytes(file.size());
        std::memcpy(bytes.data(), file.data(), file.size());
        const port::Image image = port::readImage(bytes), own = port::decompress(image);
        ASSERT_EQ(D3D_OK, D3DXCreateTexture(device, 4, 4, 1, 0, image.format, D3DPOOL_MANAGED, texture.out()));
        D3DLOCKED_RECT locked;
        ASSERT_EQ(D3D_OK, texture->LockRect(0, &locked, nullptr, 0));
        EXPECT_EQ(static_cast<INT>(entry.block.size()), locked.Pitch);
        std::memcpy(locked.pBits, entry.block.data(), entry.block.size());
        ASSERT_EQ(D3D_OK, texture->UnlockRect(0));
        for (int pixel = 0; pixel < 16; ++pixel)
        {
            const Pixel driver = pixelOf(texture, pixel % 4, pixel / 4);
            const auto *mine = reinterpret_cast<const unsigned char *>(own.levels[0].data()) + pixel * 4;
            EXPECT_NEAR(driver.r, mine[0], 2) << pixel;
            EXPECT_NEAR(driver.b, mine[2], 2) << pixel;
            EXPECT_NEAR(driver.a, mine[3], 2) << pixel;
        }
    }
}

TEST_F(TextureFile, BrokenFilesAreRefusedWithTheirCause)
{
    Bytes broken = dds(2, 2, 1, argb, Bytes(16));
    broken[12] = 0; // the height
    const DdsFormat odd{0x40, 0, 32, 0xff, 0xff0000, 0xff00, 0};
    const struct
    {
        Bytes content;
        const char *cause;
    } cases[] = {
        {Bytes{}, "not a readable DDS, PNG, TGA, JPEG or BMP image"},
        {Bytes{'n', 'o'}, "not a readable DDS, PNG, TGA, JPEG or BMP image"},
        {Bytes{'D', 'D', 'S', ' ', 1}, "ends inside its header"},
        {broken, "header is broken"},
        {dds(2, 2, 1, argb, Bytes(15)), "level 0 of 1 wants 16 bytes, and 15 are left"},
        {dds(8, 8, 4, dxt1, Bytes(40)), "level 2 of 4 wants 8 bytes, and 0 are left"},
        {dds(1u << 30, 1u << 30, 1, argb, Bytes(16)), "header is broken"},
        {dds(2, 2, 1, DdsFormat{4, 0x30315844, 0, 0, 0, 0, 0}, Bytes(16)), "extended header"},
        {dds(2, 2, 1, odd, Bytes(16)), "32-bit pixels are in no supported order"},
    };
    for (const auto &entry : cases)
    {
        EXPECT_EQ(D3DXERR_INVALIDDATA, load(write("broken.dds", entry.content))) << entry.cause;
        EXPECT_EQ(nullptr, texture.get());
        EXPECT_NE(std::string::npos, port::lastTextureError().find("broken.dds: ")) << port::lastTextureError();
        EXPECT_NE(std::string::npos, port::lastTextureError().find(entry.cause)) << port::lastTextureError();
    }
}

TEST_F(TextureFile, MissingFileNamesTheOneThatDiffersInLetterCase)
{
    write("Wall.png", std::string("x"));
    EXPECT_EQ(D3DERR_NOTFOUND, load((folder / "wall.png").string()));
    EXPECT_NE(std::string::npos, port::lastTextureError().find("Wall.png")) << port::lastTextureError();
    EXPECT_EQ(D3DERR_NOTFOUND, load((folder / "none" / "wall.png").string()));
    EXPECT_NE(std::string::npos, port::lastTextureError().find("none")) << port::lastTextureError();
}
