// InstanceVertex: what the instance stream tells the default effects of one object, made from its transform.
#pragma once

#include "rendering/device/VertexDescription.h"

#include "engine/transforms/TransformComponent.h"

#include <cstring>

/// The instance record of an object whose model goes into the world by this matrix; normals go by the transform alone.
inline DefaultInstanceVertex makeInstanceVertex(TransformComponent &transform, const Matrix4 &model)
{
    typedef TransformComponent T;
    const Matrix4 normal = transform.getTransformationMatrix(T::TRANSPOSE | T::INVERT);
    DefaultInstanceVertex instance;
    std::memcpy(instance.modelMatrix, model.data, sizeof(instance.modelMatrix));
    for (int row = 0; row < 3; ++row)
        instance.normalMatrix[row] = {normal[row][0], normal[row][1], normal[row][2]};
    return instance;
}
