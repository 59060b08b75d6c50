// Matrix4: builders, inverse and conversions.
#include "foundation/Matrix4.h"

#include "foundation/Quaternion.h"

#include <algorithm>
#include <cmath>

static_assert(sizeof(Matrix4) == 64);

namespace
{

/// Determinant of what is left without one row and one column.
float minorOf(const float (&m)[4][4], int row, int column)
{
    const int r0 = row == 0, r1 = row <= 1 ? 2 : 1, r2 = row <= 2 ? 3 : 2;
    const int c0 = column == 0, c1 = column <= 1 ? 2 : 1, c2 = column <= 2 ? 3 : 2;
    return m[r0][c0] * (m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1]) -
           m[r0][c1] * (m[r1][c0] * m[r2][c2] - m[r1][c2] * m[r2][c0]) +
           m[r0][c2] * (m[r1][c0] * m[r2][c1] - m[r1][c1] * m[r2][c0]);
}

float cofactorOf(const float (&m)[4][4], int row, int column)
{
    const float minor = minorOf(m, row, column);
    return (row + column) % 2 == 0 ? minor : -minor;
}

} // namespace

Matrix4::Matrix4(float m00, float m01, float m02, float m10, float m11, float m12, float m20, float m21, float m22)
    : data{{m00, m01, m02, 0}, {m10, m11, m12, 0}, {m20, m21, m22, 0}, {0, 0, 0, 1}}
{
}

void Matrix4::zero()
{
    for (auto &row : data)
        for (float &entry : row)
            entry = 0;
}

void Matrix4::scale3(const Vec4 &pos)
{
    scale(pos.x, pos.y, pos.z);
}

void Matrix4::scale(float x, float y, float z)
{
    *this = Matrix4(x, 0, 0, 0, y, 0, 0, 0, z);
}

void Matrix4::translate(const Vec4 &pos)
{
    *this = Matrix4();
    data[0][3] = pos.x;
    data[1][3] = pos.y;
    data[2][3] = pos.z;
}

void Matrix4::basis(const Vec4 &x, const Vec4 &y, const Vec4 &z)
{
    *this = Matrix4(x.x, y.x, z.x, x.y, y.y, z.y, x.z, y.z, z.z);
}

void Matrix4::setBlockInertiaTensor(const Vec4 &halfSizes, float mass)
{
    const Vec4 squares = halfSizes * halfSizes;
    const float third = mass / 3;
    setInertiaTensorCoeffs(third * (squares.y + squares.z), third * (squares.x + squares.z),
                           third * (squares.x + squares.y));
}

void Matrix4::setInertiaTensorCoeffs(float ix, float iy, float iz, float ixy, float ixz, float iyz)
{
    *this = Matrix4(ix, -ixy, -ixz, -ixy, iy, -iyz, -ixz, -iyz, iz);
}

float Matrix4::determinant() const
{
    float sum = 0;
    for (int column = 0; column < 4; ++column)
        sum += data[0][column] * cofactorOf(data, 0, column);
    return sum;
}

// This huge mess really does calculate the inverse of a matrix, believe in it.
Matrix4 Matrix4::inverse() const
{
    const float scale = 1 / determinant();
    Matrix4 result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            result.data[column][row] = cofactorOf(data, row, column) * scale;
    return result;
}

Matrix4 Matrix4::transpose() const
{
    Matrix4 result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            result.data[column][row] = data[row][column];
    return result;
}

// Not the exact inverse of Quaternion::generateRotation: the signs of i and k are part of the format that callers
// and stored rotations rely on.
Quaternion Matrix4::toQuaternion() const
{
    // The sum vanishes for a half turn; rounding can leave it just below zero, where it has no root.
    const float sum = std::max(data[0][0] + data[1][1] + data[2][2] + 1, 0.0f);
    Quaternion result;
    result.r = std::sqrt(sum) * 0.5f;
    const float divisor = 4 * result.r;
    if (divisor == 0)
    {
        result.i = data[0][1];
        result.j = data[1][1];
        result.k = data[2][1];
    }
    else
    {
        result.i = (data[1][2] - data[2][1]) / divisor;
        result.j = -(data[2][0] - data[0][2]) / divisor;
        result.k = (data[0][1] - data[1][0]) / divisor;
    }
    result.normalize();
    return result;
}

D3DXMATRIX Matrix4::directXMatrix() const
{
    D3DXMATRIX result;
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 4; ++column)
            result.m[row][column] = data[row][column];
    return result;
}
