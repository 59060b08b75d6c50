// IReflectionProvider: one source of named reflected things.
#pragma once

#include "object/tree/ReflectorPtr.h"

#include "foundation/KVString.h"

/// Finds reflected things by name: the static table is one provider, the scripts are another.
class IReflectionProvider
{
public:
    virtual ~IReflectionProvider() = default;
    /// The thing of this qualified name; null if unknown here.
    virtual ReflectorPtr getType(const String &classname) = 0;
};
