// BarFont: the letters of the bars, as large as the window asks for.
#pragma once

#include <string>

namespace port
{

/// A font file, and its size by the window's height.
class BarFont
{
public:
    /// @param file    a designed path
    /// @param pixels  size in windows up to a height
    void set(const char *file, float pixels, int windowHeight);
    /// Brings the library's font and measures to the size for a window; whether they have changed.
    bool fit(int windowHeight);
    /// Forgets what the library has, since it is a new one.
    void reset() { present = 0.0f; }

private:
    void load(float size);

    std::string file;
    float pixels = 13.0f; ///< of the built-in font
    int baseHeight = 900;
    float present = 0.0f; ///< pixels; 0: the library has none yet
};

} // namespace port
