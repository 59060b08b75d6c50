#include "port/d3d9/DebugText.h"

#include "port/win32/Diagnostics.h"

#include <cstdarg>
#include <cstdio>
#include <string>

void port::debugText(const char *format, ...)
{
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    OutputDebugStringA(("Direct3D: " + std::string(text) + "\n").c_str());
}
