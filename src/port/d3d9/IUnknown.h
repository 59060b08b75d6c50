// IUnknown: reference-counted base of the graphics interfaces, and the identifiers they take.
#pragma once

#include "port/win32/WinTypes.h"

/// Base of every interface that is shared by counted references.
///
/// An object starts with one reference, owned by whoever received it from the call that made it.
struct IUnknown
{
    /// Adds a reference and tells the new count.
    virtual ULONG AddRef() = 0;
    /// Gives a reference back and tells the new count; at 0 the object is gone.
    virtual ULONG Release() = 0;

protected:
    virtual ~IUnknown() = default;
};
