// File: one name of the file system, with the copies of it that providers have.
#pragma once

#include "engine/systems/RequestHandle.h"

#include "foundation/ErrorCode.h"
#include "object/tree/Object.h"
#include "object/tree/ReflectorPtr.h"

#include <cstdint>
#include <map>

class FileSystemProvider;
class ProviderFile;

/// When a file was changed last, seconds since the beginning of 1970, UTC.
typedef std::int64_t FileTime;

/// A file by its name, wherever its data are.
///
/// Made and owned by FileSystem at the first sight of a name. What it tells is that of its newest copy.
class File : public Object
{
    KV_REFLECTED(File)
public:
    /// What a name stands for.
    enum Type
    {
        FILE = 0,
        DIRECTORY = 1,
        INVALID = 2 ///< nothing that can be read
    };

    typedef std::map<Handle<FileSystemProvider>, Handle<ProviderFile>> FileCopyMap;

    File() = default;

    /// Adds a provider's copy, in place of one that it added before.
    void addCopy(Handle<FileSystemProvider> fsp, Handle<ProviderFile> copy);
    /// Forgets the copy of a provider; one that has none is ignored.
    void removeCopy(Handle<FileSystemProvider> fsp);

    /// Fetches the data of the newest copy.
    /// @return what ProviderFile says, LOST_ASSET without a copy; the callback is then not called
    ErrorCode startGetFileData(ReflectorPtr callback, RequestHandle h);

    /// What a provider has of this file; an invalid handle if nothing.
    Handle<ProviderFile> getCopy(Handle<FileSystemProvider> fsp);
    /// The copy with the greatest modification time, of equal ones that of the older provider; dead copies do not count.
    Handle<ProviderFile> getNewestCopy();
    /// INVALID without a copy.
    Type getFileType();
    /// "ZOMG!" without a copy.
    String getFileName();
    /// 0 without a copy.
    FileTime getModificationTime();

private:
    FileCopyMap fileCopies;
};
