#include "port/d3d9/RenderStates.h"

#include "port/d3d9/D3D9Extras.h"

#include <bit>
#include <cmath>
#include <epoxy/gl.h>

namespace
{

struct Default
{
    D3DRENDERSTATETYPE state;
    DWORD value;
};

constexpr Default defaults[] = {
    {D3DRS_ZENABLE, D3DZB_TRUE},
    {D3DRS_FILLMODE, D3DFILL_SOLID},
    {D3DRS_ZWRITEENABLE, TRUE},
    {D3DRS_ALPHATESTENABLE, FALSE},
    {D3DRS_SRCBLEND, D3DBLEND_ONE},
    {D3DRS_DESTBLEND, D3DBLEND_ZERO},
    {D3DRS_CULLMODE, D3DCULL_CCW},
    {D3DRS_ZFUNC, D3DCMP_LESSEQUAL},
    {D3DRS_ALPHAREF, 0},
    {D3DRS_ALPHAFUNC, D3DCMP_ALWAYS},
    {D3DRS_ALPHABLENDENABLE, FALSE},
    {D3DRS_STENCILENABLE, FALSE},
    {D3DRS_STENCILFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_STENCILZFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_STENCILPASS, D3DSTENCILOP_KEEP},
    {D3DRS_STENCILFUNC, D3DCMP_ALWAYS},
    {D3DRS_STENCILREF, 0},
    {D3DRS_STENCILMASK, 0xffffffffu},
    {D3DRS_STENCILWRITEMASK, 0xffffffffu},
    {D3DRS_CLIPPING, TRUE},
    {D3DRS_POINTSIZE, std::bit_cast<DWORD>(1.0f)},
    {D3DRS_COLORWRITEENABLE, 0xf},
    {D3DRS_BLENDOP, D3DBLENDOP_ADD},
    {D3DRS_SLOPESCALEDEPTHBIAS, 0},
    {D3DRS_TWOSIDEDSTENCILMODE, FALSE},
    {D3DRS_CCW_STENCILFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_CCW_STENCILZFAIL, D3DSTENCILOP_KEEP},
    {D3DRS_CCW_STENCILPASS, D3DSTENCILOP_KEEP},
    {D3DRS_CCW_STENCILFUNC, D3DCMP_ALWAYS},
    {D3DRS_BLENDFACTOR, 0xffffffffu},
    {D3DRS_DEPTHBIAS, 0},
    {D3DRS_SEPARATEALPHABLENDENABLE, FALSE},
    {D3DRS_SRCBLENDALPHA, D3DBLEND_ONE},
    {D3DRS_DESTBLENDALPHA, D3DBLEND_ZERO},
    {D3DRS_BLENDOPALPHA, D3DBLENDOP_ADD},
};

bool isKnown(unsigned state)
{
    for (const Default &entry : defaults)
        if (entry.state == state)
            return true;
    return false;
}

/// A value out of its enumeration falls back on the first entry rather than reading beyond the table.
template <std::size_t N>
GLenum translate(const GLenum (&table)[N], DWORD value)
{
    return table[value < N ? value : 0];
}

GLenum compare(DWORD function)
{
    static constexpr GLenum table[] = {GL_ALWAYS,  GL_NEVER,    GL_LESS,   GL_EQUAL, GL_LEQUAL,
                                       GL_GREATER, GL_NOTEQUAL, GL_GEQUAL, GL_ALWAYS};
    return translate(table, function);
}

GLenum stencilOperation(DWORD operation)
{
    static constexpr GLenum table[] = {GL_KEEP, GL_KEEP,   GL_ZERO,      GL_REPLACE,  GL_INCR,
                                       GL_DECR, GL_INVERT, GL_INCR_WRAP, GL_DECR_WRAP};
    return translate(table, operation);
}

GLenum blendFactor(DWORD factor)
{
    static constexpr GLenum table[] = {GL_ONE,
                                       GL_ZERO,
                                       GL_ONE,
                                       GL_SRC_COLOR,
                                       GL_ONE_MINUS_SRC_COLOR,
                                       GL_SRC_ALPHA,
                                       GL_ONE_MINUS_SRC_ALPHA,
                                       GL_DST_ALPHA,
                                       GL_ONE_MINUS_DST_ALPHA,
                                       GL_DST_COLOR,
                                       GL_ONE_MINUS_DST_COLOR,
                                       GL_SRC_ALPHA_SATURATE,
                                       GL_ONE,
                                       GL_ONE,
                                       GL_CONSTANT_COLOR,
                                       GL_ONE_MINUS_CONSTANT_COLOR};
    return translate(table, factor);
}

GLenum blendOperation(DWORD operation)
{
    static constexpr GLenum table[] = {GL_FUNC_ADD, GL_FUNC_ADD, GL_FUNC_SUBTRACT, GL_FUNC_REVERSE_SUBTRACT,
                                       GL_MIN,      GL_MAX};
    return translate(table, operation);
}

void enable(GLenum capability, bool on, port::FrameStats &stats)
{
    if (on)
        glEnable(capability);
    else
        glDisable(capability);
    ++stats.stateChanges;
}

} // namespace

namespace port
{

RenderStates::RenderStates()
{
    for (const Default &entry : defaults)
        wanted[entry.state] = entry.value;
}

unsigned RenderStates::groupOf(unsigned state)
{
    switch (state)
    {
    case D3DRS_FILLMODE:
    case D3DRS_CULLMODE:
    case D3DRS_CLIPPING:
    case D3DRS_SLOPESCALEDEPTHBIAS:
    case D3DRS_DEPTHBIAS:
        return RASTER;
    case D3DRS_ZENABLE:
    case D3DRS_ZWRITEENABLE:
    case D3DRS_ZFUNC:
        return DEPTH;
    case D3DRS_STENCILENABLE:
    case D3DRS_STENCILFAIL:
    case D3DRS_STENCILZFAIL:
    case D3DRS_STENCILPASS:
    case D3DRS_STENCILFUNC:
    case D3DRS_STENCILREF:
    case D3DRS_STENCILMASK:
    case D3DRS_STENCILWRITEMASK:
    case D3DRS_TWOSIDEDSTENCILMODE:
    case D3DRS_CCW_STENCILFAIL:
    case D3DRS_CCW_STENCILZFAIL:
    case D3DRS_CCW_STENCILPASS:
    case D3DRS_CCW_STENCILFUNC:
        return STENCIL;
    case D3DRS_COLORWRITEENABLE:
        return COLOR_MASK;
    case D3DRS_ALPHATESTENABLE:
    case D3DRS_ALPHAREF:
    case D3DRS_ALPHAFUNC:
    case D3DRS_POINTSIZE:
        return 0;
    default:
        return BLEND;
    }
}

bool RenderStates::set(D3DRENDERSTATETYPE state, DWORD newValue)
{
    const auto index = static_cast<unsigned>(state);
    if (index >= count || !isKnown(index))
        return false;
    if (wanted[index] == newValue)
        return true;
    wanted[index] = newValue;
    dirty |= groupOf(index);
    return true;
}

bool RenderStates::get(D3DRENDERSTATETYPE state, DWORD &out) const
{
    const auto index = static_cast<unsigned>(state);
    if (index >= count || !isKnown(index))
        return false;
    out = wanted[index];
    return true;
}

void RenderStates::invalidate()
{
    dirty = ALL;
    unknown = true;
}

bool RenderStates::writesStencil() const
{
    return value(D3DRS_STENCILENABLE) && (value(D3DRS_STENCILWRITEMASK) & 0xff);
}

/// Whether one of the states differs from the library's; takes them as applied.
bool RenderStates::differs(std::initializer_list<D3DRENDERSTATETYPE> states)
{
    bool different = unknown;
    for (D3DRENDERSTATETYPE state : states)
    {
        different = different || wanted[state] != applied[state];
        applied[state] = wanted[state];
    }
    return different;
}

void RenderStates::apply(FrameStats &stats)
{
    if (!dirty)
        return;
    if (dirty & RASTER)
        applyRaster(stats);
    if (dirty & DEPTH)
        applyDepth(stats);
    if (dirty & STENCIL)
        applyStencil(stats);
    if (dirty & BLEND)
        applyBlend(stats);
    if (dirty & COLOR_MASK)
        applyColorMask(stats);
    dirty = 0;
    unknown = false;
}

void RenderStates::applyRaster(FrameStats &stats)
{
    if (differs({D3DRS_CULLMODE}))
    {
        const DWORD mode = value(D3DRS_CULLMODE);
        enable(GL_CULL_FACE, mode != D3DCULL_NONE, stats);
        // The front face is the clockwise one; culling it is what D3DCULL_CW asks for.
        glFrontFace(GL_CW);
        glCullFace(mode == D3DCULL_CW ? GL_FRONT : GL_BACK);
    }
    if (differs({D3DRS_FILLMODE}))
    {
        const DWORD mode = value(D3DRS_FILLMODE);
        glPolygonMode(GL_FRONT_AND_BACK, mode == D3DFILL_POINT       ? GL_POINT
                                         : mode == D3DFILL_WIREFRAME ? GL_LINE
                                                                     : GL_FILL);
        ++stats.stateChanges;
    }
    if (differs({D3DRS_CLIPPING}))
        enable(GL_DEPTH_CLAMP, !value(D3DRS_CLIPPING), stats);
    if (differs({D3DRS_DEPTHBIAS, D3DRS_SLOPESCALEDEPTHBIAS}))
    {
        const float bias = std::bit_cast<float>(value(D3DRS_DEPTHBIAS));
        const float slope = std::bit_cast<float>(value(D3DRS_SLOPESCALEDEPTHBIAS));
        enable(GL_POLYGON_OFFSET_FILL, bias != 0.0f || slope != 0.0f, stats);
        // The library counts a constant bias in steps of a 24-bit depth buffer.
        glPolygonOffset(slope, std::ldexp(bias, 24));
    }
}

void RenderStates::applyDepth(FrameStats &stats)
{
    if (differs({D3DRS_ZENABLE}))
        enable(GL_DEPTH_TEST, value(D3DRS_ZENABLE) != D3DZB_FALSE, stats);
    if (differs({D3DRS_ZWRITEENABLE}))
    {
        glDepthMask(value(D3DRS_ZWRITEENABLE) ? GL_TRUE : GL_FALSE);
        ++stats.stateChanges;
    }
    if (differs({D3DRS_ZFUNC}))
    {
        glDepthFunc(compare(value(D3DRS_ZFUNC)));
        ++stats.stateChanges;
    }
}

void RenderStates::applyStencilFace(unsigned face, const D3DRENDERSTATETYPE (&states)[4], FrameStats &stats)
{
    glStencilOpSeparate(face, stencilOperation(value(states[0])), stencilOperation(value(states[1])),
                        stencilOperation(value(states[2])));
    glStencilFuncSeparate(face, compare(value(states[3])), static_cast<GLint>(value(D3DRS_STENCILREF)),
                          value(D3DRS_STENCILMASK));
    stats.stateChanges += 2;
}

void RenderStates::applyStencil(FrameStats &stats)
{
    static constexpr D3DRENDERSTATETYPE front[] = {D3DRS_STENCILFAIL, D3DRS_STENCILZFAIL, D3DRS_STENCILPASS,
                                                   D3DRS_STENCILFUNC};
    static constexpr D3DRENDERSTATETYPE counterClockwise[] = {D3DRS_CCW_STENCILFAIL, D3DRS_CCW_STENCILZFAIL,
                                                              D3DRS_CCW_STENCILPASS, D3DRS_CCW_STENCILFUNC};
    if (differs({D3DRS_STENCILENABLE}))
        enable(GL_STENCIL_TEST, value(D3DRS_STENCILENABLE), stats);
    if (differs({D3DRS_STENCILWRITEMASK}))
    {
        glStencilMask(value(D3DRS_STENCILWRITEMASK));
        ++stats.stateChanges;
    }
    if (!value(D3DRS_STENCILENABLE) && !unknown)
        return; // the rest can wait until it is looked at
    if (!differs({D3DRS_STENCILFAIL, D3DRS_STENCILZFAIL, D3DRS_STENCILPASS, D3DRS_STENCILFUNC, D3DRS_STENCILREF,
                  D3DRS_STENCILMASK, D3DRS_TWOSIDEDSTENCILMODE, D3DRS_CCW_STENCILFAIL, D3DRS_CCW_STENCILZFAIL,
                  D3DRS_CCW_STENCILPASS, D3DRS_CCW_STENCILFUNC}))
        return;
    if (!value(D3DRS_TWOSIDEDSTENCILMODE))
        return applyStencilFace(GL_FRONT_AND_BACK, front, stats);
    applyStencilFace(GL_FRONT, front, stats);
    applyStencilFace(GL_BACK, counterClockwise, stats);
}

void RenderStates::applyBlend(FrameStats &stats)
{
    if (differs({D3DRS_ALPHABLENDENABLE}))
        enable(GL_BLEND, value(D3DRS_ALPHABLENDENABLE), stats);
    if (!value(D3DRS_ALPHABLENDENABLE) && !unknown)
        return;
    const bool separate = value(D3DRS_SEPARATEALPHABLENDENABLE);
    if (differs({D3DRS_SRCBLEND, D3DRS_DESTBLEND, D3DRS_SRCBLENDALPHA, D3DRS_DESTBLENDALPHA, D3DRS_BLENDOP,
                 D3DRS_BLENDOPALPHA, D3DRS_SEPARATEALPHABLENDENABLE}))
    {
        glBlendFuncSeparate(blendFactor(value(D3DRS_SRCBLEND)), blendFactor(value(D3DRS_DESTBLEND)),
                            blendFactor(value(separate ? D3DRS_SRCBLENDALPHA : D3DRS_SRCBLEND)),
                            blendFactor(value(separate ? D3DRS_DESTBLENDALPHA : D3DRS_DESTBLEND)));
        glBlendEquationSeparate(blendOperation(value(D3DRS_BLENDOP)),
                                blendOperation(value(separate ? D3DRS_BLENDOPALPHA : D3DRS_BLENDOP)));
        stats.stateChanges += 2;
    }
    if (differs({D3DRS_BLENDFACTOR}))
    {
        const DWORD color = value(D3DRS_BLENDFACTOR);
        const auto channel = [color](unsigned shift) { return static_cast<float>((color >> shift) & 0xff) / 255.0f; };
        glBlendColor(channel(16), channel(8), channel(0), channel(24));
        ++stats.stateChanges;
    }
}

void RenderStates::applyColorMask(FrameStats &stats)
{
    if (!differs({D3DRS_COLORWRITEENABLE}))
        return;
    const DWORD mask = value(D3DRS_COLORWRITEENABLE);
    glColorMask(mask & 1 ? GL_TRUE : GL_FALSE, mask & 2 ? GL_TRUE : GL_FALSE, mask & 4 ? GL_TRUE : GL_FALSE,
                mask & 8 ? GL_TRUE : GL_FALSE);
    ++stats.stateChanges;
}

void RenderStates::openWriteMasks(FrameStats &stats)
{
    if (unknown || applied[D3DRS_COLORWRITEENABLE] != 0xf)
    {
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
        applied[D3DRS_COLORWRITEENABLE] = 0xf;
        ++stats.stateChanges;
    }
    if (unknown || !applied[D3DRS_ZWRITEENABLE])
    {
        glDepthMask(GL_TRUE);
        applied[D3DRS_ZWRITEENABLE] = TRUE;
        ++stats.stateChanges;
    }
    if (unknown || applied[D3DRS_STENCILWRITEMASK] != 0xffffffffu)
    {
        glStencilMask(0xffffffffu);
        applied[D3DRS_STENCILWRITEMASK] = 0xffffffffu;
        ++stats.stateChanges;
    }
    dirty |= COLOR_MASK | DEPTH | STENCIL;
}

} // namespace port
