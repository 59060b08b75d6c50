// ShaderConstantValue: the values that an effect's parameter can be given. Heavy (boost): for source files only.
#pragma once

#include "foundation/KVString.h"
#include "foundation/Matrix4.h"
#include "foundation/Vector.h"
#include "object/tree/Handle.h"

#include <boost/container/small_vector.hpp>
#include <boost/variant/variant.hpp>

#include <utility>
#include <vector>

class TextureAsset;

/// One value for one parameter. A matrix is given as the effect reads it: a row-vector matrix, row by row.
typedef boost::variant<float, Vec4, Matrix4, std::vector<float>, std::vector<int>, std::vector<Vec4>,
                       std::vector<Matrix4>, Handle<TextureAsset>>
    ShaderConstantValue;

/// Parameters in the order they are set. The inline capacity holds the longest list of the engine's own.
typedef boost::container::small_vector<std::pair<String, ShaderConstantValue>, 12> ShaderConstantList;
