#include "fuzz/DamageAll.h"
#include "support/TemporaryFile.h"

#include "assets/building/MeshBuilder.h"
#include "assets/models/ModelFile.h"
#include "port/d3d9/Formats.h"
#include "port/d3dx9/ImageFile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <iostream>
#include <sstream>
#include <stb/stb_image_write.h>

namespace
{

/// Catches what is written to the standard error stream.
class Complaints
{
public:
    Complaints() : before(std::cerr.rdbuf(text.rdbuf())) {}
    ~Complaints() { std::cerr.rdbuf(before); }

    std::string take()
    {
        std::string taken = text.str();
        text.str("");
        return taken;
    }

private:
    std::ostringstream text;
    std::streambuf *before;
};

void takeBytes(void *into, void *data, int size)
{
    const auto *first = static_cast<const unsigned char *>(data);
    static_cast<Bytes *>(into)->insert(static_cast<Bytes *>(into)->end(), first, first + size);
}

Bytes ddsFile(std::uint32_t flags, const char *fourCC, std::uint32_t bits, std::size_t pixelBytes)
{
    std::uint32_t code = 0;
    std::memcpy(&code, fourCC, std::strlen(fourCC));
    const std::uint32_t words[32] = {0x20534444, 124,  0x21007, 16,       16,     0,    0,          5,     0, 0,
                                     0,          0,    0,       0,        0,      0,    0,          0,     0, 32,
                                     flags,      code, bits,    0xff0000, 0xff00, 0xff, 0xff000000, 0x1000};
    Bytes bytes(sizeof(words) + pixelBytes, 0x5A);
    std::memcpy(bytes.data(), words, sizeof(words));
    return bytes;
}

std::vector<Sample> imageSamples()
{
    constexpr int width = 23, height = 17;
    Bytes pixels;
    for (int i = 0; i < width * height * 4; ++i)
        pixels.push_back(static_cast<unsigned char>(i / 7 * 13));
    std::vector<Sample> samples = {{"PNG", {}}, {"TGA", {}}, {"BMP", {}}, {"JPEG", {}}};
    stbi_write_png_to_func(takeBytes, &samples[0].bytes, width, height, 4, pixels.data(), 4 * width);
    stbi_write_tga_to_func(takeBytes, &samples[1].bytes, width, height, 4, pixels.data());
    stbi_write_bmp_to_func(takeBytes, &samples[2].bytes, width, height, 4, pixels.data());
    stbi_write_jpg_to_func(takeBytes, &samples[3].bytes, width, height, 4, pixels.data(), 80);
    samples.push_back({"DXT1 DDS", ddsFile(4, "DXT1", 0, 8 * (16 + 4 + 1 + 1 + 1))});
    samples.push_back({"DXT3 DDS", ddsFile(4, "DXT3", 0, 16 * (16 + 4 + 1 + 1 + 1))});
    samples.push_back({"DXT5 DDS", ddsFile(4, "DXT5", 0, 16 * (16 + 4 + 1 + 1 + 1))});
    samples.push_back({"plain DDS", ddsFile(0x41, "", 32, 4 * (256 + 64 + 16 + 4 + 1))});
    return samples;
}

std::vector<Sample> modelSamples()
{
    MeshBuilder ball, box;
    ball.addSphere(1, 6, 4);
    box.addBox(Vec4(1, 2, 3));
    ModelFile one, three;
    one.addMesh(ball.toMesh());
    for (const MeshBuilder *mesh : {&box, &ball, &box})
        three.addMesh(mesh->toMesh());
    std::vector<Sample> samples;
    for (const ModelFile *model : {&one, &three})
    {
        const TemporaryFile file("fuzz.kaVelModel");
        EXPECT_TRUE(model->save(file.name()));
        const std::vector<char> bytes = file.read();
        samples.push_back({"model", Bytes(bytes.begin(), bytes.end())});
    }
    return samples;
}

} // namespace

TEST(DamagedFiles, ModelsLoadOrSayWhyNotAndTakeNoMoreThanTheFileIsWorth)
{
    const TemporaryFile file("fuzz.kaVelModel");
    Complaints complaints;
    damageAll(modelSamples(),
              [&](const Bytes &bytes)
              {
                  std::filesystem::remove(file.path); // a file that is only cut and rewritten waits for the disk
                  file.write(std::vector<char>(bytes.begin(), bytes.end()));
                  ModelFile model;
                  const bool loaded = model.load(file.name());
                  EXPECT_NE(loaded, !complaints.take().empty()) << "a failure, and only that, is told of";
                  std::size_t taken = 0;
                  for (int i = 0; i < model.getMeshCount(); ++i)
                  {
                      const Mesh &mesh = model.getMesh(i);
                      mesh.checkDrawable().ignoreError();
                      taken += mesh.getVertexBufferData().size() * sizeof(DefaultMeshVertex) +
                               mesh.getIndexBufferData().size() * sizeof(std::uint32_t);
                  }
                  EXPECT_LE(taken, bytes.size() + (16u << 20)) << "a cut last chunk may lack 16 MiB, no more";
                  model.mergeAllMeshes();
                  return loaded;
              });
}

TEST(DamagedFiles, ImagesLoadWholeOrSayWhyNotAndTakeNoMoreThanTheFileIsWorth)
{
    damageAll(imageSamples(),
              [](const Bytes &bytes)
              {
                  const auto *first = reinterpret_cast<const std::byte *>(bytes.data());
                  try
                  {
                      const port::Image image = port::readImage({first, first + bytes.size()});
                      const port::FormatInfo &format = *port::findFormat(image.format);
                      EXPECT_LE(std::size_t(image.width) * image.height, 10000 * bytes.size());
                      EXPECT_FALSE(image.levels.empty());
                      for (unsigned level = 0; level < image.levels.size(); ++level)
                          EXPECT_EQ(image.levels[level].size(),
                                    port::rowBytes(format, std::max(1u, image.width >> level)) *
                                        port::rowCount(format, std::max(1u, image.height >> level)));
                      if (format.external == GL_NONE)
                          port::decompress(image);
                      return true;
                  }
                  catch (const port::ImageError &error)
                  {
                      EXPECT_STRNE(error.what(), "");
                      return false;
                  }
              });
}
