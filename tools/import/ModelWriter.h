// ModelWriter: puts an imported scene into model and texture files.
#pragma once

#include "ImportOptions.h"
#include "SourceScene.h"

#include <string>
#include <vector>

/// What became of the writing.
struct WrittenModels
{
    std::vector<std::string> lines; ///< one a file: its name, counts and bounds; one a surface
    std::vector<std::string> notes; ///< sentences on what the author may not expect
    std::string fault;              ///< why nothing was written; empty after success
};

/// Writes one model file, or one a material, under the names that the options ask for, and the maps of each surface.
///
/// A surface is named like its model, or like the model and the material where one model holds several: `chair` has
/// chairDiffuse.dds, chairNormal.dds and so on.
/// Files are written beside their names and moved there when all are whole: a failure to write leaves what was there
/// before.
WrittenModels writeModels(const ImportOptions &options, const SourceScene &scene);
