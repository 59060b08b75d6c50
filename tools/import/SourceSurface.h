// SourceSurface: what a material of a model's file wears, as texture files of the game.
#pragma once

#include "ImportOptions.h"
#include "SourceFiles.h"

#include <cstddef>
#include <string>
#include <vector>

struct aiMaterial;
struct aiScene;

/// One map of a surface.
struct SurfaceMap
{
    std::string kind; ///< "Diffuse", "Normal", "Specular" or "Emissive", as the file's name ends
    unsigned width = 0, height = 0;
    std::vector<std::byte> file; ///< DDS
};

/// The maps of one material.
struct SourceSurface
{
    std::vector<SurfaceMap> maps;   ///< none for a material that names neither picture nor color
    std::vector<std::string> notes; ///< sentences on what is missing or was left out
    std::string fault;              ///< why the file is refused; empty after success
};

/// Reads a material's pictures, from the file itself or from its folder, and makes maps of them.
///
/// A picture that is not there or cannot be read leaves out its map, with a note.
SourceSurface readSurface(const aiScene &scene, const aiMaterial &material, const SourceFiles &files,
                          const ImportOptions &options);
