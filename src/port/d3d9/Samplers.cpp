#include "port/d3d9/Samplers.h"

#include <algorithm>

namespace
{

GLint addressMode(D3DTEXTUREADDRESS address)
{
    switch (address)
    {
    case D3DTADDRESS_MIRROR:
        return GL_MIRRORED_REPEAT;
    case D3DTADDRESS_CLAMP:
        return GL_CLAMP_TO_EDGE;
    case D3DTADDRESS_BORDER:
        return GL_CLAMP_TO_BORDER;
    default:
        return GL_REPEAT;
    }
}

GLint minification(const port::SamplerStates &states)
{
    const bool linear = states.minFilter >= D3DTEXF_LINEAR;
    if (states.mipFilter == D3DTEXF_NONE)
        return linear ? GL_LINEAR : GL_NEAREST;
    if (states.mipFilter == D3DTEXF_POINT)
        return linear ? GL_LINEAR_MIPMAP_NEAREST : GL_NEAREST_MIPMAP_NEAREST;
    return linear ? GL_LINEAR_MIPMAP_LINEAR : GL_NEAREST_MIPMAP_LINEAR;
}

} // namespace

namespace port
{

Samplers::~Samplers()
{
    for (const Entry &entry : entries)
        glDeleteSamplers(1, &entry.sampler);
}

GLuint Samplers::get(const SamplerStates &states)
{
    for (const Entry &entry : entries)
        if (entry.states == states)
            return entry.sampler;
    entries.push_back({states, build(states)});
    return entries.back().sampler;
}

GLuint Samplers::build(const SamplerStates &states) const
{
    GLuint sampler = 0;
    glCreateSamplers(1, &sampler);
    glSamplerParameteri(sampler, GL_TEXTURE_MIN_FILTER, minification(states));
    glSamplerParameteri(sampler, GL_TEXTURE_MAG_FILTER, states.magFilter >= D3DTEXF_LINEAR ? GL_LINEAR : GL_NEAREST);
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_S, addressMode(states.addressU));
    glSamplerParameteri(sampler, GL_TEXTURE_WRAP_T, addressMode(states.addressV));
    glSamplerParameterf(sampler, GL_TEXTURE_LOD_BIAS, states.mipLodBias);
    const auto channel = [&states](unsigned shift)
    { return static_cast<float>((states.borderColor >> shift) & 0xff) / 255.0f; };
    const float border[] = {channel(16), channel(8), channel(0), channel(24)};
    glSamplerParameterfv(sampler, GL_TEXTURE_BORDER_COLOR, border);
    if (anisotropy && states.minFilter == D3DTEXF_ANISOTROPIC)
        glSamplerParameterf(sampler, GL_TEXTURE_MAX_ANISOTROPY_EXT,
                            static_cast<float>(std::max(1u, states.maxAnisotropy)));
    return sampler;
}

} // namespace port
