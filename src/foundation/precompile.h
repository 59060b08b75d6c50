// precompile: constants and small numeric helpers that every spatial file uses.
#pragma once

constexpr float PI = 3.1415927f;

/// Tolerance of comparisons whose caller states none of its own.
constexpr float EPSILON = 1e-6f;

constexpr float RadToDeg(float radians)
{
    return radians * 57.295776f;
}

constexpr float DegToRad(float degrees)
{
    return degrees * 0.017453292f;
}

/// Value between a (t 0) and b (t 1), and beyond them outside 0..1.
template <class T, class Factor>
constexpr T lerp(const T &a, const T &b, Factor t)
{
    return static_cast<T>(a + (b - a) * t);
}

/// The value, moved to the nearer end where it lies outside left..right.
template <class T>
constexpr T clamp(T value, T left, T right)
{
    if (value < left)
        return left;
    return right < value ? right : value;
}

template <class T>
constexpr T saturate(T value)
{
    return clamp(value, T(0), T(1));
}

/// Smooth step from 0 at leftEdge to 1 at rightEdge, with zero slope at both; edges that coincide make a hard step.
constexpr float smoothstep(float leftEdge, float rightEdge, float value)
{
    if (leftEdge == rightEdge)
        return value < leftEdge ? 0.0f : 1.0f;
    const float t = saturate((value - leftEdge) / (rightEdge - leftEdge));
    return t * t * (3.0f - 2.0f * t);
}
