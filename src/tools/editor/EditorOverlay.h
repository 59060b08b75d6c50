// EditorOverlay: what the editor draws over the world, in a handful of calls.
#pragma once

#include "tools/editor/EditorView.h"
#include "tools/editor/OverlayGraphics.h"

#include "foundation/KVString.h"

#include <array>

class EditorLabels;
class Entity;

/// The drawn components below the editor's entity, filled anew in each frame.
///
/// World space, metres; colours 0..1 with alpha in w, widths in pixels. Nothing is drawn, and nothing costs, of what
/// stays empty.
class EditorOverlay
{
public:
    /// Whether the world hides what is drawn.
    enum Depth
    {
        OVER_ALL = 0,
        BEHIND = 1
    };

    /// Makes the components below an entity, where there are none.
    void build(const Handle<Entity> &editor);
    /// Takes away all that is drawn; lists keep their memory.
    void clear();
    /// Says through which camera all is seen.
    void show(const EditorView &view);

    void line(const Vec4 &from, const Vec4 &to, const Vec4 &color, float width, Depth depth = OVER_ALL);
    /// The edges of the unit cube around the origin, placed by a matrix.
    void box(const Matrix4 &placement, const Vec4 &color, float width, Depth depth = OVER_ALL);
    /// A parallelogram.
    void area(const Vec4 &corner, const Vec4 &edge, const Vec4 &otherEdge, const Vec4 &color, Depth depth = OVER_ALL);
    /// A cone from the middle of its base.
    void cone(const Vec4 &base, const Vec4 &along, float radius, const Vec4 &color);
    void cube(const Matrix4 &placement, const Vec4 &color);
    /// A text whose middle is a place; lines that are hidden are never text.
    void text(const Vec4 &place, const String &words, const Vec4 &color);
    /// Adds what was placed before.
    void append(OverlayGraphics::Shape shape, const OverlayGraphics::InstanceList &instances, Depth depth);

private:
    static constexpr int SHAPES = 5;

    OverlayGraphics *drawer(OverlayGraphics::Shape shape, Depth depth);
    void add(OverlayGraphics::Shape shape, const DefaultInstanceVertex &instance, Depth depth);

    std::array<std::array<Handle<OverlayGraphics>, SHAPES>, 2> drawers; ///< by depth and shape
    Handle<EditorLabels> labels;
};

/// A matrix of three axes and an origin.
Matrix4 frameOf(const Vec4 &x, const Vec4 &y, const Vec4 &z, const Vec4 &origin);
