// d3dx9tex: textures made empty or from image files.
#pragma once

#include "port/d3d9/d3d9.h"

#include <string>

constexpr UINT D3DX_DEFAULT = 0xffffffffu;

/// Makes an empty texture; `levels` 0 or D3DX_DEFAULT asks for the full chain.
HRESULT D3DXCreateTexture(IDirect3DDevice9 *device, UINT width, UINT height, UINT levels, DWORD usage, D3DFORMAT format,
                          D3DPOOL pool, IDirect3DTexture9 **texture);

/// Makes a managed texture from a DDS, PNG, TGA, JPEG or BMP file, with all its smaller levels.
///
/// The path is a designed one. Levels a DDS file brings are taken as they are, compressed ones too where hardware reads
/// them; those it lacks are made for uncompressed formats. On failure port::lastTextureError() tells file and cause.
/// @return D3D_OK, D3DERR_NOTFOUND for a missing file, D3DXERR_INVALIDDATA for one that cannot be read
HRESULT D3DXCreateTextureFromFileA(IDirect3DDevice9 *device, LPCSTR file, IDirect3DTexture9 **texture);

namespace port
{

/// Why the last D3DXCreateTextureFromFileA failed: file, cause, and a file whose name differs only in letter case.
const std::string &lastTextureError();

} // namespace port
