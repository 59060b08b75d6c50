// Matrix4: the 4x4 matrix of transforms and inertia tensors.
#pragma once

#include "foundation/Vector.h"
#include "port/d3dx9/D3DXMath.h"

class Quaternion;

/// 4x4 Matrix class
///
/// Row-major in memory; points are column vectors, so that `A * B` applies B first and the translation stands in the
/// last column.
class Matrix4
{
public:
    float data[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}; ///< row, column; the identity

    Matrix4() = default;
    /// Identity with the upper-left 3x3 given row by row.
    Matrix4(float m00, float m01, float m02, float m10, float m11, float m12, float m20, float m21, float m22);

    // Builders: each overwrites the whole matrix.
    void zero();
    void scale3(const Vec4 &pos);
    void scale(float x, float y, float z);
    /// Identity with x, y, z in the last column.
    void translate(const Vec4 &pos);
    /// The three axes in columns 0, 1 and 2.
    void basis(const Vec4 &x, const Vec4 &y, const Vec4 &z);
    /// Inertia tensor of a solid block.
    /// @param halfSizes  half of each edge, metres
    void setBlockInertiaTensor(const Vec4 &halfSizes, float mass);
    /// Symmetric inertia tensor; products of inertia enter with a minus sign.
    void setInertiaTensorCoeffs(float ix, float iy, float iz, float ixy = 0, float ixz = 0, float iyz = 0);

    float determinant() const;
    /// Inverse; a singular matrix yields components that are not finite.
    Matrix4 inverse() const;
    Matrix4 transpose() const;
    Vec4 getColumn(int index) const { return Vec4(data[0][index], data[1][index], data[2][index], data[3][index]); }
    /// Rotation part as a quaternion whose i and k are opposite in sign to those of Quaternion::generateRotation.
    Quaternion toQuaternion() const;
    /// The same sixteen numbers; row-vector use by the graphics layer needs transpose() first.
    D3DXMATRIX directXMatrix() const;

    float *operator[](int row) { return data[row]; }
    const float *operator[](int row) const { return data[row]; }

    friend Matrix4 operator*(const Matrix4 &lhs, const Matrix4 &rhs)
    {
        Matrix4 product;
        for (int row = 0; row < 4; ++row)
            for (int column = 0; column < 4; ++column)
                product.data[row][column] =
                    lhs.data[row][0] * rhs.data[0][column] + lhs.data[row][1] * rhs.data[1][column] +
                    lhs.data[row][2] * rhs.data[2][column] + lhs.data[row][3] * rhs.data[3][column];
        return product;
    }
    Matrix4 &operator*=(const Matrix4 &rhs) { return *this = *this * rhs; }
    /// Transformed column vector, over all four rows and with the vector's w.
    friend Vec4 operator*(const Matrix4 &m, const Vec4 &v)
    {
        Vec4 result;
        for (int row = 0; row < 4; ++row)
            result.v[row] = m.data[row][0] * v.x + m.data[row][1] * v.y + m.data[row][2] * v.z + m.data[row][3] * v.w;
        return result;
    }
    /// Product with the transposed matrix; for a pure rotation, the inverse rotation.
    friend Vec4 operator*(const Vec4 &v, const Matrix4 &m)
    {
        Vec4 result;
        for (int column = 0; column < 4; ++column)
            result.v[column] =
                v.x * m.data[0][column] + v.y * m.data[1][column] + v.z * m.data[2][column] + v.w * m.data[3][column];
        return result;
    }
    Matrix4 &operator*=(float factor)
    {
        for (auto &row : data)
            for (float &entry : row)
                entry *= factor;
        return *this;
    }
    Matrix4 &operator/=(float divisor)
    {
        for (auto &row : data)
            for (float &entry : row)
                entry /= divisor;
        return *this;
    }
    friend Matrix4 operator*(Matrix4 lhs, float factor) { return lhs *= factor; }
    friend Matrix4 operator*(float factor, Matrix4 rhs) { return rhs *= factor; }
    friend Matrix4 operator/(Matrix4 lhs, float divisor) { return lhs /= divisor; }
};
