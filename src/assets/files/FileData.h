// FileData: the contents of a file in memory.
#pragma once

#include "object/tree/Object.h"

#include <cstdint>

/// The bytes of a file that were fetched through a provider. Whoever fetched it murders it.
class FileData : public Object
{
    KV_REFLECTED(FileData)
public:
    /// The first byte; null for a file without any. Valid as long as this object.
    virtual const std::uint8_t *getData() = 0;
    /// Bytes at getData.
    virtual std::int64_t getSize() = 0;
};
