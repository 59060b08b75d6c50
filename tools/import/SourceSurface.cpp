#include "SourceSurface.h"

#include "GuardedRun.h"
#include "Picture.h"

#include "port/d3dx9/ImageFile.h"
#include "port/win32/HostPath.h"

#include <assimp/GltfMaterial.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <set>

namespace
{

/// Turns one material into a surface.
class SurfaceReader
{
public:
    SurfaceReader(const aiScene &scene, const aiMaterial &material, const SourceFiles &files,
                  const ImportOptions &options)
        : scene(scene), material(material), files(files), options(options)
    {
    }

    SourceSurface read();

private:
    void readDiffuse();
    void readNormal();
    void readSpecular();
    void readEmissive();
    void noteLeftOut();

    std::optional<Picture> load(std::initializer_list<aiTextureType> types);
    std::optional<Picture> load(const std::string &name);
    std::optional<Picture> readEmbedded(const aiTexture &texture) const;
    std::optional<std::string> locate(const std::string &name);
    std::optional<aiColor3D> colorOf(const char *key) const;
    float numberOf(const char *key, float otherwise) const;
    void add(const char *kind, const Picture &picture);
    void note(const std::string &name, const std::string &what);

    const aiScene &scene;
    const aiMaterial &material;
    const SourceFiles &files;
    const ImportOptions &options;
    std::optional<Picture> diffuse;
    std::set<std::string> used, noted; ///< names of pictures
    SourceSurface surface;
};

std::uint8_t toByte(float share)
{
    return static_cast<std::uint8_t>(std::lround(255 * std::clamp(std::isfinite(share) ? share : 0.0f, 0.0f, 1.0f)));
}

Picture flat(const aiColor3D &color)
{
    return Picture::flat(toByte(color.r), toByte(color.g), toByte(color.b));
}

void multiply(Picture &picture, const aiColor3D &color)
{
    const float shares[] = {color.r, color.g, color.b, 1};
    for (std::size_t i = 0; i < picture.bytes.size(); ++i)
        picture.bytes[i] = toByte(static_cast<float>(picture.bytes[i]) / 255 * shares[i % 4]);
}

/// A name with "%20" and the like as the characters they stand for.
std::string withoutEscapes(const std::string &name)
{
    std::string plain;
    for (std::size_t i = 0; i < name.size(); ++i)
    {
        const auto digit = [&](std::size_t at)
        { return at < name.size() && std::isxdigit(static_cast<unsigned char>(name[at])); };
        const bool escape = name[i] == '%' && digit(i + 1) && digit(i + 2);
        plain += escape ? static_cast<char>(std::strtol(name.substr(i + 1, 2).c_str(), nullptr, 16)) : name[i];
        i += escape ? 2 : 0;
    }
    return plain;
}

/// What the reflectance of metal, rough or smooth, comes to as a highlight: nothing for what is all rough.
Picture highlightOf(Picture roughMetal, const Picture &color)
{
    constexpr float ofNoMetal = 0.04f; // glass, paint and wood throw back about as much of what falls straight on them
    const Picture base = color.resized(roughMetal.width, roughMetal.height);
    for (std::size_t at = 0; at < base.bytes.size(); at += 4)
    {
        std::uint8_t *pixel = &roughMetal.bytes[at];
        const float smooth = 1 - static_cast<float>(pixel[1]) / 255, metal = static_cast<float>(pixel[2]) / 255;
        for (std::size_t channel = 0; channel < 3; ++channel)
        {
            const float own = static_cast<float>(base.bytes[at + channel]) / 255;
            pixel[channel] = toByte(smooth * (ofNoMetal + (own - ofNoMetal) * metal));
        }
    }
    return roughMetal;
}

std::optional<aiColor3D> SurfaceReader::colorOf(const char *key) const
{
    aiColor4D color;
    if (material.Get(key, 0, 0, color) != aiReturn_SUCCESS)
        return std::nullopt;
    return aiColor3D(color.r, color.g, color.b);
}

float SurfaceReader::numberOf(const char *key, float otherwise) const
{
    float number = otherwise;
    material.Get(key, 0, 0, number);
    return number;
}

void SurfaceReader::note(const std::string &name, const std::string &what)
{
    if (noted.insert(name).second)
        surface.notes.push_back("picture '" + name + "' of material '" + material.GetName().C_Str() + "' " + what);
}

/// Where a picture lies that the model names. Other formats than glTF name it as it lay on the author's machine: there
/// the same name beside the model will do.
std::optional<std::string> SurfaceReader::locate(const std::string &name)
{
    const std::string named = files.pathOf(name);
    const std::string beside =
        options.isGltf() ? files.pathOf(withoutEscapes(name))
                         : files.pathOf(std::filesystem::path(port::hostPath(name.c_str())).filename().string());
    for (const std::string &path : {named, beside})
        if (files.judge(path) == SourceFiles::Standing::plain)
            return path;
    const bool outside =
        files.judge(named) == SourceFiles::Standing::outside || files.judge(beside) == SourceFiles::Standing::outside;
    if (outside && options.isGltf() && surface.fault.empty())
        surface.fault = "it names the picture '" + name +
                        "', which lies outside its folder. Copy that file beside the model, and name it there.";
    if (outside)
        note(name, "is left out: it lies outside the model's folder. Copy it beside the model.");
    else if (files.judge(named) == SourceFiles::Standing::special)
        note(name, "is left out: it is no plain file.");
    else
        note(name, "is missing: " + port::explainMissingFile(named.c_str()));
    return std::nullopt;
}

std::optional<Picture> SurfaceReader::readEmbedded(const aiTexture &texture) const
{
    if (texture.mHeight == 0)
    {
        const auto *first = reinterpret_cast<const std::byte *>(texture.pcData);
        return readPicture({first, first + texture.mWidth});
    }
    Picture picture = Picture::flat(0, 0, 0, texture.mWidth, texture.mHeight);
    for (std::size_t i = 0; i < picture.bytes.size() / 4; ++i)
    {
        const aiTexel &texel = texture.pcData[i];
        const std::uint8_t bytes[] = {texel.r, texel.g, texel.b, texel.a};
        std::copy(std::begin(bytes), std::end(bytes), &picture.bytes[4 * i]);
    }
    return picture;
}

std::optional<Picture> SurfaceReader::load(const std::string &name)
{
    used.insert(name);
    noteStep("reading its picture '" + name + "'");
    try
    {
        if (const aiTexture *embedded = scene.GetEmbeddedTexture(name.c_str()))
            return readEmbedded(*embedded);
        const std::optional<std::string> path = locate(name);
        if (!path)
            return std::nullopt;
        std::ifstream file(*path, std::ios::binary);
        const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
        const auto *first = reinterpret_cast<const std::byte *>(bytes.data());
        return readPicture({first, first + bytes.size()});
    }
    catch (const port::ImageError &error)
    {
        note(name, std::string("is left out: ") + error.what() + ".");
        return std::nullopt;
    }
}

/// The picture of the first of these uses that the material has one for.
std::optional<Picture> SurfaceReader::load(std::initializer_list<aiTextureType> types)
{
    aiString name;
    for (const aiTextureType type : types)
        if (material.GetTexture(type, 0, &name) == aiReturn_SUCCESS)
            return load(std::string(name.C_Str()));
    return std::nullopt;
}

void SurfaceReader::add(const char *kind, const Picture &picture)
{
    surface.maps.push_back({kind, picture.width, picture.height, encodeDds(picture)});
}

void SurfaceReader::readDiffuse()
{
    diffuse = load({aiTextureType_BASE_COLOR, aiTextureType_DIFFUSE});
    std::optional<aiColor3D> color = colorOf("$clr.base");
    if (!color)
        color = colorOf("$clr.diffuse");
    if (diffuse && color && options.isGltf())
        multiply(*diffuse, *color);
    if (!diffuse && color)
        diffuse = flat(*color);
    if (diffuse)
        add("Diffuse", *diffuse);
}

void SurfaceReader::readNormal()
{
    std::optional<Picture> normal = load({aiTextureType_NORMALS, aiTextureType_NORMAL_CAMERA, aiTextureType_HEIGHT});
    if (!normal)
        return;
    if (normal->isGrey())
    {
        surface.notes.push_back(std::string("material '") + material.GetName().C_Str() +
                                "' has a map of heights, which is left out. Bake a normal map.");
        return;
    }
    // The tools' green leans up the picture, the game's down.
    for (std::size_t at = 1; at < normal->bytes.size() && !options.flipGreen; at += 4)
        normal->bytes[at] = static_cast<std::uint8_t>(255 - normal->bytes[at]);
    add("Normal", *normal);
}

void SurfaceReader::readSpecular()
{
    if (const std::optional<Picture> specular = load({aiTextureType_SPECULAR}))
        return add("Specular", *specular);
    if (!options.isGltf() || !diffuse)
        return;
    const float rough = numberOf("$mat.roughnessFactor", 1), metal = numberOf("$mat.metallicFactor", 0);
    std::optional<Picture> roughMetal = load({aiTextureType_METALNESS, aiTextureType_UNKNOWN});
    if (!roughMetal && metal > 0)
        roughMetal = Picture::flat(255, 255, 255, diffuse->width, diffuse->height);
    else if (!roughMetal)
        roughMetal = Picture::flat(255, 255, 255);
    multiply(*roughMetal, aiColor3D(1, rough, metal));
    const Picture highlight = highlightOf(*std::move(roughMetal), *diffuse);
    if (!highlight.isBlack())
        add("Specular", highlight);
}

void SurfaceReader::readEmissive()
{
    std::optional<Picture> emissive = load({aiTextureType_EMISSIVE, aiTextureType_EMISSION_COLOR});
    const aiColor3D color = colorOf("$clr.emissive").value_or(aiColor3D());
    if (emissive && options.isGltf())
        multiply(*emissive, color);
    if (!emissive && !color.IsBlack())
        emissive = flat(color);
    if (emissive)
        add("Emissive", *emissive);
}

void SurfaceReader::noteLeftOut()
{
    for (int type = aiTextureType_DIFFUSE; type <= AI_TEXTURE_TYPE_MAX; ++type)
        for (unsigned i = 0; i < material.GetTextureCount(static_cast<aiTextureType>(type)); ++i)
        {
            aiString name;
            material.GetTexture(static_cast<aiTextureType>(type), i, &name);
            if (!used.count(name.C_Str()))
                note(name.C_Str(), std::string("is left out: surfaces have no map for its use (") +
                                       aiTextureTypeToString(static_cast<aiTextureType>(type)) + ").");
        }
    aiString mode("OPAQUE");
    material.Get(AI_MATKEY_GLTF_ALPHAMODE, mode);
    if (mode != aiString("OPAQUE") || numberOf("$mat.opacity", 1) < 1)
        surface.notes.push_back(std::string("material '") + material.GetName().C_Str() +
                                "' lets light through; a model's surface is drawn solid.");
}

SourceSurface SurfaceReader::read()
{
    if (material.GetName() == aiString(AI_DEFAULT_MATERIAL_NAME))
        return {}; // the file names no material; this one is the reading library's
    readDiffuse();
    readNormal();
    readSpecular();
    readEmissive();
    noteLeftOut();
    return std::move(surface);
}

} // namespace

SourceSurface readSurface(const aiScene &scene, const aiMaterial &material, const SourceFiles &files,
                          const ImportOptions &options)
{
    return SurfaceReader(scene, material, files, options).read();
}
