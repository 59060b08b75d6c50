#include "ModelWriter.h"

#include "assets/models/ModelFile.h"

#include <cctype>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <set>
#include <system_error>

namespace
{

/// One file on its way: a model or a map.
struct Output
{
    std::string name; ///< where it is to stand
    const MeshBuilder *mesh = nullptr;
    const SurfaceMap *map = nullptr;

    std::string temporary() const { return name + ".part"; }
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
    char text[256];
    if (output.map)
    {
        std::snprintf(text, sizeof text, ": %u x %u pixels", output.map->width, output.map->height);
        return output.name + text;
    }
    const MeshBounds bounds = output.mesh->getBounds();
    const Vec4 size = bounds.maximum - bounds.minimum;
    std::snprintf(text, sizeof text,
                  ": %zu vertices, %zu triangles, %.3f x %.3f x %.3f m, from (%.3f, %.3f, %.3f) to (%.3f, %.3f, %.3f)",
                  output.mesh->getVertices().size(), output.mesh->getTriangleCount(), size.x, size.y, size.z,
                  bounds.minimum.x, bounds.minimum.y, bounds.minimum.z, bounds.maximum.x, bounds.maximum.y,
                  bounds.maximum.z);
    return output.name + text;
}

bool isTooLarge(const MeshBuilder &mesh)
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max(); // the format's sizes are 32-bit
    return mesh.getVertices().size() * std::uint64_t(sizeof(DefaultMeshVertex)) > most ||
           mesh.getIndices().size() * std::uint64_t(sizeof(MeshBuilder::Index)) > most;
}

bool save(const Output &output)
{
    if (output.mesh)
    {
        ModelFile file;
        file.addMesh(output.mesh->toMesh());
        return file.save(String::copyFrom(output.temporary()));
    }
    const std::vector<std::byte> &bytes = output.map->file;
    std::ofstream file(output.temporary(), std::ios::binary);
    file.write(reinterpret_cast<const char *>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return file.flush().good();
}

/// Writes a file under its temporary name; returns what went wrong.
std::string write(const Output &output)
{
    std::error_code ignored;
    if (std::filesystem::is_directory(output.name, ignored))
        return output.name + " is a folder; give the model another name.";
    if (output.mesh && isTooLarge(*output.mesh))
        return output.name + " would be larger than a model file can be; divide the model, or try --split.";
    if (!save(output))
        return output.name + " cannot be written; look at the folder's name, its rights and the room on the disk.";
    return "";
}

std::string moveAll(const std::vector<Output> &outputs)
{
    for (const Output &output : outputs)
    {
        std::error_code error;
        std::filesystem::rename(output.temporary(), output.name, error);
        if (error)
            return output.name + " cannot be replaced: " + error.message() + ".";
    }
    return "";
}

void removeAll(const std::vector<Output> &outputs)
{
    std::error_code ignored;
    for (const Output &output : outputs)
        std::filesystem::remove(output.temporary(), ignored);
}

/// Collects what is to be written, and says what of it the author may not expect.
class Outputs
{
public:
    Outputs(const ImportOptions &options, const SourceScene &scene);

    std::vector<Output> files;
    std::vector<std::string> surfaces; ///< the names of those that have maps
    std::vector<std::string> notes;

private:
    void addSurface(const std::string &name, const SourceSurface &surface);

    const ImportOptions &options;
    MeshBuilder whole; ///< all parts in one
};

Outputs::Outputs(const ImportOptions &options, const SourceScene &scene) : options(options)
{
    std::set<std::string> taken;
    for (const SourcePart &part : scene.parts)
    {
        const bool alone = scene.parts.size() == 1 && !options.split;
        const std::string name = alone ? options.output : nameOfPart(options.output, part.material, taken);
        if (options.split)
            files.push_back({name, &part.mesh});
        else
            whole.merge(part.mesh);
        addSurface(std::filesystem::path(name).stem().string(), part.surface);
    }
    if (!options.split)
        files.insert(files.begin(), {options.output, &whole});
    if (!options.split && surfaces.size() > 1)
        notes.push_back("a model wears one surface, and this one has " + std::to_string(surfaces.size()) +
                        "; --split makes a model for each");
}

void Outputs::addSurface(const std::string &name, const SourceSurface &surface)
{
    const std::string base = (std::filesystem::path(options.textures) / name).string();
    std::set<std::string> kinds;
    for (const SurfaceMap &map : surface.maps)
    {
        files.push_back({base + map.kind + ".dds", nullptr, &map});
        kinds.insert(map.kind);
    }
    if (kinds.empty())
        return;
    surfaces.push_back(name);
    std::error_code ignored;
    for (const char *kind : {"Normal", "Specular", "Emissive"})
        for (const char *ending : {".dds", ".png"})
            if (!kinds.count(kind) && std::filesystem::exists(base + kind + ending, ignored))
                notes.push_back(base + kind + ending +
                                " was there before and belongs to this surface now; remove it if "
                                "that is not meant");
}

} // namespace

WrittenModels writeModels(const ImportOptions &options, const SourceScene &scene)
{
    const Outputs outputs(options, scene);
    WrittenModels written;
    written.notes = outputs.notes;
    for (const Output &output : outputs.files)
    {
        if (written.fault.empty())
            written.fault = write(output);
        written.lines.push_back(describe(output));
    }
    for (const std::string &surface : outputs.surfaces)
        written.lines.push_back("surface '" + surface + "'");
    if (written.fault.empty())
        written.fault = moveAll(outputs.files);
    if (!written.fault.empty())
        removeAll(outputs.files);
    return written;
}
