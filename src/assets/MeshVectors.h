// MeshVectors: two and three floats as they are stored in a vertex. Vec4 is the type to calculate with.
#pragma once

/// Two floats in a vertex, a texture coordinate as a rule. Holds no default, so that big buffers stay unwritten.
struct MeshVector2
{
    float x, y;

    MeshVector2 &operator+=(const MeshVector2 &rhs) { return *this = {x + rhs.x, y + rhs.y}; }
    MeshVector2 &operator-=(const MeshVector2 &rhs) { return *this = {x - rhs.x, y - rhs.y}; }
    MeshVector2 &operator*=(float factor) { return *this = {x * factor, y * factor}; }
    MeshVector2 &operator/=(float divisor) { return *this = {x / divisor, y / divisor}; }
};

inline MeshVector2 operator+(MeshVector2 lhs, const MeshVector2 &rhs)
{
    return lhs += rhs;
}
inline MeshVector2 operator-(MeshVector2 lhs, const MeshVector2 &rhs)
{
    return lhs -= rhs;
}
inline MeshVector2 operator*(MeshVector2 lhs, float factor)
{
    return lhs *= factor;
}
inline MeshVector2 operator*(float factor, MeshVector2 rhs)
{
    return rhs *= factor;
}
inline MeshVector2 operator/(MeshVector2 lhs, float divisor)
{
    return lhs /= divisor;
}
inline MeshVector2 operator-(const MeshVector2 &v)
{
    return {-v.x, -v.y};
}
inline bool operator==(const MeshVector2 &lhs, const MeshVector2 &rhs)
{
    return lhs.x == rhs.x && lhs.y == rhs.y;
}
inline bool operator!=(const MeshVector2 &lhs, const MeshVector2 &rhs)
{
    return !(lhs == rhs);
}

/// Three floats in a vertex: a position or a direction in the mesh's own space.
struct MeshVector3
{
    float x, y, z;

    MeshVector3 &operator+=(const MeshVector3 &rhs) { return *this = {x + rhs.x, y + rhs.y, z + rhs.z}; }
    MeshVector3 &operator-=(const MeshVector3 &rhs) { return *this = {x - rhs.x, y - rhs.y, z - rhs.z}; }
    MeshVector3 &operator*=(float factor) { return *this = {x * factor, y * factor, z * factor}; }
    MeshVector3 &operator/=(float divisor) { return *this = {x / divisor, y / divisor, z / divisor}; }
};

inline MeshVector3 operator+(MeshVector3 lhs, const MeshVector3 &rhs)
{
    return lhs += rhs;
}
inline MeshVector3 operator-(MeshVector3 lhs, const MeshVector3 &rhs)
{
    return lhs -= rhs;
}
inline MeshVector3 operator*(MeshVector3 lhs, float factor)
{
    return lhs *= factor;
}
inline MeshVector3 operator*(float factor, MeshVector3 rhs)
{
    return rhs *= factor;
}
inline MeshVector3 operator/(MeshVector3 lhs, float divisor)
{
    return lhs /= divisor;
}
inline MeshVector3 operator-(const MeshVector3 &v)
{
    return {-v.x, -v.y, -v.z};
}
inline bool operator==(const MeshVector3 &lhs, const MeshVector3 &rhs)
{
    return lhs.x == rhs.x && lhs.y == rhs.y && lhs.z == rhs.z;
}
inline bool operator!=(const MeshVector3 &lhs, const MeshVector3 &rhs)
{
    return !(lhs == rhs);
}
