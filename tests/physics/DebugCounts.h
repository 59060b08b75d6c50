// DebugCounts: counts the debug geometry that objects draw.
#pragma once

#include "engine/debug/DebugCollector.h"

/// Collects nothing, but remembers how many lines there were and the last text.
class DebugCounts : public DebugCollectorComponent
{
    KV_REFLECTED(DebugCounts)
public:
    DebugCounts() = default;

    void doFrame() override {}
    void addLine3D(Vec4, Vec4, Vec4) override { ++lines; }
    void addLine2D(Vec4, Vec4, Vec4) override {}
    void addText3D(Vec4, const String &text, Vec4) override { texts.push_back(text); }
    void addText2D(Vec4, const String &, Vec4) override {}

    int lines = 0;
    std::vector<String> texts;
};
