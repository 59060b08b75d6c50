// FileSystemProvider: a place that files come from, as a folder or an archive.
#pragma once

#include "object/tree/Object.h"

/// Base of the places that FileSystem knows files from.
class FileSystemProvider : public Object
{
    KV_REFLECTED(FileSystemProvider)
public:
    /// Tells FileSystem of every file here, through addFileCopy.
    virtual void loadFileInfo() = 0;
};
