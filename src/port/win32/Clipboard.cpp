#include "port/win32/Clipboard.h"

#include <SDL.h>

namespace
{
/// What was copied last, for where the platform has no clipboard.
std::string &ownText()
{
    static std::string text;
    return text;
}
} // namespace

void port::setClipboardText(const std::string &text)
{
    ownText() = text;
    if (SDL_WasInit(SDL_INIT_VIDEO))
        SDL_SetClipboardText(text.c_str());
}

std::string port::clipboardText()
{
    if (!SDL_WasInit(SDL_INIT_VIDEO) || !SDL_HasClipboardText())
        return ownText();
    char *text = SDL_GetClipboardText();
    std::string copy = text ? text : "";
    SDL_free(text);
    return copy;
}
