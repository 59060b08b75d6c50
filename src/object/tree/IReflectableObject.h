// IReflectableObject: anything that can name its own class.
#pragma once

#include "object/tree/ReflectorPtr.h"

/// An instance whose class can be asked for at run time.
class IReflectableObject
{
public:
    virtual ~IReflectableObject() = default;
    /// The record of the object's real class.
    virtual ReflectorPtr getType() const = 0;
};
