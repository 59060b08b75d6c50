// ModelFile: reads and writes whole .kaVelModel files, one or more meshes each.
#pragma once

#include "assets/models/Mesh.h"

#include "foundation/KVString.h"

#include <cstdint>
#include <iosfwd>
#include <vector>

/// The meshes of one model file in memory.
///
/// A plain value, not part of the object tree. Faults of a file go to the standard error stream, one line each.
class ModelFile
{
public:
    typedef std::vector<Mesh> MeshVec;

    void addMesh(const Mesh &mesh);

    /// Appends the meshes of a file.
    ///
    /// On failure the chunks before the faulty one have been appended. A last chunk that ends early loads with zeros
    /// in place of what is missing; one that claims far more than the file holds, or whose sizes contradict its
    /// counts, fails before any memory is taken for it.
    /// @return false when the file is missing or broken; the reason has gone to the standard error stream
    bool load(const String &filename);

    /// Writes all meshes; false when the file could not be written whole.
    bool save(const String &filename) const;

    /// Concatenates all meshes into the first and drops the others.
    void mergeAllMeshes();

    /// Mesh by number. A number out of range is an assertion and gives an empty mesh.
    const Mesh &getMesh(int idx) const;

    /// Moves a mesh out, leaving an empty one in its place. A number out of range is an assertion.
    Mesh takeMesh(int idx);

    /// What was wrong with the file of the last load, in short; empty if nothing was.
    const String &getFault() const { return fault; }

    int getMeshCount() const { return static_cast<int>(meshes.size()); }
    ModelFileHeader getFileHeader() const;

private:
    bool readChunk(std::istream &in, std::uint64_t fileSize, const String &filename);

    bool fail(const char *what, const String &filename, const char *advice = "");

    MeshVec meshes;
    String fault; ///< also of a file that loaded, with zeros in place of what it lacks
};
