// D3DXMath: vectors, quaternions and row-vector matrices in the published layout of the graphics layer.
#pragma once

#include "port/win32/WinTypes.h"

struct D3DXVECTOR4
{
    FLOAT x, y, z, w;
};

struct D3DXQUATERNION
{
    FLOAT x, y, z, w;
};

/// 4x4 matrix for row vectors: a point is `v * M`, the translation stands in the last row.
struct D3DXMATRIX
{
    FLOAT m[4][4];

    operator FLOAT *() { return &m[0][0]; }
    operator const FLOAT *() const { return &m[0][0]; }
};

D3DXMATRIX *D3DXMatrixIdentity(D3DXMATRIX *out);

/// `out = first * second`; for row vectors `first` applies first. Operands may be the result.
D3DXMATRIX *D3DXMatrixMultiply(D3DXMATRIX *out, const D3DXMATRIX *first, const D3DXMATRIX *second);

/// Inverse of a matrix.
/// @param determinant  receives the determinant; may be null
/// @return out, or null for a singular matrix, where `out` is not written
D3DXMATRIX *D3DXMatrixInverse(D3DXMATRIX *out, FLOAT *determinant, const D3DXMATRIX *matrix);

D3DXMATRIX *D3DXMatrixTranspose(D3DXMATRIX *out, const D3DXMATRIX *matrix);

/// Left-handed perspective projection with depth 0..1.
/// @param fieldOfViewY  whole vertical angle, radians
/// @param aspect        width over height
D3DXMATRIX *D3DXMatrixPerspectiveFovLH(D3DXMATRIX *out, FLOAT fieldOfViewY, FLOAT aspect, FLOAT nearZ, FLOAT farZ);

/// Left-handed orthographic projection of a box around the z axis, with depth 0..1.
D3DXMATRIX *D3DXMatrixOrthoLH(D3DXMATRIX *out, FLOAT width, FLOAT height, FLOAT nearZ, FLOAT farZ);
