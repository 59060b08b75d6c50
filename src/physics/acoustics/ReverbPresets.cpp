#include "physics/acoustics/ReverbPresets.h"

#include "object/tree/PathBelow.h"

#include "foundation/Logger.h"

namespace
{

// Decay by what such a place would have by its volume and its surfaces; the early reflections come as late as its
// walls are far. What is soft, or open, loses its high end first.
constexpr ReverbPreset PRESETS[ReverbPreset::COUNT] = {
    // clang-format off
    // name        room   roomHF  decay  HF     early  delay   late   delay   diffusion density
    {"none",      -10000, -10000, 0.1f,  1.00f, -10000, 0.000f, -10000, 0.000f,   0.f,    0.f},
    {"smallRoom",  -1000,   -600, 0.5f,  0.65f,  -500, 0.003f,    -100, 0.005f, 100.f,   70.f},
    {"woodRoom",   -1000,   -900, 0.7f,  0.55f,  -350, 0.004f,       0, 0.007f, 100.f,   85.f},
    {"hall",       -1000,   -400, 1.8f,  0.70f, -1100, 0.015f,     150, 0.022f, 100.f,  100.f},
    {"cellar",     -1000,   -250, 1.4f,  0.80f,  -300, 0.007f,     250, 0.010f,  85.f,   95.f},
    {"chapel",     -1000,   -350, 3.4f,  0.65f, -1400, 0.025f,     300, 0.035f, 100.f,  100.f},
    {"tunnel",     -1000,   -150, 2.4f,  0.90f,   -50, 0.010f,     400, 0.018f,  60.f,   90.f},
    {"outdoors",   -1800,  -1500, 0.9f,  0.30f, -2600, 0.180f,   -1200, 0.060f,  30.f,  100.f},
    // clang-format on
};

} // namespace

std::span<const ReverbPreset> ReverbPreset::all()
{
    return PRESETS;
}

const ReverbPreset *ReverbPreset::find(const String &name)
{
    for (const ReverbPreset &preset : PRESETS)
        if (name == String::copyFrom(preset.name))
            return &preset;
    return nullptr;
}

const ReverbPreset *ReverbPreset::choose(const Object &owner, const String &name, const ReverbPreset *otherwise)
{
    if (const ReverbPreset *const preset = find(name))
        return preset;
    String names;
    for (const ReverbPreset &preset : PRESETS)
        names = names.empty() ? String::copyFrom(preset.name) : names + SCS(", ") + String::copyFrom(preset.name);
    KV_LOGF(Logger_::I_ERROR, "%s knows no room '%s' and stays %s; there are %s.",
            pathBelow(nullptr, owner).toCString(), name.toCString(), otherwise->name, names.toCString());
    return otherwise;
}
