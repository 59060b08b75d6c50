// Samplers: how shaders read textures, one object of the library for each combination of sampler states.
#pragma once

#include "port/d3d9/d3d9types.h"

#include <epoxy/gl.h>
#include <vector>

namespace port
{

/// Sampler states with their published defaults.
struct SamplerStates
{
    D3DTEXTUREFILTERTYPE minFilter = D3DTEXF_POINT;
    D3DTEXTUREFILTERTYPE magFilter = D3DTEXF_POINT;
    D3DTEXTUREFILTERTYPE mipFilter = D3DTEXF_NONE;
    D3DTEXTUREADDRESS addressU = D3DTADDRESS_WRAP;
    D3DTEXTUREADDRESS addressV = D3DTADDRESS_WRAP;
    D3DCOLOR borderColor = 0;
    UINT maxAnisotropy = 1;
    float mipLodBias = 0.0f;

    bool operator==(const SamplerStates &) const = default;
};

class Samplers
{
public:
    /// @param anisotropy  whether to filter anisotropically where it is asked for; else linearly
    explicit Samplers(bool anisotropy) : anisotropy(anisotropy) {}
    ~Samplers();
    Samplers(const Samplers &) = delete;
    Samplers &operator=(const Samplers &) = delete;
    GLuint get(const SamplerStates &states);

private:
    struct Entry
    {
        SamplerStates states;
        GLuint sampler;
    };
    GLuint build(const SamplerStates &states) const;

    bool anisotropy;
    std::vector<Entry> entries;
};

} // namespace port
