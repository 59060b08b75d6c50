// VertexSplitter: lets corners that share a vertex go apart.
#pragma once

#include "assets/models/Mesh.h"

#include <cstdint>
#include <cstring>
#include <vector>

/// Gives each corner of a mesh the vertex it wants, and corners that want the same the same one.
///
/// The first want replaces the vertex, others are appended. Borrows the vertices for its life.
class VertexSplitter
{
public:
    explicit VertexSplitter(Mesh::VertexBufferType &vertices) : vertices(vertices), next(vertices.size(), untouched) {}

    /// Number of the vertex that is to stand in place of `original` at one corner.
    std::uint32_t place(std::uint32_t original, const DefaultMeshVertex &wanted)
    {
        if (next[original] == untouched)
        {
            vertices[original] = wanted;
            next[original] = last;
            return original;
        }
        std::uint32_t i = original;
        for (; !isSame(vertices[i], wanted); i = next[i])
            if (next[i] == last)
            {
                next[i] = static_cast<std::uint32_t>(vertices.size());
                next.push_back(last);
                vertices.push_back(wanted);
                return next[i];
            }
        return i;
    }

private:
    static constexpr std::uint32_t untouched = ~std::uint32_t(0), last = untouched - 1;

    static bool isSame(const DefaultMeshVertex &a, const DefaultMeshVertex &b)
    {
        // By bits: a vertex that holds no number is still the same as itself.
        // NOLINTNEXTLINE(bugprone-suspicious-memory-comparison)
        return std::memcmp(&a, &b, sizeof(DefaultMeshVertex)) == 0;
    }

    Mesh::VertexBufferType &vertices;
    std::vector<std::uint32_t> next; ///< the next vertex made from the same original
};
