#include "assets/fonts/GlyphAtlas.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

constexpr int GAP = 1; ///< clear pixels between two pictures, and round the edge

} // namespace

GlyphAtlas::GlyphAtlas() : pixels(std::size_t(FIRST_SIDE) * FIRST_SIDE, 0) {}

bool GlyphAtlas::add(int wantedWidth, int wantedHeight, const std::uint8_t *rows, Place &place)
{
    if (wantedWidth + 2 * GAP > LARGEST_SIDE || wantedHeight + 2 * GAP > LARGEST_SIDE)
        return false;
    while (!findPlace(wantedWidth, wantedHeight, place))
        if (width < LARGEST_SIDE || height < LARGEST_SIDE)
            grow();
        else
            startAnew();
    for (int y = 0; y < wantedHeight; ++y)
        std::memcpy(&pixels[std::size_t(place.y + y) * std::size_t(width) + std::size_t(place.x)],
                    rows + std::size_t(y) * std::size_t(wantedWidth), std::size_t(wantedWidth));
    const PixelRectangle added{place.x, place.y, place.x + wantedWidth, place.y + wantedHeight};
    changes = changes.isEmpty()
                  ? added
                  : PixelRectangle{std::min(changes.left, added.left), std::min(changes.top, added.top),
                                   std::max(changes.right, added.right), std::max(changes.bottom, added.bottom)};
    return true;
}

bool GlyphAtlas::findPlace(int wantedWidth, int wantedHeight, Place &place)
{
    Shelf *best = nullptr;
    for (Shelf &shelf : shelves)
    {
        // A picture takes no shelf that is much too high for it, or tall shelves would fill up with full stops.
        const bool fits = shelf.height >= wantedHeight && shelf.height <= wantedHeight + wantedHeight / 2 + 2 &&
                          shelf.usedWidth + wantedWidth + GAP <= width;
        if (fits && (!best || shelf.height < best->height))
            best = &shelf;
    }
    if (!best)
    {
        const int top = shelves.empty() ? GAP : shelves.back().top + shelves.back().height + GAP;
        if (top + wantedHeight + GAP > height || wantedWidth + 2 * GAP > width)
            return false;
        best = &shelves.emplace_back(Shelf{top, wantedHeight, GAP});
    }
    place = {best->usedWidth, best->top};
    best->usedWidth += wantedWidth + GAP;
    return true;
}

void GlyphAtlas::grow()
{
    const int oldWidth = width, oldHeight = height;
    (width > height ? height : width) *= 2;
    std::vector<std::uint8_t> larger(std::size_t(width) * std::size_t(height), 0);
    for (int y = 0; y < oldHeight; ++y)
        std::memcpy(&larger[std::size_t(y) * std::size_t(width)], &pixels[std::size_t(y) * std::size_t(oldWidth)],
                    std::size_t(oldWidth));
    pixels = std::move(larger);
    changes = {0, 0, width, height};
    ++generation;
}

void GlyphAtlas::startAnew()
{
    std::fill(pixels.begin(), pixels.end(), std::uint8_t(0));
    shelves.clear();
    changes = {0, 0, width, height};
    ++generation;
    ++restarts;
}

PixelRectangle GlyphAtlas::takeChanges()
{
    return std::exchange(changes, PixelRectangle());
}
