// ImportOptions: what the author asked of the importer, from the words of the command line.
#pragma once

#include "foundation/Matrix4.h"

#include <optional>
#include <string>
#include <vector>

/// A direction along an axis of the source file, as "y" or "-z" on the command line.
struct SourceAxis
{
    int axis = 0;   ///< 0 x, 1 y, 2 z
    float sign = 1; ///< 1 or -1

    Vec4 direction() const;
};

/// Everything that can be asked of one import.
struct ImportOptions
{
    std::string input;
    std::string output;               ///< path of the model file
    std::string textures;             ///< folder of the texture files
    float scale = 1;                  ///< on top of the file's own unit
    std::optional<SourceAxis> up;     ///< the file's own word, else +y
    std::optional<SourceAxis> front;  ///< the file's own word, else what goes with `up`
    bool flipV = false;               ///< for textures that come out upside down
    bool flipWinding = false;         ///< for a model that comes out inside out
    bool flipGreen = false;           ///< for normal maps whose green leans down the picture already
    bool withTextures = true;         ///< bring in the materials' pictures and colors
    bool split = false;               ///< one file a material in place of one for all
    std::optional<float> creaseAngle; ///< radians; given, it replaces the file's normals

    /// Whether the file is of the one format whose names are bound to its own folder.
    bool isGltf() const;
};

/// What the words of a command line came to.
struct ParsedOptions
{
    ImportOptions options;
    std::string fault; ///< a sentence that names the word and the remedy; empty when all is well
    bool wantsHelp = false;
};

/// Reads the words after the program's name.
ParsedOptions parseOptions(const std::vector<std::string> &words);

/// The help text.
std::string usage();

/// Turns the source's axes into the engine's: its front becomes +z, its up +y, its own right hand +x.
///
/// A model file is drawn in right-handed axes, so the result mirrors.
/// @return nothing when up and front lie on one axis
std::optional<Matrix4> axesToEngine(const SourceAxis &up, const SourceAxis &front);

/// Where a model looks that stands up along an axis: +z for y, -y for z, +z for x.
SourceAxis usualFront(const SourceAxis &up);
