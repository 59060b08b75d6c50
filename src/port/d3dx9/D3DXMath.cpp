// D3DXMath: row-vector matrix operations of the graphics layer.
#include "port/d3dx9/D3DXMath.h"

#include <cmath>
#include <utility>

namespace
{

// Determinants of the 2x2 blocks in rows 0 and 1 (`upper`) and in rows 2 and 3 (`lower`), by column pair.
struct Minors
{
    double upper[6];
    double lower[6];
};

constexpr int COLUMN_PAIRS[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};

Minors minorsOf(const D3DXMATRIX &a)
{
    Minors minors;
    for (int pair = 0; pair < 6; ++pair)
    {
        const int c = COLUMN_PAIRS[pair][0];
        const int d = COLUMN_PAIRS[pair][1];
        minors.upper[pair] = double(a.m[0][c]) * a.m[1][d] - double(a.m[0][d]) * a.m[1][c];
        minors.lower[pair] = double(a.m[2][c]) * a.m[3][d] - double(a.m[2][d]) * a.m[3][c];
    }
    return minors;
}

double determinantOf(const Minors &minors)
{
    const auto &s = minors.upper;
    const auto &c = minors.lower;
    return s[0] * c[5] - s[1] * c[4] + s[2] * c[3] + s[3] * c[2] - s[4] * c[1] + s[5] * c[0];
}

D3DXMATRIX inverseOf(const D3DXMATRIX &a, const Minors &minors, double determinant)
{
    const auto &m = a.m;
    const auto &s = minors.upper;
    const auto &c = minors.lower;
    const double entries[4][4] = {
        {m[1][1] * c[5] - m[1][2] * c[4] + m[1][3] * c[3], -m[0][1] * c[5] + m[0][2] * c[4] - m[0][3] * c[3],
         m[3][1] * s[5] - m[3][2] * s[4] + m[3][3] * s[3], -m[2][1] * s[5] + m[2][2] * s[4] - m[2][3] * s[3]},
        {-m[1][0] * c[5] + m[1][2] * c[2] - m[1][3] * c[1], m[0][0] * c[5] - m[0][2] * c[2] + m[0][3] * c[1],
         -m[3][0] * s[5] + m[3][2] * s[2] - m[3][3] * s[1], m[2][0] * s[5] - m[2][2] * s[2] + m[2][3] * s[1]},
        {m[1][0] * c[4] - m[1][1] * c[2] + m[1][3] * c[0], -m[0][0] * c[4] + m[0][1] * c[2] - m[0][3] * c[0],
         m[3][0] * s[4] - m[3][1] * s[2] + m[3][3] * s[0], -m[2][0] * s[4] + m[2][1] * s[2] - m[2][3] * s[0]},
        {-m[1][0] * c[3] + m[1][1] * c[1] - m[1][2] * c[0], m[0][0] * c[3] - m[0][1] * c[1] + m[0][2] * c[0],
         -m[3][0] * s[3] + m[3][1] * s[1] - m[3][2] * s[0], m[2][0] * s[3] - m[2][1] * s[1] + m[2][2] * s[0]}};
    D3DXMATRIX inverse;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            inverse.m[row][column] = static_cast<FLOAT>(entries[row][column] / determinant);
    return inverse;
}

} // namespace

D3DXMATRIX *D3DXMatrixIdentity(D3DXMATRIX *out)
{
    *out = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    return out;
}

D3DXMATRIX *D3DXMatrixMultiply(D3DXMATRIX *out, const D3DXMATRIX *first, const D3DXMATRIX *second)
{
    D3DXMATRIX product;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            product.m[row][column] = first->m[row][0] * second->m[0][column] + first->m[row][1] * second->m[1][column] +
                                     first->m[row][2] * second->m[2][column] + first->m[row][3] * second->m[3][column];
    *out = product;
    return out;
}

D3DXMATRIX *D3DXMatrixInverse(D3DXMATRIX *out, FLOAT *determinant, const D3DXMATRIX *matrix)
{
    const Minors minors = minorsOf(*matrix);
    const double found = determinantOf(minors);
    if (determinant)
        *determinant = static_cast<FLOAT>(found);
    if (found == 0 || !std::isfinite(found))
        return nullptr;
    *out = inverseOf(*matrix, minors, found);
    return out;
}

D3DXMATRIX *D3DXMatrixTranspose(D3DXMATRIX *out, const D3DXMATRIX *matrix)
{
    *out = *matrix;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < row; ++column)
            std::swap(out->m[row][column], out->m[column][row]);
    return out;
}

D3DXMATRIX *D3DXMatrixPerspectiveFovLH(D3DXMATRIX *out, FLOAT fieldOfViewY, FLOAT aspect, FLOAT nearZ, FLOAT farZ)
{
    const FLOAT yScale = 1.0f / std::tan(fieldOfViewY / 2);
    const FLOAT depth = farZ / (farZ - nearZ);
    *out = {{{yScale / aspect, 0, 0, 0}, {0, yScale, 0, 0}, {0, 0, depth, 1}, {0, 0, -nearZ * depth, 0}}};
    return out;
}

D3DXMATRIX *D3DXMatrixOrthoLH(D3DXMATRIX *out, FLOAT width, FLOAT height, FLOAT nearZ, FLOAT farZ)
{
    const FLOAT depth = 1 / (farZ - nearZ);
    *out = {{{2 / width, 0, 0, 0}, {0, 2 / height, 0, 0}, {0, 0, depth, 0}, {0, 0, -nearZ * depth, 1}}};
    return out;
}
