// RenderStates: the device's render states, brought to the graphics library only where they differ.
#pragma once

#include "port/d3d9/d3d9types.h"

#include <array>

namespace port
{

struct FrameStats;

/// All render states by number.
///
/// set() only stores; apply() compares with what the library has and makes the few calls that are needed. Alpha
/// testing has no place in the library: an effect's pass compiles it into its pixel shader.
class RenderStates
{
public:
    /// Every state at its published default, and everything to be applied.
    RenderStates();

    /// False for a state that is unknown.
    bool set(D3DRENDERSTATETYPE state, DWORD value);
    bool get(D3DRENDERSTATETYPE state, DWORD &value) const;
    void apply(FrameStats &stats);

    /// Lifts all write masks, for a clear, which no mask hinders.
    void openWriteMasks(FrameStats &stats);
    /// Forgets what the library has, after somebody else changed it.
    void invalidate();
    bool writesStencil() const;

private:
    enum Group : unsigned
    {
        RASTER = 1,
        DEPTH = 2,
        STENCIL = 4,
        BLEND = 8,
        COLOR_MASK = 16,
        ALL = 31
    };
    static constexpr unsigned count = 210;
    static unsigned groupOf(unsigned state);
    DWORD value(D3DRENDERSTATETYPE state) const { return wanted[state]; }
    bool differs(std::initializer_list<D3DRENDERSTATETYPE> states);
    void applyRaster(FrameStats &stats);
    void applyDepth(FrameStats &stats);
    void applyStencil(FrameStats &stats);
    void applyBlend(FrameStats &stats);
    void applyColorMask(FrameStats &stats);
    void applyStencilFace(unsigned face, const D3DRENDERSTATETYPE (&states)[4], FrameStats &stats);

    std::array<DWORD, count> wanted{};
    std::array<DWORD, count> applied{};
    unsigned dirty = ALL; ///< groups with a state that may differ from the library's
    bool unknown = true;  ///< the library's states are not known at all
};

} // namespace port
