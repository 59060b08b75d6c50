// EditorGizmo: the handles by which the mouse moves, turns and scales what is selected.
#pragma once

#include "tools/editor/EditorView.h"

#include "foundation/Quaternion.h"
#include "foundation/Vector.h"

class EditorOverlay;

/// Handles about a place, as large on the screen wherever that is: three arms, three planes, three rings.
///
/// World space, metres, angles in radians. Says what the mouse has hold of and how far it has been taken; moves nothing.
class EditorGizmo
{
public:
    enum Kind
    {
        NONE = 0,
        MOVE = 1,
        TURN = 2,
        SCALE = 3
    };
    /// What of it is held: one axis, a plane of two, or the middle, as bits of the axes x 1, y 2, z 4.
    enum Grip
    {
        NOTHING = 0,
        ALL = 7
    };
    /// How far a drag has come.
    struct Way
    {
        Vec4 moved;                             ///< metres
        float turned = 0.f;                     ///< about the grip's axis
        Vec4 scaled = Vec4(1.f, 1.f, 1.f, 0.f); ///< along the gizmo's axes
    };

    /// Sets what is shown, where, and along which axes.
    void put(Kind newKind, const Vec4 &newPlace, const Quaternion &axes);
    Kind getKind() const { return kind; }
    const Vec4 &getPlace() const { return place; }
    const Quaternion &getTurn() const { return turn; }
    /// An axis of the gizmo, world space, of length 1.
    Vec4 axis(int index) const { return turn.generateRotation().getColumn(index); }

    /// What lies under a pixel.
    int gripAt(const EditorView &view, float x, float y) const;
    /// Takes hold of what lies under a pixel.
    /// @return whether there is anything
    bool begin(const EditorView &view, float x, float y);
    /// How far the drag has come when the mouse is at a pixel.
    Way follow(const EditorView &view, float x, float y);
    void end() { held = NOTHING; }
    /// What is held, as bits of the axes; 0 for nothing.
    int getHeld() const { return held; }
    /// The axis that a turn goes about: the lowest that is held.
    Vec4 heldAxis() const;

    void draw(EditorOverlay &overlay, const EditorView &view, int hovered) const;

private:
    float reach(const EditorView &view) const;
    bool isEndOn(const EditorView &view, int index) const;
    float armAway(const EditorView &view, int index, const Vec4 &pixel) const;
    float ringAway(const EditorView &view, int index, const Vec4 &pixel) const;
    bool planeHolds(const EditorView &view, int index, const Vec4 &pixel) const;
    Vec4 ringPoint(const EditorView &view, int index, float angle) const;
    Vec4 placeHeld(const EditorView &view, float x, float y) const;
    Vec4 planeNormal(const EditorView &view) const;
    float angleHeld(const EditorView &view, float x, float y) const;
    void drawArm(EditorOverlay &overlay, const EditorView &view, int index, bool bright) const;
    void drawPlane(EditorOverlay &overlay, const EditorView &view, int index, bool bright) const;
    void drawRing(EditorOverlay &overlay, const EditorView &view, int index, bool bright) const;
    void drawMiddle(EditorOverlay &overlay, const EditorView &view, bool bright) const;

    Kind kind = NONE;
    Vec4 place = Vec4(0, 0, 0, 1);
    Quaternion turn;

    int held = NOTHING;
    Vec4 start;  ///< place of the mouse on what is held, when it was taken
    Vec4 origin; ///< of the gizmo then
    Vec4 startPixel;
    Vec4 last;             ///< the last place that could be had
    float lastAngle = 0.f; ///< of the mouse about the held ring
    float turned = 0.f;    ///< so far
};
