// D3D9Extras: what our device offers beyond the published interfaces.
//
// Every function takes a device made by Direct3DCreate9 of this folder; a device of a test's own makes those that
// return HRESULT fail with D3DERR_INVALIDCALL, and the others do nothing.
#pragma once

#include "port/d3d9/d3d9.h"

#include <cstdint>
#include <functional>
#include <string>

namespace port
{

/// What one frame asked of the driver, from one Present to the next.
struct FrameStats
{
    unsigned draws = 0;          ///< draw calls
    unsigned instances = 0;      ///< instances over all draw calls; a plain draw counts as one
    std::uint64_t triangles = 0; ///< over all instances
    unsigned stateChanges = 0;   ///< calls that changed driver state, redundant ones filtered out
    unsigned targetChanges = 0;  ///< switches to another set of render targets
    unsigned clears = 0;
    unsigned uploads = 0; ///< writes into buffers and textures
    std::uint64_t uploadBytes = 0;
};

/// Counters of the last presented frame; all zero before the first.
FrameStats lastFrameStats(IDirect3DDevice9 *device);

/// Counters since the last Present.
FrameStats currentFrameStats(IDirect3DDevice9 *device);

/// Counts the pixels that pass all tests from now on, over all targets; one count at a time.
void beginCountingPixels(IDirect3DDevice9 *device);

/// Ends the count and waits for it; 0 where none was begun.
std::uint64_t endCountingPixels(IDirect3DDevice9 *device);

/// Writes the back buffer into a PNG file, right way up.
///
/// The contents stay valid after Present until the next frame draws. The path is a designed one. What stood there
/// before stays if the file cannot be written.
/// @return why there is no picture, as a sentence; empty on success
std::string saveBackBuffer(IDirect3DDevice9 *device, const char *pngFile);

/// As `saveBackBuffer`, smaller: the middle of the back buffer in the shape of width by height pixels.
std::string saveSmallBackBuffer(IDirect3DDevice9 *device, const char *pngFile, int width, int height);

/// Draws on top of the presented picture, straight into the window, before it is shown.
///
/// Called in Present with the window's size in pixels; may use the graphics library directly and may leave its state
/// changed. An empty function removes the overlay.
void setPresentOverlay(IDirect3DDevice9 *device, std::function<void(int width, int height)> overlay);

/// Whether the processor draws in place of graphics hardware, by the name of the driver's renderer.
bool drawsInSoftware(IDirect3DDevice9 *device);

/// Simulates the loss of the device, and its becoming resettable.
///
/// true: Present, TestCooperativeLevel and drawing return D3DERR_DEVICELOST. false, after that: TestCooperativeLevel
/// returns D3DERR_DEVICENOTRESET until Reset has succeeded.
void setDeviceLost(IDirect3DDevice9 *device, bool lost);

} // namespace port
