#include "port/d3d9/Framebuffers.h"

#include "port/d3d9/DebugText.h"
#include "port/d3d9/Texture.h"

#include <algorithm>

namespace port
{

Framebuffers::~Framebuffers()
{
    clear();
}

void Framebuffers::clear()
{
    for (const Entry &entry : entries)
        glDeleteFramebuffers(1, &entry.framebuffer);
    entries.clear();
}

GLuint Framebuffers::get(const TargetSet &targets)
{
    for (const Entry &entry : entries)
        if (entry.targets == targets)
            return entry.framebuffer;
    const GLuint framebuffer = build(targets);
    if (framebuffer)
        entries.push_back({targets, framebuffer});
    return framebuffer;
}

GLuint Framebuffers::build(const TargetSet &targets)
{
    GLuint framebuffer = 0;
    glCreateFramebuffers(1, &framebuffer);
    GLenum drawBuffers[maxRenderTargets];
    for (unsigned slot = 0; slot < maxRenderTargets; ++slot)
    {
        const Surface *color = targets.colors[slot];
        drawBuffers[slot] = color ? GL_COLOR_ATTACHMENT0 + slot : GL_NONE;
        if (color)
            glNamedFramebufferTexture(framebuffer, drawBuffers[slot], color->texture.id(),
                                      static_cast<GLint>(color->level));
    }
    glNamedFramebufferDrawBuffers(framebuffer, maxRenderTargets, drawBuffers);
    if (targets.depth)
        glNamedFramebufferTexture(framebuffer, GL_DEPTH_STENCIL_ATTACHMENT, targets.depth->texture.id(), 0);
    const GLenum status = glCheckNamedFramebufferStatus(framebuffer, GL_DRAW_FRAMEBUFFER);
    if (status == GL_FRAMEBUFFER_COMPLETE)
        return framebuffer;
    debugText("the driver cannot draw to this set of targets (status 0x%x)", status);
    glDeleteFramebuffers(1, &framebuffer);
    return 0;
}

void Framebuffers::forget(const Texture &texture)
{
    const auto contains = [&texture](const Entry &entry)
    {
        const auto partOf = [&texture](const Surface *surface) { return surface && &surface->texture == &texture; };
        return partOf(entry.targets.depth) ||
               std::any_of(entry.targets.colors.begin(), entry.targets.colors.end(), partOf);
    };
    for (const Entry &entry : entries)
        if (contains(entry))
            glDeleteFramebuffers(1, &entry.framebuffer);
    std::erase_if(entries, contains);
}

} // namespace port
