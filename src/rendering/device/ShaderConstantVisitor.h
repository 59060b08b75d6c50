// ShaderConstantVisitor: brings one value of whatever kind to one parameter of an effect.
#pragma once

#include "rendering/device/ShaderConstantValue.h"

#include "foundation/ErrorCode.h"

#include <boost/variant/static_visitor.hpp>

class GraphicsSystem2;

/// Visits a ShaderConstantValue and sets the named parameter to it.
///
/// A texture is set as the device's own pointer; one that is not there (yet) is set to none.
class ShaderConstantVisitor : public boost::static_visitor<ErrorCode>
{
public:
    ShaderConstantVisitor(GraphicsSystem2 &gfxSystem_, const String &effect_, const String &parameter_)
        : gfxSystem(gfxSystem_), effect(effect_), parameter(parameter_)
    {
    }

    ErrorCode operator()(float value) const;
    ErrorCode operator()(const Vec4 &value) const;
    ErrorCode operator()(const Matrix4 &value) const;
    ErrorCode operator()(const Handle<TextureAsset> &value) const;
    template <class T>
    ErrorCode operator()(const std::vector<T> &values) const
    {
        return setArray(values.data(), values.size() * sizeof(T));
    }

private:
    ErrorCode setArray(const void *data, std::size_t size) const;

    GraphicsSystem2 &gfxSystem;
    const String &effect;
    const String &parameter;
};
