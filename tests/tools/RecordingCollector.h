// RecordingCollector: a debug collector that keeps what it is given.
#pragma once

#include "engine/debug/DebugCollector.h"

#include <vector>

/// Keeps texts with their place, and counts lines.
class RecordingCollector : public DebugCollectorComponent
{
    KV_REFLECTED(RecordingCollector)
public:
    struct Text
    {
        float x;
        float y;
        String text;
    };

    RecordingCollector() = default;

    void addLine2D(Vec4 from, Vec4 to, Vec4 color) override { ++lines; }
    void addText2D(Vec4 position, const String &text, Vec4 color) override
    {
        texts.push_back({position.x, position.y, text});
    }

    /// Forgets everything and keeps the room.
    void clear()
    {
        texts.clear();
        lines = 0;
    }

    std::vector<Text> texts;
    int lines = 0;
};
