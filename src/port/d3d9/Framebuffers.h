// Framebuffers: the library's framebuffer objects, one for each set of targets that was drawn to.
#pragma once

#include <array>
#include <epoxy/gl.h>
#include <vector>

namespace port
{

class Surface;
class Texture;

constexpr unsigned maxRenderTargets = 4;

/// Colour targets by slot and the depth-stencil surface; null where none is bound.
struct TargetSet
{
    std::array<const Surface *, maxRenderTargets> colors{};
    const Surface *depth = nullptr;

    bool operator==(const TargetSet &) const = default;
};

class Framebuffers
{
public:
    ~Framebuffers();

    /// The framebuffer of a set, made at its first use; 0 if the driver cannot draw to such a set.
    GLuint get(const TargetSet &targets);
    /// Drops every framebuffer that a texture is part of.
    void forget(const Texture &texture);
    void clear();

private:
    struct Entry
    {
        TargetSet targets;
        GLuint framebuffer;
    };
    static GLuint build(const TargetSet &targets);

    std::vector<Entry> entries; ///< a handful, so searched in order
};

} // namespace port
