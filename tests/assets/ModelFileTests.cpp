#include "support/TemporaryFile.h"

#include "assets/models/ModelFile.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{

Mesh triangle(float x = 0)
{
    Mesh mesh;
    mesh.setData({{{x, 0, 0}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {0, 0}},
                  {{x, 1, 0}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {0, 1}},
                  {{x + 1, 0, 0}, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}, {1, 0}}},
                 {0, 1, 2});
    return mesh;
}

/// The bytes of a file with one or more triangles.
std::vector<char> fileOf(int meshes)
{
    const TemporaryFile file("source");
    ModelFile model;
    for (int i = 0; i < meshes; ++i)
        model.addMesh(triangle(static_cast<float>(i)));
    EXPECT_TRUE(model.save(file.name()));
    return file.read();
}

void setWord(std::vector<char> &bytes, std::size_t offset, std::uint32_t value)
{
    std::memcpy(bytes.data() + offset, &value, sizeof(value));
}

std::uint32_t wordAt(const std::vector<char> &bytes, std::size_t offset)
{
    std::uint32_t value;
    std::memcpy(&value, bytes.data() + offset, sizeof(value));
    return value;
}

constexpr std::size_t chunkSize = 32 + 3 * 4 + 3 * 56;

/// Loads bytes as a file; `complaint` receives what went to the standard error stream.
bool loads(const std::vector<char> &bytes, ModelFile &model, std::string *complaint = nullptr)
{
    const TemporaryFile file;
    file.write(bytes);
    testing::internal::CaptureStderr();
    const bool loaded = model.load(file.name());
    std::string text = testing::internal::GetCapturedStderr();
    const std::string path = file.path.string();
    if (const auto place = text.find(path); place != std::string::npos)
        text.replace(place, path.size(), "FILE");
    if (complaint)
        *complaint = text;
    return loaded;
}

} // namespace

TEST(ModelFile, ByteLayoutIsHeaderThenIndicesThenVertices)
{
    const std::vector<char> bytes = fileOf(1);
    ASSERT_EQ(bytes.size(), 8 + chunkSize);
    EXPECT_EQ(std::string(bytes.data(), 4), "0MVk");
    EXPECT_EQ(wordAt(bytes, 4), 1u);
    EXPECT_EQ(std::string(bytes.data() + 8, 4), "hsem");
    const std::uint32_t rest[] = {MPT_TRIANGLES, MVT_DEFAULT, 3, 1, 3, 12, 168};
    for (std::size_t i = 0; i < 7; ++i)
        EXPECT_EQ(wordAt(bytes, 12 + 4 * i), rest[i]) << "word " << i;
    EXPECT_EQ(wordAt(bytes, 40 + 8), 2u) << "third index";
    float texCoord;
    std::memcpy(&texCoord, bytes.data() + 52 + 2 * 56 + 48, 4);
    EXPECT_EQ(texCoord, 1.0f) << "u of the third vertex";
}

TEST(ModelFile, WhatIsSavedLoadsByteForByte)
{
    const std::vector<char> bytes = fileOf(3);
    ModelFile model;
    ASSERT_TRUE(loads(bytes, model));
    ASSERT_EQ(model.getMeshCount(), 3);
    EXPECT_EQ(model.getMesh(2).getVertexBufferData()[0].position.x, 2.0f);
    const TemporaryFile copy("copy");
    ASSERT_TRUE(model.save(copy.name()));
    EXPECT_EQ(copy.read(), bytes);
}

TEST(ModelFile, EveryFaultOfAFileHasItsOwnTextAndKeepsTheWholeChunksBefore)
{
    typedef std::vector<char> Bytes;
    const struct
    {
        const char *complaint;
        int meshes;
        void (*damage)(Bytes &);
    } faults[] = {
        {"Invalid magic in file FILE!\n", 0, [](Bytes &b) { b.clear(); }},
        {"Invalid chunk magic in file FILE!\n", 1, [](Bytes &b) { setWord(b, 8 + chunkSize, 0); }},
        {"error reading file FILE!\n", 1, [](Bytes &b) { b.resize(8 + chunkSize - 10); }},
        {"Chunk sizes contradict the chunk's counts in file FILE!\n", 0, [](Bytes &b) { setWord(b, 8 + 24, 4000); }},
        {"Chunk is larger than the rest of file FILE!\n", 0,
         [](Bytes &b)
         {
             setWord(b, 8 + 12, 76000000);
             setWord(b, 8 + 28, 76000000u * 56);
         }},
    };
    std::string complaint;
    for (const auto &fault : faults)
    {
        Bytes bytes = fileOf(2);
        fault.damage(bytes);
        ModelFile model;
        EXPECT_FALSE(loads(bytes, model, &complaint));
        EXPECT_EQ(complaint.find(fault.complaint), 0u) << complaint;
        EXPECT_EQ(model.getMeshCount(), fault.meshes) << complaint;
    }
}

TEST(ModelFile, TruncatedLastChunkLoadsWithZeros)
{
    std::vector<char> bytes = fileOf(1);
    bytes.resize(8 + 32 + 12 + 56 + 20);
    ModelFile model;
    ASSERT_TRUE(loads(bytes, model));
    const Mesh::VertexBufferType &vertices = model.getMesh(0).getVertexBufferData();
    ASSERT_EQ(vertices.size(), 3u);
    EXPECT_EQ(vertices[0].normal.z, -1.0f);
    EXPECT_EQ(vertices[1].position.y, 1.0f) << "the last whole field of the file";
    EXPECT_EQ(vertices[2].position.x, 0.0f);
    EXPECT_EQ(vertices[2].tangent.x, 0.0f);
}

TEST(ModelFile, MergingOffsetsTheIndicesOfLaterMeshes)
{
    ModelFile model;
    model.addMesh(triangle(0));
    model.addMesh(triangle(5));
    model.mergeAllMeshes();
    ASSERT_EQ(model.getMeshCount(), 1);
    EXPECT_EQ(model.getMesh(0).getIndexBufferData(), (Mesh::IndexBufferType{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(model.getMesh(0).getVertexBufferData()[3].position.x, 5.0f);
    EXPECT_EQ(model.getMesh(0).calculatePrimCount(), 2);
}

TEST(Mesh, OnlyWhatTheDeviceCanDrawSafelyIsDrawable)
{
    Mesh mesh = triangle();
    EXPECT_TRUE(mesh.checkDrawable().succeeded());
    mesh.setData(mesh.getVertexBufferData(), {0, 1, 3});
    EXPECT_EQ(mesh.checkDrawable().getCode(), ErrorCode::OUT_OF_BOUNDS);
    mesh.setData(mesh.getVertexBufferData(), {0, 1, 2}, MPT_POLYGONS);
    EXPECT_EQ(mesh.checkDrawable().getCode(), ErrorCode::NOT_IMPLEMENTED);
    EXPECT_EQ(mesh.getChunkHeader().primCount, 0xFFFFFFFFu);
    mesh.setData(mesh.getVertexBufferData(), {}, MPT_LINES);
    EXPECT_EQ(mesh.calculatePrimCount(), 1) << "of its vertices, without indices";
    MeshChunkHeader strangeLayout = triangle().getChunkHeader();
    strangeLayout.vertexType = 77;
    mesh.prepareForRead(strangeLayout);
    EXPECT_EQ(mesh.checkDrawable().getCode(), ErrorCode::NOT_IMPLEMENTED);
}

TEST(BulkAllocator, BigBlocksCanBeGrownShrunkAndCopied)
{
    std::vector<std::uint32_t, BulkAllocator<std::uint32_t>> big(3 << 20);
    big.front() = 11;
    big.back() = 22;
    big.push_back(33);
    const auto copy = big;
    big.resize(1);
    big.shrink_to_fit();
    EXPECT_EQ(big[0], 11u);
    EXPECT_EQ(copy[(3 << 20) - 1], 22u);
    EXPECT_EQ(copy.back(), 33u);
}
