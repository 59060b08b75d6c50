// ProviderFile: what one provider knows of one file.
#pragma once

#include "assets/files/File.h"

#include "foundation/KVString.h"

/// One provider's copy of a file; the provider owns it.
class ProviderFile : public Object
{
    KV_REFLECTED(ProviderFile)
public:
    virtual File::Type getFileType() = 0;
    virtual String getFileName() = 0;
    virtual FileTime getModificationTime() = 0;

    /// Fetches the data and calls `callback` with `h` and the handle of the FileData, possibly before this returns.
    /// @return whether the fetching could be started; the callback is not called after a failure
    virtual ErrorCode startGetFileData(ReflectorPtr callback, RequestHandle h) = 0;
};
