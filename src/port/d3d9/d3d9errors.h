// d3d9errors: the results that Direct3D 9 and D3DX 9 operations return.
#pragma once

#include "port/win32/WinTypes.h"

constexpr HRESULT D3D_OK = 0;
constexpr HRESULT D3DERR_OUTOFVIDEOMEMORY = static_cast<HRESULT>(0x8876017Cu);
constexpr HRESULT D3DERR_WRONGTEXTUREFORMAT = static_cast<HRESULT>(0x88760818u);
constexpr HRESULT D3DERR_DRIVERINTERNALERROR = static_cast<HRESULT>(0x88760827u);
constexpr HRESULT D3DERR_NOTFOUND = static_cast<HRESULT>(0x88760866u);
constexpr HRESULT D3DERR_MOREDATA = static_cast<HRESULT>(0x88760867u);
constexpr HRESULT D3DERR_DEVICELOST = static_cast<HRESULT>(0x88760868u);
constexpr HRESULT D3DERR_DEVICENOTRESET = static_cast<HRESULT>(0x88760869u);
constexpr HRESULT D3DERR_NOTAVAILABLE = static_cast<HRESULT>(0x8876086Au);
constexpr HRESULT D3DERR_INVALIDCALL = static_cast<HRESULT>(0x8876086Cu);
constexpr HRESULT D3DXERR_INVALIDDATA = static_cast<HRESULT>(0x88760B59u);
