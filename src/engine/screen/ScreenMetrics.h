// ScreenMetrics: the size of the window, for code that lies below the window's own layer.
#pragma once

/// Client size of the game's window and the scale of normalised window coordinates.
struct ScreenMetrics
{
    int width = 1;                   ///< pixels
    int height = 1;                  ///< pixels
    float normalizationFactor = 1.f; ///< pixels of one normalised unit: the larger of width and height
};

/// The window's present metrics; one pixel while there is no window.
const ScreenMetrics &getScreenMetrics();
/// Publishes the window's metrics; the window system calls it whenever the client size changes.
void setScreenMetrics(const ScreenMetrics &metrics);
