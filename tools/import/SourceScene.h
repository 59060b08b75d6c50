// SourceScene: a modelling tool's file, read and brought into the engine's units and axes.
#pragma once

#include "ImportOptions.h"
#include "SourceSurface.h"

#include "assets/building/MeshBuilder.h"

#include <string>
#include <vector>

/// The triangles that wear one material.
struct SourcePart
{
    std::string material;  ///< as the file names it
    MeshBuilder mesh;      ///< engine axes, metres, with normals and tangents
    SourceSurface surface; ///< what the material wears; without maps where textures are not wanted
};

/// What came out of one file.
struct SourceScene
{
    std::vector<SourcePart> parts;  ///< in the order of the file's materials, none empty
    std::vector<std::string> notes; ///< sentences on what was made up or left out
    std::string fault;              ///< why there is nothing; empty after success
};

/// Reads a file with all its nodes' transforms applied; what is wrong with it stands in `fault`.
SourceScene readScene(const ImportOptions &options);
