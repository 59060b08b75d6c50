// DebugCollectorComponent: the lines and texts of a frame that only developers see.
#pragma once

#include "engine/entities/SimpleComponent.h"

#include "foundation/KVString.h"
#include "foundation/Vector.h"

#include <vector>

/// Collects the debug geometry of a frame from all systems and from every object of its level.
///
/// One a level, under the component key "debugDrawCollector", made once debug drawing is on. Objects add to it from
/// their `applyDebugDraw`, which it calls in its frame step; scripts may add at any time of the frame. What has been
/// collected at the end of the step is shown in the same frame and dropped in the next one. World positions are in
/// metres, screen positions in normalised window units from the lower left corner, both with w 1; colours in 0..1,
/// with alpha in w for texts (lines are opaque). It draws nothing itself: what draws reads the lists, which are kept
/// from frame to frame.
class DebugCollectorComponent : public SimpleComponent
{
    KV_REFLECTED(DebugCollectorComponent)
public:
    /// A line from place to place.
    struct Line
    {
        Vec4 from;
        Vec4 to;
        Vec4 color;
    };
    /// A text at a place.
    struct Text
    {
        Vec4 position;
        String text;
        Vec4 color;
    };
    /// What is shown in one space.
    struct Geometry
    {
        std::vector<Line> lines;
        std::vector<Text> texts;

        void clear();
        bool isEmpty() const { return lines.empty() && texts.empty(); }
    };

    DebugCollectorComponent() = default;

    /// Calls `applyDebugDraw` of all systems and, unless GlobalConfigSystem's debugDrawSystemsOnly is set, of every
    /// object of the level; then shows what has been collected. Nothing is shown while debugDrawEnabled is off.
    void doFrame() override;

    /// Adds a line in the world; what stands in front of it hides it.
    virtual void addLine3D(Vec4 from, Vec4 to, Vec4 color);
    /// Adds a line on the screen.
    virtual void addLine2D(Vec4 from, Vec4 to, Vec4 color);
    /// Adds a text whose middle is a place in the world; nothing hides it, but behind the camera it is not shown.
    virtual void addText3D(Vec4 position, const String &text, Vec4 color);
    /// Adds a text whose upper left corner is a place on the screen; line feeds begin new lines.
    virtual void addText2D(Vec4 position, const String &text, Vec4 color);

    /// What is shown in the world in this frame.
    const Geometry &getWorldGeometry() const { return shown.world; }
    /// What is shown on the screen in this frame.
    const Geometry &getScreenGeometry() const { return shown.screen; }

protected:
    /// Shows what has been collected in the place of what was.
    void showCollected();

private:
    struct Frame
    {
        Geometry world;
        Geometry screen;

        void clear();
    };

    void collectFromSystems();
    void collectFromTree(Object &root);

    Frame collected; ///< what the next frame step shows
    Frame shown;
};
