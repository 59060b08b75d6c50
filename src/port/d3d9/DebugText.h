// DebugText: lines for the debug output, from the graphics port.
#pragma once

namespace port
{

/// Writes "Direct3D: ", the formatted text and a line end to the debug output.
[[gnu::format(printf, 1, 2)]] void debugText(const char *format, ...);

} // namespace port
