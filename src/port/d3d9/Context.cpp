#include "port/d3d9/Context.h"

#include "port/d3d9/DebugText.h"
#include "port/win32/SdlWindow.h"

#include <SDL.h>
#include <epoxy/gl.h>
#include <string_view>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace
{

constexpr int requiredVersion = 45; ///< OpenGL 4.5, for direct state access and clip control

void requestContextAttributes()
{
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MAJOR_VERSION, 4);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_MINOR_VERSION, 5);
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_PROFILE_MASK, SDL_GL_CONTEXT_PROFILE_CORE);
    SDL_GL_SetAttribute(SDL_GL_DOUBLEBUFFER, 1);
#ifndef NDEBUG
    SDL_GL_SetAttribute(SDL_GL_CONTEXT_FLAGS, SDL_GL_CONTEXT_DEBUG_FLAG);
#endif
}

SDL_Window *createHiddenWindow()
{
    if (!SDL_WasInit(SDL_INIT_VIDEO) && SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
    {
        // No display: the driver without one still renders.
        SDL_SetHint(SDL_HINT_VIDEODRIVER, "offscreen");
        if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0)
            return nullptr;
    }
    requestContextAttributes();
    return SDL_CreateWindow("device", 0, 0, 64, 64, SDL_WINDOW_OPENGL | SDL_WINDOW_HIDDEN);
}

/// Has the heap keep what is given back to it.
///
/// A rasteriser in software takes and frees tens of megabytes several times a frame. Given back to the system and taken
/// anew, page by page, they cost the drawing thread a third of its time.
void keepFreedMemory()
{
#ifdef __GLIBC__
    constexpr int megabytes = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, 32 * megabytes); // the most that it takes
    mallopt(M_TRIM_THRESHOLD, 512 * megabytes);
#endif
}

void APIENTRY onDriverMessage(GLenum source, GLenum type, GLuint, GLenum severity, GLsizei, const GLchar *text,
                              const void *)
{
    if (source == GL_DEBUG_SOURCE_SHADER_COMPILER)
        return; // whoever compiles asks for the log
    if (type == GL_DEBUG_TYPE_ERROR || severity == GL_DEBUG_SEVERITY_HIGH)
        port::debugText("driver: %s", text);
}

} // namespace

namespace port
{

std::unique_ptr<Context> Context::create(HWND hwnd)
{
    SDL_Window *window = hwnd ? sdlWindow(hwnd) : createHiddenWindow();
    if (!window)
    {
        debugText("no window to draw to: %s", hwnd ? "the handle is not a window" : SDL_GetError());
        return nullptr;
    }
    requestContextAttributes();
    SDL_GLContext context = SDL_GL_CreateContext(window);
    if (!context)
    {
        debugText("no OpenGL 4.5 context: %s", SDL_GetError());
        if (!hwnd)
            SDL_DestroyWindow(window);
        return nullptr;
    }
    std::unique_ptr<Context> created(new Context(window, context, !hwnd));
    return created->prepare() ? std::move(created) : nullptr;
}

Context::Context(SDL_Window *window, void *context, bool ownsWindow)
    : window(window), context(context), ownsWindow(ownsWindow)
{
}

Context::~Context()
{
    SDL_GL_DeleteContext(context);
    if (ownsWindow)
        SDL_DestroyWindow(window);
}

bool Context::prepare()
{
    if (SDL_GL_MakeCurrent(window, context) != 0)
    {
        debugText("the OpenGL context cannot be used: %s", SDL_GetError());
        return false;
    }
    if (epoxy_gl_version() < requiredVersion)
    {
        debugText("the driver offers OpenGL %d.%d, but 4.5 is needed", epoxy_gl_version() / 10,
                  epoxy_gl_version() % 10);
        return false;
    }
    const std::string_view renderer = reinterpret_cast<const char *>(glGetString(GL_RENDERER));
    software = renderer.find("llvmpipe") != renderer.npos || renderer.find("softpipe") != renderer.npos;
    if (software)
        keepFreedMemory();
    GLint flags = 0;
    glGetIntegerv(GL_CONTEXT_FLAGS, &flags);
    if (flags & GL_CONTEXT_FLAG_DEBUG_BIT)
    {
        glEnable(GL_DEBUG_OUTPUT);
        glDebugMessageCallback(onDriverMessage, nullptr);
    }
    return true;
}

void Context::setVerticalSync(bool on)
{
    const int wanted = on ? 1 : 0;
    if (interval == wanted)
        return;
    interval = wanted;
    SDL_GL_SetSwapInterval(wanted); // displays that cannot do so keep their own rhythm
}

void Context::swap()
{
    SDL_GL_SwapWindow(window);
}

void Context::getDrawableSize(int &width, int &height) const
{
    SDL_GL_GetDrawableSize(window, &width, &height);
}

} // namespace port
