// SourceFiles: which files a model may bring along: plain ones of its own folder.
#pragma once

#include <assimp/DefaultIOSystem.h>

#include <string>

/// The files beside a model, as the importer's library opens them.
///
/// A model that came from anywhere must not reach what lies elsewhere: not by "..", not by a whole path and not through
/// a link. Nor does it open what would never end, as a pipe. What was refused is remembered.
class SourceFiles : public Assimp::DefaultIOSystem
{
public:
    enum class Standing
    {
        plain,   ///< may be read
        missing, ///< is not there
        special, ///< a folder, pipe or device
        outside  ///< not in the model's folder
    };

    /// @param model  path of the model file, which may be opened wherever a link leads
    explicit SourceFiles(const std::string &model);

    bool Exists(const char *path) const override;
    Assimp::IOStream *Open(const char *path, const char *mode = "rb") override;

    /// Where a name leads that the model uses.
    std::string pathOf(const std::string &name) const;
    Standing judge(const std::string &path) const;

    /// A sentence on the first file that was refused; empty if none was.
    const std::string &getRefusal() const { return refusal; }
    /// The first file that was asked for and is not there, as the model names it; empty if none was.
    const std::string &getMissing() const { return missing; }

private:
    std::string model, folder; ///< `folder` without links
    std::string refusal, missing;
};
