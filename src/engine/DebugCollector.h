// DebugCollectorComponent: where objects send the lines and texts that only developers see.
#pragma once

#include "engine/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

/// Collects debug geometry of one frame; what collects and draws it derives from this class.
///
/// Objects add to it from their `applyDebugDraw`. World positions are in metres with w 1, screen positions in
/// normalised window units, colours in 0..1 with alpha in w.
class DebugCollectorComponent : public SimpleComponent
{
    KV_REFLECTED(DebugCollectorComponent)
public:
    DebugCollectorComponent() = default;

    /// Adds a line in the world.
    virtual void addLine3D(Vec4 from, Vec4 to, Vec4 color) = 0;
    /// Adds a line on the screen.
    virtual void addLine2D(Vec4 from, Vec4 to, Vec4 color) = 0;
    /// Adds a text at a place in the world.
    virtual void addText3D(Vec4 position, const String &text, Vec4 color) = 0;
    /// Adds a text at a place on the screen.
    virtual void addText2D(Vec4 position, const String &text, Vec4 color) = 0;
};
