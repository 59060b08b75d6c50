// dxerr: names and descriptions of the graphics layer's result codes.
#pragma once

#include "port/win32/WinTypes.h"

/// Symbolic name of a result code, "Unknown" for a code that has none here.
const char *DXGetErrorStringA(HRESULT code);

/// One-line description of a result code, "n/a" for a code that has none here.
const char *DXGetErrorDescriptionA(HRESULT code);
