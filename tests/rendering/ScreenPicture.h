// ScreenPicture: the pixels of a presented frame.
#pragma once

#include <vector>

class RenderingWorld;

/// A frame as it was presented, the top row first.
struct ScreenPicture
{
    int width = 0;
    int height = 0;
    std::vector<unsigned> pixels; ///< 0xAABBGGRR, as a picture's file is read

    unsigned at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    int red(int x, int y) const { return at(x, y) & 0xFF; }
    int green(int x, int y) const { return at(x, y) >> 8 & 0xFF; }
    int blue(int x, int y) const { return at(x, y) >> 16 & 0xFF; }
    /// Count of the pixels of a rectangle that are not black; right and bottom lie outside.
    int countLit(int left, int top, int right, int bottom) const;

    bool operator==(const ScreenPicture &) const = default;
};

/// Runs one whole frame of the level, its updaters included, on the real device.
ScreenPicture drawPicture(RenderingWorld &world);
