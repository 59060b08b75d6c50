// Context: the OpenGL context of a window, and the way to put a picture on it.
#pragma once

#include "port/win32/WinTypes.h"

#include <memory>

struct SDL_Window;

namespace port
{

/// An OpenGL 4.5 core context, current on this thread while it lives.
class Context
{
public:
    /// Context of a window's own, or of a hidden one if `window` is null; null on failure, told in the debug output.
    static std::unique_ptr<Context> create(HWND window);
    ~Context();
    Context(const Context &) = delete;
    Context &operator=(const Context &) = delete;

    /// Waits for the display's next refresh at each swap, or never.
    void setVerticalSync(bool on);
    void swap();
    /// Size of what the window shows, in pixels.
    void getDrawableSize(int &width, int &height) const;

    /// Whether the processor draws in place of graphics hardware.
    bool isSoftware() const { return software; }

private:
    Context(SDL_Window *window, void *context, bool ownsWindow);
    bool prepare();

    SDL_Window *window;
    void *context;
    bool ownsWindow;
    bool software = false;
    int interval = -1; ///< swap interval in place; -1 is not yet set
};

} // namespace port
