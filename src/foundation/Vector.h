// Vector: Vec4, the vector that points, directions and colours share.
#pragma once

#include "foundation/IStringizable.h"
#include "foundation/KVString.h"
#include "foundation/precompile.h"
#include "port/d3dx9/D3DXMath.h"

#include <cmath>

enum VectorComponentID
{
    X_COMPONENT = 0,
    Y_COMPONENT = 1,
    Z_COMPONENT = 2,
    W_COMPONENT = 3,
    R_COMPONENT = 0,
    G_COMPONENT = 1,
    B_COMPONENT = 2,
    A_COMPONENT = 3
};

/// 4 dimensional vector class
///
/// Column vector of single precision. The type gives `w` no meaning: directions carry 0, and a position that is to
/// pick up a matrix's translation carries 1.
class Vec4
{
public:
    union
    {
        __extension__ struct
        {
            float x, y, z, w;
        };
        __extension__ struct
        {
            float r, g, b, a;
        };
        __extension__ struct
        {
            float s, t, p, q;
        };
        float v[4];
    };

    constexpr Vec4(float x = 0, float y = 0, float z = 0, float w = 0) : x(x), y(y), z(z), w(w) {}

    /// Divides all four components by the magnitude, unless that is 1e-6 or less.
    void normalize()
    {
        const float length = magnitude();
        if (length > 1e-6f)
            *this /= length;
    }
    void reset() { *this = Vec4(); }
    /// clamp the vector to reduce floating point error
    void clamp()
    {
        for (float &component : v)
            if (component > -1e-6f && component < 1e-6f)
                component = 0;
    }
    void negate() { *this = -*this; }
    void absoluteValue()
    {
        for (float &component : v)
            component = std::fabs(component);
    }
    /// Turns the vector around an axis through the origin.
    /// @param axis   need not be normalised; its w takes part in the normalisation
    /// @param angle  radians
    void rotate(Vec4 axis, float angle);

    float magnitudeSquared() const { return x * x + y * y + z * z + w * w; }
    float magnitude() const { return std::sqrt(magnitudeSquared()); }
    /// Dot product of x, y and z; w is left out.
    float dot(const Vec4 &rhs) const { return x * rhs.x + y * rhs.y + z * rhs.z; }
    /// Cross product, with w 0.
    Vec4 cross(const Vec4 &rhs) const
    {
        return Vec4(y * rhs.z - z * rhs.y, z * rhs.x - x * rhs.z, x * rhs.y - y * rhs.x, 0);
    }
    D3DXVECTOR4 directXVector() const { return {x, y, z, w}; }
    String toString() const;

    float &operator[](int index) { return v[index]; }
    const float &operator[](int index) const { return v[index]; }
    Vec4 operator-() const { return Vec4(-x, -y, -z, -w); }
    Vec4 &operator+=(const Vec4 &rhs) { return *this = Vec4(x + rhs.x, y + rhs.y, z + rhs.z, w + rhs.w); }
    Vec4 &operator-=(const Vec4 &rhs) { return *this = Vec4(x - rhs.x, y - rhs.y, z - rhs.z, w - rhs.w); }
    /// Product of each component with its counterpart.
    Vec4 &operator*=(const Vec4 &rhs) { return *this = Vec4(x * rhs.x, y * rhs.y, z * rhs.z, w * rhs.w); }
    Vec4 &operator*=(float factor) { return *this = Vec4(x * factor, y * factor, z * factor, w * factor); }
    Vec4 &operator/=(float divisor) { return *this = Vec4(x / divisor, y / divisor, z / divisor, w / divisor); }

    friend Vec4 operator+(Vec4 lhs, const Vec4 &rhs) { return lhs += rhs; }
    friend Vec4 operator-(Vec4 lhs, const Vec4 &rhs) { return lhs -= rhs; }
    friend Vec4 operator*(Vec4 lhs, const Vec4 &rhs) { return lhs *= rhs; }
    friend Vec4 operator*(Vec4 lhs, float factor) { return lhs *= factor; }
    friend Vec4 operator*(float factor, Vec4 rhs) { return rhs *= factor; }
    friend Vec4 operator/(Vec4 lhs, float divisor) { return lhs /= divisor; }
    /// Whether each component differs by at most 1e-6.
    friend bool operator==(const Vec4 &lhs, const Vec4 &rhs)
    {
        return std::fabs(lhs.x - rhs.x) <= 1e-6f && std::fabs(lhs.y - rhs.y) <= 1e-6f &&
               std::fabs(lhs.z - rhs.z) <= 1e-6f && std::fabs(lhs.w - rhs.w) <= 1e-6f;
    }
    friend bool operator!=(const Vec4 &lhs, const Vec4 &rhs) { return !(lhs == rhs); }
};

/// Makes z = x × y and y = z × x and normalises all three; with parallel x and y only z is set, to zero.
void makeOrthonormal(Vec4 &x, Vec4 &y, Vec4 &z);
