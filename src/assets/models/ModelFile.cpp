#include "assets/models/ModelFile.h"

#include "foundation/Assertions.h"
#include "port/win32/HostPath.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>
#include <utility>

namespace
{

/// What a last chunk may lack and still count as cut short, bytes. Beyond it, its header is not believed.
constexpr std::uint64_t maxMissingBytes = 16 << 20;

/// Reads into the whole of a vector with one call; what the file lacks becomes zeros.
/// @return whether it lacks nothing
template <class Buffer>
bool readInto(std::istream &in, Buffer &buffer)
{
    if (buffer.empty())
        return true;
    const std::size_t wanted = buffer.size() * sizeof(buffer[0]);
    char *bytes = reinterpret_cast<char *>(buffer.data());
    in.read(bytes, static_cast<std::streamsize>(wanted));
    const auto got = static_cast<std::size_t>(in.gcount());
    std::memset(bytes + got, 0, wanted - got);
    return got == wanted;
}

template <class Buffer>
void writeFrom(std::ostream &out, const Buffer &buffer)
{
    if (!buffer.empty())
        out.write(reinterpret_cast<const char *>(buffer.data()),
                  static_cast<std::streamsize>(buffer.size() * sizeof(buffer[0])));
}

template <class Header>
void readHeader(std::istream &in, Header &header)
{
    in.read(reinterpret_cast<char *>(&header), sizeof(Header));
}

template <class Header>
void writeHeader(std::ostream &out, const Header &header)
{
    out.write(reinterpret_cast<const char *>(&header), sizeof(Header));
}

std::uint64_t measure(std::istream &in)
{
    in.seekg(0, std::ios::end);
    const auto size = in.tellg();
    in.seekg(0);
    return size < 0 ? 0 : static_cast<std::uint64_t>(size);
}

bool sizesFitCounts(const MeshChunkHeader &h)
{
    return h.totalIndexSize == std::uint64_t(h.indexCount) * sizeof(std::uint32_t) &&
           h.totalVertexSize == std::uint64_t(h.vertCount) * sizeof(DefaultMeshVertex);
}

} // namespace

void ModelFile::addMesh(const Mesh &mesh)
{
    meshes.push_back(mesh);
}

bool ModelFile::load(const String &filename)
{
    fault = String();
    const std::string path = port::hostPath(filename.toCString());
    std::error_code unknown;
    const bool isOrdinary = std::filesystem::is_regular_file(path, unknown); // a pipe would be waited for
    std::ifstream in;
    if (isOrdinary)
        in.open(path, std::ios::binary);
    if (!isOrdinary || !in)
        return fail("error opening file ", filename);
    const std::uint64_t fileSize = measure(in);

    ModelFileHeader header = {};
    readHeader(in, header);
    if (header.magic != ModelFileHeader::correctMagic)
        return fail("Invalid magic in file ", filename);
    for (std::uint32_t chunk = 0; chunk < header.numChunks; ++chunk)
        if (!readChunk(in, fileSize, filename))
            return false;
    return true;
}

bool ModelFile::readChunk(std::istream &in, std::uint64_t fileSize, const String &filename)
{
    if (!in)
        return fail("error reading file ", filename);
    MeshChunkHeader header = {};
    readHeader(in, header);
    if (header.magic != MeshChunkHeader::correctMagic)
        return fail("Invalid chunk magic in file ", filename);
    if (!sizesFitCounts(header))
        return fail("Chunk sizes contradict the chunk's counts in file ", filename, "Export the model again.\n");

    const std::uint64_t left = fileSize - static_cast<std::uint64_t>(in.tellg());
    const std::uint64_t claimed = std::uint64_t(header.totalIndexSize) + header.totalVertexSize;
    if (claimed > left + maxMissingBytes)
        return fail("Chunk is larger than the rest of file ", filename,
                    "The file is cut short or its counts are wrong: export the model again.\n");
    Mesh &mesh = meshes.emplace_back();
    mesh.prepareForRead(header);
    const bool hasIndices = readInto(in, mesh.indexBuffer);
    const bool hasVertices = readInto(in, mesh.vertexBuffer);
    if (!hasIndices || !hasVertices)
        fault = SCS("the file is cut short");
    return true;
}

bool ModelFile::fail(const char *what, const String &filename, const char *advice)
{
    fault = String::fromStaticCString(what);
    std::cerr << what << filename.toCString() << "!\n" << advice;
    return false;
}

bool ModelFile::save(const String &filename) const
{
    std::ofstream out(port::hostPath(filename.toCString()), std::ios::binary);
    writeHeader(out, getFileHeader());
    for (const Mesh &mesh : meshes)
    {
        writeHeader(out, mesh.getChunkHeader());
        writeFrom(out, mesh.getIndexBufferData());
        writeFrom(out, mesh.getVertexBufferData());
    }
    out.close();
    return out.good();
}

void ModelFile::mergeAllMeshes()
{
    if (meshes.size() < 2)
        return;
    Mesh &first = meshes.front();
    for (std::size_t i = 1; i < meshes.size(); ++i)
    {
        const auto offset = static_cast<std::uint32_t>(first.vertexBuffer.size());
        for (const std::uint32_t index : meshes[i].indexBuffer)
            first.indexBuffer.push_back(index + offset);
        first.vertexBuffer.insert(first.vertexBuffer.end(), meshes[i].vertexBuffer.begin(),
                                  meshes[i].vertexBuffer.end());
    }
    meshes.resize(1);
}

const Mesh &ModelFile::getMesh(int idx) const
{
    static const Mesh emptyMesh;
    const bool inRange = idx >= 0 && idx < getMeshCount();
    KV_ASSERT(inRange, "Mesh %i asked of a model of %i meshes.", idx, getMeshCount());
    return inRange ? meshes[static_cast<std::size_t>(idx)] : emptyMesh;
}

Mesh ModelFile::takeMesh(int idx)
{
    getMesh(idx); // asserts the range
    if (idx < 0 || idx >= getMeshCount())
        return Mesh();
    return std::exchange(meshes[static_cast<std::size_t>(idx)], Mesh());
}

ModelFileHeader ModelFile::getFileHeader() const
{
    return {ModelFileHeader::correctMagic, static_cast<std::uint32_t>(meshes.size())};
}
