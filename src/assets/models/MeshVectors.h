// MeshVectors: two and three floats as they are stored in a vertex. Vec4 is the type to calculate with.
#pragma once

#include <concepts>

/// Two floats in a vertex, a texture coordinate as a rule. Holds no default, so that big buffers stay unwritten.
struct MeshVector2
{
    float x, y;

    MeshVector2 &operator+=(const MeshVector2 &rhs) { return *this = {x + rhs.x, y + rhs.y}; }
    MeshVector2 &operator-=(const MeshVector2 &rhs) { return *this = {x - rhs.x, y - rhs.y}; }
    MeshVector2 &operator*=(float factor) { return *this = {x * factor, y * factor}; }
    MeshVector2 &operator/=(float divisor) { return *this = {x / divisor, y / divisor}; }
    MeshVector2 operator-() const { return {-x, -y}; }
    bool operator==(const MeshVector2 &) const = default;
};

/// Three floats in a vertex: a position or a direction in the mesh's own space.
struct MeshVector3
{
    float x, y, z;

    MeshVector3 &operator+=(const MeshVector3 &rhs) { return *this = {x + rhs.x, y + rhs.y, z + rhs.z}; }
    MeshVector3 &operator-=(const MeshVector3 &rhs) { return *this = {x - rhs.x, y - rhs.y, z - rhs.z}; }
    MeshVector3 &operator*=(float factor) { return *this = {x * factor, y * factor, z * factor}; }
    MeshVector3 &operator/=(float divisor) { return *this = {x / divisor, y / divisor, z / divisor}; }
    MeshVector3 operator-() const { return {-x, -y, -z}; }
    bool operator==(const MeshVector3 &) const = default;
};

/// What the arithmetic below is for.
template <class T>
concept MeshVector = std::same_as<T, MeshVector2> || std::same_as<T, MeshVector3>;

template <MeshVector T>
T operator+(T lhs, const T &rhs)
{
    return lhs += rhs;
}
template <MeshVector T>
T operator-(T lhs, const T &rhs)
{
    return lhs -= rhs;
}
template <MeshVector T>
T operator*(T lhs, float factor)
{
    return lhs *= factor;
}
template <MeshVector T>
T operator*(float factor, T rhs)
{
    return rhs *= factor;
}
template <MeshVector T>
T operator/(T lhs, float divisor)
{
    return lhs /= divisor;
}
