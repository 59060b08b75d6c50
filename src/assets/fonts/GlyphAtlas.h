// GlyphAtlas: one picture with room for many small ones.
#pragma once

#include "assets/cache/PixelRectangle.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Coverage pictures packed into one, which doubles when it is full and keeps every picture where it is.
///
/// At its largest it starts anew instead, empty: whoever keeps places must watch the generation. Pictures stand on
/// shelves, a clear pixel apart, so that filtering does not mix neighbours.
class GlyphAtlas
{
public:
    static constexpr int FIRST_SIDE = 256;
    static constexpr int LARGEST_SIDE = 2048; ///< what any device can take

    /// A place in the atlas, pixels from the upper left corner.
    struct Place
    {
        int x = 0;
        int y = 0;
    };

    GlyphAtlas();

    /// Copies a picture in.
    /// @param rows  width bytes each, top row first
    /// @return false for a picture that is larger than the atlas can become; nothing has changed then
    bool add(int width, int height, const std::uint8_t *rows, Place &place);

    int getWidth() const { return width; }
    int getHeight() const { return height; }
    /// All rows, width bytes each.
    const std::vector<std::uint8_t> &getRows() const { return pixels; }
    /// Counts the times that texture coordinates went stale: when the size changed and when it started anew.
    unsigned getGeneration() const { return generation; }
    /// Counts the times that places went stale: when it started anew.
    unsigned getRestarts() const { return restarts; }

    /// What has changed since the last call; all of it after a change of size.
    PixelRectangle takeChanges();

private:
    struct Shelf
    {
        int top;
        int height;
        int usedWidth;
    };

    bool findPlace(int wantedWidth, int wantedHeight, Place &place);
    void grow();
    void startAnew();

    int width = FIRST_SIDE;
    int height = FIRST_SIDE;
    std::vector<std::uint8_t> pixels;
    std::vector<Shelf> shelves; ///< from the top down, without gaps
    PixelRectangle changes;
    unsigned generation = 0;
    unsigned restarts = 0;
};
