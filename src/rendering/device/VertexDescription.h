// VertexDescription: what a vertex type is made of, in the engine's own terms.
#pragma once

#include "assets/models/Mesh.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

#include <cstddef>
#include <vector>

/// What an element of a vertex means.
enum VertexElementSemantic
{
    VES_POSITION = 0,
    VES_NORMAL = 1,
    VES_TANGENT = 2,
    VES_BITANGENT = 3,
    VES_OTHER = 4 ///< takes the next free texture coordinate number
};

/// One element of a vertex: one or several vectors of floats at a fixed place.
struct VertexElement
{
    std::size_t offset; ///< bytes from the start of the vertex
    String elementName;
    VertexElementSemantic semantic;
    int values;  ///< floats in each vector
    int vectors; ///< vectors in the element, back to back
};

/// One vertex type: name, size in bytes, elements.
struct VertexDescription
{
    String vertexTypeName;
    MeshVertexType vertexType = MVT_NONE;
    std::size_t vertexSize = 0; ///< bytes
    std::vector<VertexElement> elements;

    VertexDescription() = default;
    VertexDescription(const String &vertexTypeName_, MeshVertexType vertexType_, std::size_t vertexSize_)
        : vertexTypeName(vertexTypeName_), vertexType(vertexType_), vertexSize(vertexSize_)
    {
    }

    void addElement(std::size_t offset, const String &elementName, VertexElementSemantic semantic, int values,
                    int vectors)
    {
        elements.push_back({offset, elementName, semantic, values, vectors});
    }
};

/// What an instanced draw knows of one object: 84 bytes in the instance buffer.
struct DefaultInstanceVertex
{
    /// Upper three rows of the matrix from model to world: axes in x, y, z and the translation in w of each row.
    /// A shader multiplies row by row: world.x = dot(modelMatrix[0], vec4(position, 1)).
    float modelMatrix[3][4];
    /// Rows of the matrix that turns normals from model to world.
    MeshVector3 normalMatrix[3];
};

static_assert(sizeof(DefaultInstanceVertex) == 84, "the instance layout is part of the effect files' interface");
static_assert(offsetof(DefaultInstanceVertex, normalMatrix) == 48, "the instance layout is part of the interface");
