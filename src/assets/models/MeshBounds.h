// MeshBounds: the axis-aligned box around a mesh.
#pragma once

#include "assets/models/Mesh.h"

#include "foundation/Vector.h"

/// The axis-aligned box around a mesh, in its own space, metres.
struct MeshBounds
{
    Vec4 minimum{0, 0, 0, 1};
    Vec4 maximum{0, 0, 0, 1};
};

/// The box around vertices; both corners at the origin without any.
MeshBounds boundsOf(const Mesh::VertexBufferType &vertices);
