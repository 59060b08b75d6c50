#include "port/d3dx9/EffectStates.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <span>

namespace
{

enum class ValueSet
{
    NUMBER,
    FLOAT,
    BOOLEAN,
    CULL,
    FILL,
    COMPARE,
    BLEND,
    BLEND_OPERATION,
    STENCIL,
    COLOR_MASK
};

struct StateName
{
    std::string_view name;
    D3DRENDERSTATETYPE state;
    ValueSet values;
};

constexpr StateName stateNames[] = {
    {"ZEnable", D3DRS_ZENABLE, ValueSet::BOOLEAN},
    {"FillMode", D3DRS_FILLMODE, ValueSet::FILL},
    {"ZWriteEnable", D3DRS_ZWRITEENABLE, ValueSet::BOOLEAN},
    {"AlphaTestEnable", D3DRS_ALPHATESTENABLE, ValueSet::BOOLEAN},
    {"SrcBlend", D3DRS_SRCBLEND, ValueSet::BLEND},
    {"DestBlend", D3DRS_DESTBLEND, ValueSet::BLEND},
    {"CullMode", D3DRS_CULLMODE, ValueSet::CULL},
    {"ZFunc", D3DRS_ZFUNC, ValueSet::COMPARE},
    {"AlphaRef", D3DRS_ALPHAREF, ValueSet::NUMBER},
    {"AlphaFunc", D3DRS_ALPHAFUNC, ValueSet::COMPARE},
    {"AlphaBlendEnable", D3DRS_ALPHABLENDENABLE, ValueSet::BOOLEAN},
    {"StencilEnable", D3DRS_STENCILENABLE, ValueSet::BOOLEAN},
    {"StencilFail", D3DRS_STENCILFAIL, ValueSet::STENCIL},
    {"StencilZFail", D3DRS_STENCILZFAIL, ValueSet::STENCIL},
    {"StencilPass", D3DRS_STENCILPASS, ValueSet::STENCIL},
    {"StencilFunc", D3DRS_STENCILFUNC, ValueSet::COMPARE},
    {"StencilRef", D3DRS_STENCILREF, ValueSet::NUMBER},
    {"StencilMask", D3DRS_STENCILMASK, ValueSet::NUMBER},
    {"StencilWriteMask", D3DRS_STENCILWRITEMASK, ValueSet::NUMBER},
    {"Clipping", D3DRS_CLIPPING, ValueSet::BOOLEAN},
    {"PointSize", D3DRS_POINTSIZE, ValueSet::FLOAT},
    {"ColorWriteEnable", D3DRS_COLORWRITEENABLE, ValueSet::COLOR_MASK},
    {"BlendOp", D3DRS_BLENDOP, ValueSet::BLEND_OPERATION},
    {"SlopeScaleDepthBias", D3DRS_SLOPESCALEDEPTHBIAS, ValueSet::FLOAT},
    {"TwoSidedStencilMode", D3DRS_TWOSIDEDSTENCILMODE, ValueSet::BOOLEAN},
    {"Ccw_StencilFail", D3DRS_CCW_STENCILFAIL, ValueSet::STENCIL},
    {"Ccw_StencilZFail", D3DRS_CCW_STENCILZFAIL, ValueSet::STENCIL},
    {"Ccw_StencilPass", D3DRS_CCW_STENCILPASS, ValueSet::STENCIL},
    {"Ccw_StencilFunc", D3DRS_CCW_STENCILFUNC, ValueSet::COMPARE},
    {"BlendFactor", D3DRS_BLENDFACTOR, ValueSet::NUMBER},
    {"DepthBias", D3DRS_DEPTHBIAS, ValueSet::FLOAT},
    {"SeparateAlphaBlendEnable", D3DRS_SEPARATEALPHABLENDENABLE, ValueSet::BOOLEAN},
    {"SrcBlendAlpha", D3DRS_SRCBLENDALPHA, ValueSet::BLEND},
    {"DestBlendAlpha", D3DRS_DESTBLENDALPHA, ValueSet::BLEND},
    {"BlendOpAlpha", D3DRS_BLENDOPALPHA, ValueSet::BLEND_OPERATION},
};

struct ValueName
{
    std::string_view name;
    DWORD value;
};

constexpr ValueName booleans[] = {{"False", 0}, {"True", 1}};
constexpr ValueName culls[] = {{"None", D3DCULL_NONE}, {"CW", D3DCULL_CW}, {"CCW", D3DCULL_CCW}};
constexpr ValueName fills[] = {{"Point", D3DFILL_POINT}, {"Wireframe", D3DFILL_WIREFRAME}, {"Solid", D3DFILL_SOLID}};
constexpr ValueName compares[] = {{"Never", D3DCMP_NEVER},
                                  {"Less", D3DCMP_LESS},
                                  {"Equal", D3DCMP_EQUAL},
                                  {"LessEqual", D3DCMP_LESSEQUAL},
                                  {"Greater", D3DCMP_GREATER},
                                  {"NotEqual", D3DCMP_NOTEQUAL},
                                  {"GreaterEqual", D3DCMP_GREATEREQUAL},
                                  {"Always", D3DCMP_ALWAYS}};
constexpr ValueName blends[] = {{"Zero", D3DBLEND_ZERO},
                                {"One", D3DBLEND_ONE},
                                {"SrcColor", D3DBLEND_SRCCOLOR},
                                {"InvSrcColor", D3DBLEND_INVSRCCOLOR},
                                {"SrcAlpha", D3DBLEND_SRCALPHA},
                                {"InvSrcAlpha", D3DBLEND_INVSRCALPHA},
                                {"DestAlpha", D3DBLEND_DESTALPHA},
                                {"InvDestAlpha", D3DBLEND_INVDESTALPHA},
                                {"DestColor", D3DBLEND_DESTCOLOR},
                                {"InvDestColor", D3DBLEND_INVDESTCOLOR},
                                {"SrcAlphaSat", D3DBLEND_SRCALPHASAT},
                                {"BlendFactor", D3DBLEND_BLENDFACTOR},
                                {"InvBlendFactor", D3DBLEND_INVBLENDFACTOR}};
constexpr ValueName blendOperations[] = {{"Add", D3DBLENDOP_ADD},
                                         {"Subtract", D3DBLENDOP_SUBTRACT},
                                         {"RevSubtract", D3DBLENDOP_REVSUBTRACT},
                                         {"Min", D3DBLENDOP_MIN},
                                         {"Max", D3DBLENDOP_MAX}};
constexpr ValueName stencils[] = {{"Keep", D3DSTENCILOP_KEEP},       {"Zero", D3DSTENCILOP_ZERO},
                                  {"Replace", D3DSTENCILOP_REPLACE}, {"IncrSat", D3DSTENCILOP_INCRSAT},
                                  {"DecrSat", D3DSTENCILOP_DECRSAT}, {"Invert", D3DSTENCILOP_INVERT},
                                  {"Incr", D3DSTENCILOP_INCR},       {"Decr", D3DSTENCILOP_DECR}};
constexpr ValueName colorMasks[] = {{"Red", 1}, {"Green", 2}, {"Blue", 4}, {"Alpha", 8}};
constexpr ValueName filters[] = {
    {"None", D3DTEXF_NONE}, {"Point", D3DTEXF_POINT}, {"Linear", D3DTEXF_LINEAR}, {"Anisotropic", D3DTEXF_ANISOTROPIC}};
constexpr ValueName addresses[] = {{"Wrap", D3DTADDRESS_WRAP},
                                   {"Mirror", D3DTADDRESS_MIRROR},
                                   {"Clamp", D3DTADDRESS_CLAMP},
                                   {"Border", D3DTADDRESS_BORDER}};

std::span<const ValueName> namesOf(ValueSet set)
{
    switch (set)
    {
    case ValueSet::BOOLEAN:
        return booleans;
    case ValueSet::CULL:
        return culls;
    case ValueSet::FILL:
        return fills;
    case ValueSet::COMPARE:
        return compares;
    case ValueSet::BLEND:
        return blends;
    case ValueSet::BLEND_OPERATION:
        return blendOperations;
    case ValueSet::STENCIL:
        return stencils;
    case ValueSet::COLOR_MASK:
        return colorMasks;
    default:
        return {};
    }
}

bool sameName(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](char x, char y) { return lower(x) == lower(y); });
}

bool findValue(std::span<const ValueName> names, std::string_view name, DWORD &value)
{
    for (const ValueName &entry : names)
        if (sameName(entry.name, name))
        {
            value = entry.value;
            return true;
        }
    return false;
}

const StateName *findState(D3DRENDERSTATETYPE state)
{
    for (const StateName &entry : stateNames)
        if (entry.state == state)
            return &entry;
    return nullptr;
}

template <class Enum>
bool assign(Enum &target, std::span<const ValueName> names, std::string_view name)
{
    DWORD value = 0;
    if (!findValue(names, name, value))
        return false;
    target = static_cast<Enum>(value);
    return true;
}

template <class Number>
bool parseNumber(std::string_view text, Number &value)
{
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

} // namespace

namespace port
{

bool findRenderState(std::string_view name, D3DRENDERSTATETYPE &state)
{
    for (const StateName &entry : stateNames)
        if (sameName(entry.name, name))
        {
            state = entry.state;
            return true;
        }
    return false;
}

bool findRenderStateValue(D3DRENDERSTATETYPE state, std::string_view name, DWORD &value)
{
    const StateName *entry = findState(state);
    return entry && findValue(namesOf(entry->values), name, value);
}

bool isFloatState(D3DRENDERSTATETYPE state)
{
    const StateName *entry = findState(state);
    return entry && entry->values == ValueSet::FLOAT;
}

bool setSamplerState(SamplerStates &states, std::string_view name, std::string_view value)
{
    if (sameName(name, "MinFilter"))
        return assign(states.minFilter, filters, value);
    if (sameName(name, "MagFilter"))
        return assign(states.magFilter, filters, value);
    if (sameName(name, "MipFilter"))
        return assign(states.mipFilter, filters, value);
    if (sameName(name, "AddressU"))
        return assign(states.addressU, addresses, value);
    if (sameName(name, "AddressV"))
        return assign(states.addressV, addresses, value);
    if (sameName(name, "MaxAnisotropy"))
        return parseNumber(value, states.maxAnisotropy);
    if (sameName(name, "MipMapLodBias"))
        return parseNumber(value, states.mipLodBias);
    if (!sameName(name, "BorderColor") || value.substr(0, 2) != "0x")
        return false;
    const auto result = std::from_chars(value.data() + 2, value.data() + value.size(), states.borderColor, 16);
    return result.ec == std::errc() && result.ptr == value.data() + value.size();
}

} // namespace port
