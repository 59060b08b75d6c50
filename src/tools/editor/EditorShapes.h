// EditorShapes: what tools draw over the world, by layers that stay until they are cleared.
#pragma once

#include "tools/editor/OverlayGraphics.h"

#include "foundation/KVString.h"

#include <map>
#include <vector>

class EditorOverlay;

/// Layers of shapes by name, each placed once and drawn in every frame.
///
/// World space, metres. What is no number is left out, since it could not be drawn.
class EditorShapes
{
public:
    void line(const String &layer, const Vec4 &from, const Vec4 &to, const Vec4 &color);
    void box(const String &layer, const Matrix4 &placement, const Vec4 &color);
    void area(const String &layer, const Vec4 &corner, const Vec4 &edge, const Vec4 &otherEdge, const Vec4 &color);
    void text(const String &layer, const Vec4 &place, const String &words, const Vec4 &color);
    void clear(const String &layer) { layers.erase(layer); }
    /// Whether nothing is to be drawn.
    bool isEmpty() const;

    /// Whether the world hides a layer.
    void setBehind(const String &layer, bool val);
    void setWidth(float val);
    float getWidth() const { return width; }

    void draw(EditorOverlay &overlay) const;

private:
    struct Label
    {
        Vec4 place;
        String words;
        Vec4 color;
    };
    struct Layer
    {
        OverlayGraphics::InstanceList lines, boxes, areas;
        std::vector<Label> labels;
        bool behind = false;
    };

    std::map<String, Layer> layers;
    float width = 1.5f; ///< of lines to come, pixels
};
