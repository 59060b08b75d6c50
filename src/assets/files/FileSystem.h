// FileSystem: files by name, gathered from providers.
#pragma once

#include "assets/files/File.h"

#include "engine/systems/System.h"
#include "foundation/KVString.h"

#include <unordered_map>

/// Maps names to files and fetches data through whichever provider has the newest copy.
///
/// No provider comes with the engine, and assets open their paths themselves: this is where a search path or an
/// archive would be hung in.
class FileSystem : public System
{
    KV_REFLECTED(FileSystem)
public:
    FileSystem() = default;

    /// The file of that name; an invalid handle for one that no provider told of.
    Handle<File> getFile(String name);
    /// Fetches the data of a file.
    /// @return what File says, UNKNOWN_KEY for a name that no provider told of
    ErrorCode startGetFileData(String name, ReflectorPtr callback, RequestHandle h);
    /// Adds a provider's copy of a file, which is made at the first sight of its name.
    void addFileCopy(const String &fileName, Handle<FileSystemProvider> fsp, Handle<ProviderFile> copy);

protected:
    void systemStartup() override {}
    void systemShutdown() override { files.clear(); }
    DependencyList systemDependencies() override { return {}; }

private:
    std::unordered_map<String, Handle<File>> files;
};
