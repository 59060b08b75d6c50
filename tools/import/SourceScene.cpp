#include "SourceScene.h"

#include "GuardedRun.h"
#include "SourceFiles.h"

#include "assets/models/MeshMath.h"
#include "port/win32/HostPath.h"

#include <assimp/Importer.hpp>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>

namespace
{

constexpr float usualCrease = 40 * PI / 180; ///< radians; keeps a box's edges and rounds a coarse cylinder
constexpr float largestModel = 1000;         ///< metres; beyond it the unit is wrong more often than not
constexpr float smallestModel = 0.005f;      ///< metres
constexpr float farthest = 1e7f;             ///< metres; beyond it positions are a metre apart and more
constexpr std::size_t deepest = 1000;        ///< levels of nodes; no modelling tool shows so many
constexpr unsigned mostCorners = 5000;       ///< of a face; cutting it up takes the square of them
constexpr const char *readable[] = {".gltf", ".glb", ".fbx", ".obj"};

/// Gathers a scene's meshes node by node.
class SceneReader
{
public:
    SceneReader(const ImportOptions &options, const aiScene &scene, const SourceFiles &files)
        : options(options), scene(scene), files(files)
    {
    }

    SourceScene read();

private:
    float metresOfFile() const;
    std::string findAxes();
    std::optional<SourceAxis> axisOfFile(const char *name) const;
    std::string readNodes();
    std::string readMesh(const aiMesh &mesh, const std::string &node, const Matrix4 &placement);
    std::string readFaces(const aiMesh &mesh, const std::string &where, MeshBuilder &into);
    void finishPart(SourcePart &part, unsigned material);
    void noteLeftOut();
    void noteExtents();
    std::string explainEmpty() const;

    const ImportOptions &options;
    const aiScene &scene;
    const SourceFiles &files;
    Matrix4 toEngine;
    std::map<unsigned, SourcePart> parts; ///< by material
    SourceScene result;
    std::size_t linesAndPoints = 0, trianglesAgainstNormals = 0;
    unsigned meshesWithoutNormals = 0, meshesWithoutTexture = 0;
};

Matrix4 toMatrix(const aiMatrix4x4 &from)
{
    Matrix4 matrix;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            matrix[row][column] = static_cast<float>(from[static_cast<unsigned>(row)][static_cast<unsigned>(column)]);
    return matrix;
}

Vec4 toVec4(const aiVector3D &from, float w)
{
    return Vec4(static_cast<float>(from.x), static_cast<float>(from.y), static_cast<float>(from.z), w);
}

bool isFinite(const Vec4 &v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

std::string inQuotes(const std::string &text)
{
    return "'" + text + "'";
}

/// An axis that an FBX file names by two numbers, as UpAxis 2 and UpAxisSign -1.
std::optional<SourceAxis> SceneReader::axisOfFile(const char *name) const
{
    int axis = 0, sign = 1;
    if (!scene.mMetaData || !scene.mMetaData->Get(name, axis) || axis < 0 || axis > 2)
        return std::nullopt;
    scene.mMetaData->Get(std::string(name) + "Sign", sign);
    return SourceAxis{axis, sign < 0 ? -1.0f : 1.0f};
}

/// Metres a unit; FBX files count it in centimetres, the others are taken for metres.
float SceneReader::metresOfFile() const
{
    if (!scene.mMetaData)
        return 1;
    float centimetres = 100;
    if (double wide = 0; scene.mMetaData->Get("UnitScaleFactor", wide))
        centimetres = static_cast<float>(wide);
    else
        scene.mMetaData->Get("UnitScaleFactor", centimetres);
    return centimetres > 0 && std::isfinite(centimetres) ? centimetres / 100 : 1;
}

/// Settles axes and unit; returns what is wrong with them.
std::string SceneReader::findAxes()
{
    const std::optional<SourceAxis> fileUp = axisOfFile("UpAxis"), fileFront = axisOfFile("FrontAxis");
    const SourceAxis up = options.up.value_or(fileUp.value_or(SourceAxis{1, 1}));
    SourceAxis front = usualFront(up);
    if (options.front)
        front = *options.front;
    else if (fileFront && !options.up)
        front = *fileFront;
    const std::optional<Matrix4> axes = axesToEngine(up, front);
    if (!axes)
        return "its up and front lie on one axis; a model cannot look where it stands up. Give --up and --front.";
    const float unit = options.scale * metresOfFile();
    Matrix4 scale;
    scale.scale(unit, unit, unit);
    toEngine = scale * *axes;
    return "";
}

/// Walks the nodes without recursion, parents first: how deep they are nested is up to the file.
std::string SceneReader::readNodes()
{
    struct Visit
    {
        const aiNode *node;
        Matrix4 parent;
        std::size_t depth;
    };
    std::vector<Visit> left;
    if (scene.mRootNode)
        left.push_back({scene.mRootNode, toEngine, 1});
    while (!left.empty())
    {
        const Visit visit = left.back();
        const aiNode &node = *visit.node;
        left.pop_back();
        if (visit.depth > deepest)
            return "its node " + inQuotes(node.mName.C_Str()) + " is nested more than " + std::to_string(deepest) +
                   " levels deep. Export it without its hierarchy.";
        const Matrix4 placement = visit.parent * toMatrix(node.mTransformation);
        for (unsigned i = 0; i < node.mNumMeshes; ++i)
            if (std::string fault = readMesh(*scene.mMeshes[node.mMeshes[i]], node.mName.C_Str(), placement);
                !fault.empty())
                return fault;
        for (unsigned i = node.mNumChildren; i-- > 0;)
            left.push_back({node.mChildren[i], placement, visit.depth + 1});
    }
    return "";
}

/// Whether a position is one that the game can tell from its neighbours.
bool isNear(const Vec4 &position)
{
    return std::abs(position.x) <= farthest && std::abs(position.y) <= farthest && std::abs(position.z) <= farthest;
}

std::string SceneReader::readMesh(const aiMesh &mesh, const std::string &node, const Matrix4 &placement)
{
    const std::string where = "mesh " + inQuotes(mesh.mName.C_Str()) + " of node " + inQuotes(node);
    noteStep("making normals of " + where);
    MeshBuilder built;
    built.reserve(mesh.mNumVertices, mesh.mNumFaces);
    for (unsigned i = 0; i < mesh.mNumVertices; ++i)
    {
        const Vec4 position = toVec4(mesh.mVertices[i], 1);
        const Vec4 normal = mesh.HasNormals() ? toVec4(mesh.mNormals[i], 0) : Vec4();
        const Vec4 texture = mesh.HasTextureCoords(0) ? toVec4(mesh.mTextureCoords[0][i], 0) : Vec4();
        if (!isFinite(position) || !isFinite(placement * position))
            return "vertex " + std::to_string(i) + " of " + where + " has a position that is no number. " +
                   "Look for a zero scale or broken modifier in the modelling tool.";
        if (!isNear(placement * position))
            return "vertex " + std::to_string(i) + " of " + where +
                   " lies more than 10,000 km away. Look for a stray " +
                   "vertex in the modelling tool, or give the unit with --scale.";
        built.addVertex({{position.x, position.y, position.z},
                         isFinite(normal) ? MeshVector3{normal.x, normal.y, normal.z} : MeshVector3{},
                         {},
                         {},
                         isFinite(texture) ? MeshVector2{texture.x, texture.y} : MeshVector2{}});
    }
    if (std::string fault = readFaces(mesh, where, built); !fault.empty() || built.getIndices().empty())
        return fault;
    built.transform(placement);
    if (!mesh.HasTextureCoords(0))
        built.applyWorldTextureCoordinates();
    if (!mesh.HasNormals() || options.creaseAngle)
        built.smoothNormals(options.creaseAngle.value_or(usualCrease));
    meshesWithoutTexture += !mesh.HasTextureCoords(0);
    meshesWithoutNormals += !mesh.HasNormals();
    parts[mesh.mMaterialIndex].mesh.merge(built);
    return "";
}

std::string SceneReader::readFaces(const aiMesh &mesh, const std::string &where, MeshBuilder &into)
{
    for (unsigned i = 0; i < mesh.mNumFaces; ++i)
    {
        const aiFace &face = mesh.mFaces[i];
        for (unsigned k = 0; k < face.mNumIndices; ++k)
            if (face.mIndices[k] >= mesh.mNumVertices)
                return "face " + std::to_string(i) + " of " + where + " uses vertex " +
                       std::to_string(face.mIndices[k]) + " of " + std::to_string(mesh.mNumVertices) +
                       ". Export the model again.";
        // What had more corners was cut into triangles when it was read.
        if (face.mNumIndices == 3)
            into.addTriangle(face.mIndices[0], face.mIndices[1], face.mIndices[2]);
        else
            ++linesAndPoints;
    }
    return "";
}

/// Triangles that face away from their own normals.
std::size_t countAgainstNormals(const MeshBuilder &mesh)
{
    const MeshBuilder::VertexVec &vertices = mesh.getVertices();
    const MeshBuilder::IndexVec &indices = mesh.getIndices();
    std::size_t count = 0;
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3)
    {
        const DefaultMeshVertex &a = vertices[indices[i]], &b = vertices[indices[i + 1]], &c = vertices[indices[i + 2]];
        const Vec4 face = faceVector(a.position, b.position, c.position);
        count += face.dot(toDirection(a.normal + b.normal + c.normal)) < 0;
    }
    return count;
}

/// Brings a part into its final form: winding, no triangle without area, one vertex for equal ones, tangents.
void SceneReader::finishPart(SourcePart &part, unsigned material)
{
    noteStep("finishing the mesh of material " + std::to_string(material));
    part.mesh.dropFlatTriangles();
    const bool mostlyAgainst = 2 * countAgainstNormals(part.mesh) > part.mesh.getTriangleCount();
    if (options.flipWinding && mostlyAgainst)
        part.mesh.flipTriangles();
    else if (options.flipWinding)
        part.mesh.flip();
    trianglesAgainstNormals += countAgainstNormals(part.mesh);
    part.mesh.weld();
    part.mesh.generateTangents();
    if (material >= scene.mNumMaterials || part.mesh.getIndices().empty())
        return;
    part.material = scene.mMaterials[material]->GetName().C_Str();
    if (options.withTextures)
        part.surface = readSurface(scene, *scene.mMaterials[material], files, options);
    result.notes.insert(result.notes.end(), part.surface.notes.begin(), part.surface.notes.end());
    if (result.fault.empty())
        result.fault = part.surface.fault;
}

void SceneReader::noteLeftOut()
{
    unsigned bones = 0, colored = 0, textured = 0;
    for (unsigned i = 0; i < scene.mNumMeshes; ++i)
    {
        bones += scene.mMeshes[i]->mNumBones;
        colored += scene.mMeshes[i]->HasVertexColors(0);
        textured += scene.mMeshes[i]->HasTextureCoords(1);
    }
    const float crease = options.creaseAngle.value_or(usualCrease) * 180 / PI;
    const auto note = [this](std::size_t count, const std::string &what)
    {
        if (count)
            result.notes.push_back(what + ": " + std::to_string(count));
    };
    note(bones, "bones left out, the model stands as it was bound");
    note(scene.mNumAnimations, "animations left out");
    note(colored, "meshes whose vertex colours are left out");
    note(textured, "meshes whose texture coordinates after the first are left out");
    note(linesAndPoints, "lines and points left out");
    note(trianglesAgainstNormals, "triangles that face away from their normals (--flip-winding, or --crease)");
    note(meshesWithoutNormals,
         "meshes without normals, smoothed up to " + std::to_string(std::lround(crease)) + " degrees");
    note(meshesWithoutTexture, "meshes without texture coordinates, given one metre a repeat");
}

void SceneReader::noteExtents()
{
    float largest = 0;
    for (const SourcePart &part : result.parts)
    {
        const MeshBounds bounds = part.mesh.getBounds();
        for (int axis = 0; axis < 3; ++axis)
            largest = std::max(largest, bounds.maximum[axis] - bounds.minimum[axis]);
    }
    if (largest <= largestModel && largest >= smallestModel)
        return;
    char text[64];
    std::snprintf(text, sizeof text, "%.3g m across; if the unit is wrong, --scale", largest);
    result.notes.push_back(text);
}

std::string SceneReader::explainEmpty() const
{
    if (linesAndPoints)
        return "it holds lines and points and no triangle. Export faces.";
    if (scene.mNumAnimations)
        return "it holds animations and no mesh. Export the mesh itself.";
    return "it holds no mesh. Look whether the export was of the selection only.";
}

SourceScene SceneReader::read()
{
    result.fault = findAxes();
    if (result.fault.empty())
        result.fault = readNodes();
    if (!result.fault.empty())
        return std::move(result);
    for (auto &[material, part] : parts)
    {
        finishPart(part, material);
        if (!part.mesh.getIndices().empty())
            result.parts.push_back(std::move(part));
    }
    if (result.parts.empty())
        result.fault = parts.empty() ? explainEmpty()
                                     : "none of its triangles has an area. Look for a scale of zero, or a unit far "
                                       "too small (--scale).";
    noteLeftOut();
    noteExtents();
    return std::move(result);
}

std::string explainUnreadable(const std::string &name)
{
    std::error_code ignored;
    if (std::string cause = port::explainMissingFile(name.c_str()); !cause.empty())
        return cause;
    if (std::filesystem::is_directory(name, ignored))
        return "it is a folder.";
    if (!std::filesystem::is_regular_file(name, ignored))
        return "it is no plain file.";
    if (std::filesystem::file_size(name, ignored) == 0)
        return "it is empty. Export it again.";
    std::string extension = std::filesystem::path(name).extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    if (std::find(std::begin(readable), std::end(readable), extension) == std::end(readable))
        return "its format " + inQuotes(extension) + " is unknown here. Export it as .glb, .gltf, .fbx or .obj.";
    return "";
}

/// The first face with too many corners to be cut up; empty if there is none.
std::string explainCorners(const aiScene &scene)
{
    for (unsigned m = 0; m < scene.mNumMeshes; ++m)
        for (unsigned i = 0; i < scene.mMeshes[m]->mNumFaces; ++i)
            if (const unsigned corners = scene.mMeshes[m]->mFaces[i].mNumIndices; corners > mostCorners)
                return "face " + std::to_string(i) + " of mesh " + inQuotes(scene.mMeshes[m]->mName.C_Str()) + " has " +
                       std::to_string(corners) + " corners, and " + std::to_string(mostCorners) +
                       " are the most. Triangulate it in the modelling tool.";
    return "";
}

/// Has the library read the file; returns what is wrong with it.
std::string readFile(Assimp::Importer &importer, const SourceFiles &files, const ImportOptions &options)
{
    const aiScene *scene = importer.ReadFile(options.input, 0);
    if (!files.getRefusal().empty())
        return files.getRefusal();
    if (scene)
        if (std::string fault = explainCorners(*scene); !fault.empty())
            return fault;
    // The engine's textures start at the top; the importer's library counts v from the bottom, whatever the file does.
    noteStep("cutting its faces into triangles");
    const unsigned steps = aiProcess_Triangulate | (options.flipV ? 0u : unsigned(aiProcess_FlipUVs));
    if (!scene || !importer.ApplyPostProcessing(steps))
        return std::string("it cannot be read (") + importer.GetErrorString() +
               "). Look whether it is what its name says, and export it again.";
    return "";
}

} // namespace

SourceScene readScene(const ImportOptions &options)
{
    SourceScene scene;
    scene.fault = explainUnreadable(options.input);
    if (!scene.fault.empty())
        return scene;
    Assimp::Importer importer;
    auto *files = new SourceFiles(options.input); // the importer deletes it
    importer.SetIOHandler(files);
    scene.fault = readFile(importer, *files, options);
    if (!scene.fault.empty())
        return scene;
    scene = SceneReader(options, *importer.GetScene(), *files).read();
    if (!files->getMissing().empty())
        scene.notes.push_back("it names '" + files->getMissing() + "', which is missing");
    return scene;
}
