// d3dx9effect: effects, that is named techniques of passes with their shaders, states and parameters.
//
// The text format of an effect is ours; src/port/d3dx9/README.md describes it.
#pragma once

#include "port/d3d9/d3d9.h"

/// Names a parameter or technique inside one effect; null is none.
using D3DXHANDLE = const char *;

struct ID3DXEffectPool;
struct ID3DXInclude;

/// A preprocessor definition; an array of them ends with a null name.
struct D3DXMACRO
{
    LPCSTR Name;
    LPCSTR Definition;
};

constexpr DWORD D3DXFX_DONOTSAVESTATE = 1u << 0;

constexpr DWORD D3DXSHADER_DEBUG = 1u << 0;
constexpr DWORD D3DXSHADER_SKIPVALIDATION = 1u << 1;
constexpr DWORD D3DXSHADER_SKIPOPTIMIZATION = 1u << 2;
constexpr DWORD D3DXSHADER_OPTIMIZATION_LEVEL3 = 1u << 15;

/// A block of bytes handed out by a compiler: here a text with its closing zero.
struct ID3DXBuffer : IUnknown
{
    virtual LPVOID GetBufferPointer() = 0;
    virtual DWORD GetBufferSize() = 0;
};

struct ID3DXEffect : IUnknown
{
    /// The parameter of that name, or null; `parent` is null, since our parameters do not nest.
    virtual D3DXHANDLE GetParameterByName(D3DXHANDLE parent, LPCSTR name) = 0;
    /// Stores a value that is read at the next BeginPass or CommitChanges.
    ///
    /// `bytes` is at least the parameter's size: 4 a float, 16 a float4, 64 a float4x4 (row-vector matrix, row by
    /// row), times the elements of an array; a texture is its pointer, of pointer size, and is kept by reference.
    /// Fewer bytes or an unknown handle fail with D3DERR_INVALIDCALL.
    virtual HRESULT SetValue(D3DXHANDLE parameter, LPCVOID data, UINT bytes) = 0;

    virtual D3DXHANDLE GetTechniqueByName(LPCSTR name) = 0;
    virtual HRESULT SetTechnique(D3DXHANDLE technique) = 0;

    /// Starts the current technique and tells its number of passes; with flags 0 the states it changes are saved.
    virtual HRESULT Begin(UINT *passes, DWORD flags) = 0;
    virtual HRESULT BeginPass(UINT pass) = 0;
    /// Brings values that were set inside a pass to the shaders.
    virtual HRESULT CommitChanges() = 0;
    virtual HRESULT EndPass() = 0;
    /// Ends the technique and gives the saved states back.
    virtual HRESULT End() = 0;

    /// Gives up everything that a Reset forbids to be alive.
    virtual HRESULT OnLostDevice() = 0;
    virtual HRESULT OnResetDevice() = 0;
};

/// Reads and compiles an effect file; the path is a designed one.
///
/// `errors` receives the compiler's text, or null if there is none: errors on failure, each with file, line, technique
/// and pass; warnings on success, which a driver that has compiled the same text before may keep to itself.
/// Definitions are given to every shader; `include` and `pool` must be null.
/// @return D3D_OK, D3DXERR_INVALIDDATA for a broken or missing file, D3DERR_INVALIDCALL for bad arguments
HRESULT D3DXCreateEffectFromFileA(IDirect3DDevice9 *device, LPCSTR file, const D3DXMACRO *defines,
                                  ID3DXInclude *include, DWORD flags, ID3DXEffectPool *pool, ID3DXEffect **effect,
                                  ID3DXBuffer **errors);
