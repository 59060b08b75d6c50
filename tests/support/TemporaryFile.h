// TemporaryFile: a file of a test's own, gone with it.
#pragma once

#include "foundation/KVString.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

/// A file in the system's temporary folder, removed at the end of its scope.
class TemporaryFile
{
public:
    explicit TemporaryFile(const std::string &name = "model.kaVelModel")
        : path(std::filesystem::temp_directory_path() / ("kv" + std::to_string(getpid()) + name))
    {
    }
    ~TemporaryFile() { std::filesystem::remove(path); }

    String name() const { return String::copyFrom(path.string()); }
    void write(const std::vector<char> &bytes) const
    {
        std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    std::vector<char> read() const
    {
        std::ifstream in(path, std::ios::binary);
        return std::vector<char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    const std::filesystem::path path;
};
