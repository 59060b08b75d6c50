#include "ModelWriter.h"

#include "assets/models/ModelFile.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <set>
#include <system_error>

namespace
{

/// One file on its way.
struct Output
{
    std::string name;      ///< where it is to stand
    std::string temporary; ///< where it is written
    const MeshBuilder *mesh;
};

/// A material's name with only what every file system and script takes.
std::string plainName(const std::string &material)
{
    std::string plain;
    for (const char letter : material)
        plain += std::isalnum(static_cast<unsigned char>(letter)) ? letter : '_';
    return plain.empty() ? "plain" : plain;
}

std::string nameOfPart(const std::string &output, const std::string &material, std::set<std::string> &taken)
{
    const std::filesystem::path path(output);
    const std::string base = (path.parent_path() / path.stem()).string() + "_" + plainName(material);
    std::string name = base;
    for (int number = 2; !taken.insert(name).second; ++number)
        name = base + "_" + std::to_string(number);
    return name + path.extension().string();
}

std::string describe(const Output &output)
{
    const MeshBounds bounds = output.mesh->getBounds();
    const Vec4 size = bounds.maximum - bounds.minimum;
    char text[256];
    std::snprintf(text, sizeof text,
                  ": %zu vertices, %zu triangles, %.3f x %.3f x %.3f m, from (%.3f, %.3f, %.3f) to (%.3f, %.3f, %.3f)",
                  output.mesh->getVertices().size(), output.mesh->getTriangleCount(), size.x, size.y, size.z,
                  bounds.minimum.x, bounds.minimum.y, bounds.minimum.z, bounds.maximum.x, bounds.maximum.y,
                  bounds.maximum.z);
    return output.name + text;
}

/// Writes a mesh under its temporary name; returns what went wrong.
std::string write(const Output &output)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(output.name, ignored))
        return output.name + " is a folder; give the model another name.";
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max(); // the format's sizes are 32-bit
    if (output.mesh->getVertices().size() * std::uint64_t(sizeof(DefaultMeshVertex)) > most ||
        output.mesh->getIndices().size() * std::uint64_t(sizeof(MeshBuilder::Index)) > most)
        return output.name + " would be larger than a model file can be; divide the model, or try --split.";
    ModelFile file;
    file.addMesh(output.mesh->toMesh());
    if (!file.save(String::copyFrom(output.temporary)))
        return output.name + " cannot be written; look at the folder's name, its rights and the room on the disk.";
    return "";
}

std::string moveAll(const std::vector<Output> &outputs)
{
    for (const Output &output : outputs)
    {
        std::error_code error;
        std::filesystem::rename(output.temporary, output.name, error);
        if (error)
            return output.name + " cannot be replaced: " + error.message() + ".";
    }
    return "";
}

void removeAll(const std::vector<Output> &outputs)
{
    std::error_code ignored;
    for (const Output &output : outputs)
        std::filesystem::remove(output.temporary, ignored);
}

} // namespace

WrittenModels writeModels(const ImportOptions &options, const SourceScene &scene)
{
    MeshBuilder whole;
    std::vector<Output> outputs;
    std::set<std::string> taken;
    for (const SourcePart &part : scene.parts)
    {
        const std::string name = nameOfPart(options.output, part.material, taken);
        if (options.split)
            outputs.push_back({name, name + ".part", &part.mesh});
        else
            whole.merge(part.mesh);
    }
    if (!options.split)
        outputs.push_back({options.output, options.output + ".part", &whole});

    WrittenModels written;
    for (const Output &output : outputs)
    {
        if (written.fault.empty())
            written.fault = write(output);
        written.lines.push_back(describe(output));
    }
    if (written.fault.empty())
        written.fault = moveAll(outputs);
    if (!written.fault.empty())
        removeAll(outputs);
    return written;
}
