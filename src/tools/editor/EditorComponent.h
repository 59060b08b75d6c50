// EditorComponent: what a level's editor sees, holds and draws; the tools are scripts.
#pragma once

#include "tools/editor/EditorCamera.h"
#include "tools/editor/EditorGizmo.h"
#include "tools/editor/EditorOverlay.h"
#include "tools/editor/EditorPicking.h"
#include "tools/editor/EditorSelection.h"
#include "tools/editor/EditorShapes.h"
#include "tools/editor/EditorSnap.h"
#include "tools/editor/RigidMove.h"

#include "engine/entities/SimpleComponent.h"
#include "foundation/TimeTypes.h"
#include "object/tree/PythonObject.h"
#include "object/tree/ReflectorPtr.h"

#include <unordered_map>
#include <vector>

class WindowSystem2;

/// The editor of a level, under the component key "editor" on the level's entity ".Editor".
///
/// While it is open the mouse pointer is free, the player's own input rests, and the picture is drawn from the level's
/// ".EditorCamera": the right button looks about and flies with W A S D Q E, Shift faster, Ctrl slower, the wheel then
/// changes the speed; the wheel alone goes towards what lies under the pointer, the middle button pans, Alt with the
/// left one orbits about what is selected, F looks at it. All else goes to the callbacks, which tools are made of.
///
/// World space, metres, degrees; places on the screen are pixels of the window from its upper left. `EditorSystem` runs
/// it, in a stopped level, too. It changes nothing of the level but what it is told to, and puts back what a drag moved
/// unless that is kept. Closed, and without shapes, it costs nothing.
class EditorComponent : public SimpleComponent
{
    KV_REFLECTED(EditorComponent)
public:
    /// What is held with a key, as bits of `modifiers`.
    enum Modifier
    {
        EM_SHIFT = 1,
        EM_CONTROL = 2,
        EM_ALT = 4
    };

    EditorComponent() = default;

    /// Does nothing: `EditorSystem` runs the editor.
    void doFrame() override {}
    /// Begins to hear the level's input.
    void onLoadComplete() override;
    /// Closes the editor.
    void onMurder() override;

    bool getActive() const { return active; }
    /// Opens the editor, or closes it, which ends a drag and puts back what it moved; shapes and selection stay.
    void setActive(bool val);
    void open() { setActive(true); }
    void close() { setActive(false); }

    /// Takes what has come since the last frame: camera, handles, tools. `EditorSystem` calls it.
    void runFrame();
    /// Draws for this frame, once all has moved. `EditorSystem` calls it.
    /// @return whether there is anything to draw
    bool drawFrame();

    // What lies where

    /// The entity that is seen at a pixel; invalid for none.
    ///
    /// By the fronts of its triangles, and by the mark of what has none. Passes over what is hidden or not pickable.
    Handle<Entity> pick(float x, float y);
    /// The place that is seen at a pixel, w 1; where nothing is drawn, that of the plane at `groundHeight`.
    ///
    /// `normalUnder` and `entityUnder` tell more of it. w is 0 where there is neither.
    Vec4 placeUnder(float x, float y);
    /// As `placeUnder`, through all that is selected.
    Vec4 placeBehindSelection(float x, float y);
    /// Which way the surface of the last `placeUnder` faces, of length 1.
    Vec4 getNormalUnder() const { return under.normal; }
    /// What the last `placeUnder` found; invalid for the plane and for nothing.
    Handle<Entity> getEntityUnder() const { return under.entity; }
    /// Where a way into the world first meets something drawn, past an entity and what is below it; w is 0 where it meets
    /// nothing.
    Vec4 meet(Vec4 from, Vec4 direction, Handle<Object> ignored);
    /// Where the way through a pixel meets a level plane; w is 0 where it does not.
    Vec4 placeOnPlane(float x, float y, float height) const;
    /// The way into the world from a pixel, of length 1, w 0; it begins at `cameraPlace`.
    Vec4 directionAt(float x, float y) const;
    /// Where a place is seen: pixels in x and y, the distance ahead in z; w is 0 behind the camera.
    Vec4 toScreen(Vec4 place) const;
    /// Length that is seen as one pixel at a place's distance, metres.
    float metresPerPixel(Vec4 place) const;
    /// The entities whose middle is seen in a rectangle between two corners, as a list, each once.
    PythonObject pickBox(float x0, float y0, float x1, float y1);
    /// Whether an entity with all below it may be picked, by default so: what is locked is not.
    void setPickable(Handle<Object> entity, bool val) { picking.setPickable(entity, val); }
    bool isPickable(Handle<Object> entity) const { return picking.getPickable(entity); }
    /// Stops drawing all of an entity and what is below it, or draws again what this stopped.
    void setHidden(Handle<Object> entity, bool val);
    bool isHidden(Handle<Object> entity) const { return hidden.count(entity.getNumber()) != 0; }
    /// Least corner of the box around all that is drawn of an entity and below it, world space.
    Vec4 boundsMinOf(Handle<Object> entity) const { return boundsOfTree(entity).low; }
    /// Greatest corner of that box.
    Vec4 boundsMaxOf(Handle<Object> entity) const { return boundsOfTree(entity).high; }

    float getGroundHeight() const { return groundHeight; }
    /// Height of the plane that stands in where nothing is drawn, metres.
    void setGroundHeight(float val);

    // What is selected

    void select(Handle<Entity> entity);
    void deselect(Handle<Entity> entity);
    void clearSelection();
    bool isSelected(Handle<Entity> entity) const { return selection.has(entity); }
    /// The selected entities in the order in which they were, as a list.
    PythonObject getSelected() const;
    /// Selects the entities of a list in the place of all.
    void setSelected(const PythonObject &entities);
    int getSelectedCount() const { return static_cast<int>(selection.size()); }
    /// Outlines an entity in a colour, selected or not; an alpha of 0 ends that.
    void outline(Handle<Entity> entity, Vec4 color) { selection.outline(entity, color); }
    void clearOutlines() { selection.clearOutlines(); }

    // Handles

    String getGizmo() const;
    /// Shows handles at `gizmoPlace`: "none", "move", "turn" or "scale"; another name is logged as an error.
    void setGizmo(const String &val);
    /// Where the handles are: the middle of what is selected, unless it has been set since the selection changed.
    Vec4 getGizmoPlace() const { return gizmoPlaceGiven ? givenGizmoPlace : selection.middle(); }
    void setGizmoPlace(Vec4 val);
    String getGizmoSpace() const;
    /// Along whose axes the handles lie: "world", or "local" for those of the entity that was selected last.
    void setGizmoSpace(const String &val);
    bool getGizmoMoves() const { return gizmoMoves; }
    /// Whether what is selected comes along while a handle is dragged, by default so.
    ///
    /// It is a preview: whole subtrees are moved as they stood, and put back when the drag is not kept.
    void setGizmoMoves(bool val) { gizmoMoves = val; }
    /// Whether a handle is being dragged.
    bool getDragging() const { return dragging; }
    /// Axis that the present or last drag turns about, or moves along; of length 1.
    Vec4 getDragAxis() const { return dragAxis; }
    /// The place about which the present or last drag turns and scales.
    Vec4 getDragPivot() const { return motion.pivot; }
    /// Ends a drag and puts back what it moved.
    void cancelDrag() { endDrag(false); }

    /// Moves an entity with all below it: turned about a pivot by degrees about +y, then moved.
    ///
    /// Bodies come to rest, volumes and followers come along. Numbers that are none change nothing.
    void moveRigidly(Handle<Object> entity, Vec4 by, float turnDegrees, Vec4 pivot);
    /// As `moveRigidly`, turned by any rotation, and not moved.
    void turnRigidly(Handle<Object> entity, Quaternion turn, Vec4 pivot);

    float getSnapStep() const { return snap.step; }
    /// Width of the grid that places snap to, metres; 0 for none.
    void setSnapStep(float val);
    float getSnapAngle() const { return snap.angle; }
    /// Step that turns snap to, degrees; 0 for none.
    void setSnapAngle(float val);
    bool getSnapToGrid() const { return snap.toGrid; }
    /// Whether drags go by the steps; Ctrl turns that round while it is held.
    void setSnapToGrid(bool val) { snap.toGrid = val; }
    bool getSnapToSurfaces() const { return snap.toSurfaces; }
    /// Whether what is dragged by the middle is set down on the surface under the pointer.
    void setSnapToSurfaces(bool val) { snap.toSurfaces = val; }
    bool getSnapToNeighbours() const { return snap.toNeighbours; }
    /// Whether what is dragged draws flush with the faces of what is near.
    void setSnapToNeighbours(bool val) { snap.toNeighbours = val; }
    /// The nearest place of the grid if places snap now, or else the place itself.
    Vec4 snapped(Vec4 place) const { return snapsNow() ? snap.snapped(place) : place; }

    // Shapes

    /// Draws a line in every frame until its layer is cleared; the same of the others. A closed editor draws them, too.
    void addShapeLine(const String &layer, Vec4 from, Vec4 to, Vec4 color);
    /// The edges of a box along the world's axes between two corners.
    void addShapeBox(const String &layer, Vec4 low, Vec4 high, Vec4 color);
    /// A text whose middle is a place.
    void addShapeText(const String &layer, Vec4 at, const String &text, Vec4 color);
    /// A level rectangle between two corners, at the height of the first.
    void addShapeArea(const String &layer, Vec4 corner, Vec4 otherCorner, Vec4 color);
    /// A circle that lies level.
    void addShapeCircle(const String &layer, Vec4 middle, float radius, Vec4 color);
    /// Takes all shapes of a layer away.
    void clearShapes(const String &layer) { shapes.clear(layer); }
    /// Whether the world hides a layer's lines, boxes and areas, by default not; a cleared layer has forgotten it.
    void setShapesBehind(const String &layer, bool val) { shapes.setBehind(layer, val); }
    float getShapeWidth() const { return shapes.getWidth(); }
    /// Width of the lines that are added from now on, pixels.
    void setShapeWidth(float val) { shapes.setWidth(val); }
    bool getMarksShown() const { return marksShown; }
    /// Whether what has no mesh is shown by a mark, by default so; it is picked all the same.
    void setMarksShown(bool val) { marksShown = val; }

    // Camera

    Vec4 getCameraPlace() const { return camera.getPlace(); }
    void setCameraPlace(Vec4 val) { camera.setPlace(val); }
    /// Which way the camera looks, degrees from +z towards +x.
    float getCameraTurn() const;
    void setCameraTurn(float val);
    /// How far the camera looks down, degrees.
    float getCameraPitch() const;
    void setCameraPitch(float val);
    float getCameraSpeed() const { return camera.getSpeed(); }
    /// Speed of the flight, metres a second.
    void setCameraSpeed(float val) { camera.setSpeed(val); }
    String getCameraMode() const;
    /// How the right button moves: "fly", "walk" at the height of eyes above what lies below, or "orbit".
    void setCameraMode(const String &val);
    float getCutHeight() const;
    /// Height above which nothing is drawn or picked while the camera is above it, metres; endless for none.
    ///
    /// Marks of lamps that hang up to some more than a metre higher stay.
    void setCutHeight(float val);
    /// The camera's entity; invalid before the editor is first opened.
    Handle<Entity> getCamera() const { return camera.getEntity(); }
    /// Puts the camera somewhere else, at rest; degrees, a positive pitch looks down.
    void goTo(Vec4 place, float turn, float pitch);
    /// Looks at what is selected, or at all that is drawn, so that it fills most of the picture.
    void frameSelection();
    /// Looks at one entity with all below it.
    void frameEntity(Handle<Object> entity) { camera.frame(boundsOfTree(entity)); }

    // What the tools hear

    /// Sets what is called with what the mouse does: kind, x, y and button.
    ///
    /// Kinds are "down", "up", "move", "double" and "wheel"; buttons are 0 left, 1 right, 2 middle, those of a wheel its
    /// notches. What the camera and the handles take does not come; a right button that was not dragged does when it is
    /// let go. A callback that raises is reported and let go of.
    void setPointerCalled(ReflectorPtr val) { pointerCalled = val; }
    /// Sets what is called with a virtual-key code and whether it went down; not while the camera flies or text is typed.
    void setKeyCalled(ReflectorPtr val) { keyCalled = val; }
    /// Sets what is called when a handle is taken.
    void setDragBegan(ReflectorPtr val) { dragBegan = val; }
    /// Sets what is called while a handle is dragged: metres moved, degrees turned about `dragAxis`, factors, so far.
    void setDragged(ReflectorPtr val) { dragged = val; }
    /// Sets what is called when a drag ends, with whether it is kept; what it moved still stands where it was dragged
    /// to, or is back already.
    void setDragEnded(ReflectorPtr val) { dragEnded = val; }
    /// What is held now: 1 shift, 2 control, 4 alt.
    int getModifiers() const;
    /// Where the pointer is, pixels; w is 0 before it was first heard of.
    Vec4 getPointer() const { return pointer; }
    /// Whether the right button has the camera, so that keys fly.
    bool getFlying() const { return gesture == LOOK; }

    void handleKeyDown(const ReflectorPtr &message, int key);
    void handleKeyUp(const ReflectorPtr &message, int key);
    void handleMouseDown(const ReflectorPtr &message, unsigned click, float x, float y);
    void handleMouseUp(const ReflectorPtr &message, unsigned click, float x, float y);
    void handlePointer(const ReflectorPtr &message, unsigned button, float x, float y);
    void handleMotion(const ReflectorPtr &message, float x, float y);
    void handleWheel(const ReflectorPtr &message, int direction, float x, float y);

private:
    /// What the mouse has hold of.
    enum Gesture
    {
        FREE,   ///< nothing
        LOOK,   ///< the camera, by the right button
        PAN,    ///< the camera, by the middle one
        ORBIT,  ///< the camera, by the left one with Alt
        HANDLE, ///< a handle
        TOOL    ///< what a tool makes of it
    };
    enum EventKind
    {
        KEY_DOWN,
        KEY_UP,
        BUTTON_DOWN,
        BUTTON_UP,
        POINT,
        MOTION,
        WHEEL
    };
    struct Event
    {
        EventKind kind;
        int code;
        float x, y; ///< pixels from the upper left; of a motion, pixels
    };
    enum CameraMode
    {
        FLY,
        WALK,
        CIRCLE
    };

    Coordinator *findLevel();
    EditorView view() const;
    void begin(Coordinator &level);
    void end();
    void prepareDrawing();
    void holdInput();
    void note(EventKind kind, int code, float x, float y);
    void take(const Event &event);
    void takeKey(int key, bool down);
    void takeButtonDown(int button, float x, float y);
    void takeButtonUp(int button, float x, float y);
    void takePoint(float x, float y);
    void takeMotion(float x, float y);
    void takeWheel(int direction, float x, float y);
    void beginLook();
    void endLook();
    void moveCamera(float right, float down);
    void flyOn();
    void walkOn();
    Vec4 orbitCentre();
    bool tellPointer(const char *kind, float x, float y, int button);
    void tellDragBegan();
    void tellDragged(float degrees);
    void tellDragEnded(bool kept);

    void beginDrag();
    void follow(float x, float y);
    void endDrag(bool kept);
    bool snapsNow() const;
    void snapMove(EditorGizmo::Way &way, float x, float y);
    void placeGizmo();
    void drawEditing(const EditorView &seen);
    void drawMarks(const EditorView &seen);
    void selectionChanged();
    PickHit castPast(float x, float y, bool pastSelection);

    bool active = false;
    bool hears = false;    ///< the level's input
    bool prepared = false; ///< to draw
    Handle<Coordinator> level;
    bool pointerWasHeld = false; ///< before the editor opened
    bool pointerWasShown = false;

    EditorCamera camera;
    CameraMode cameraMode = FLY;
    Vec4 walkedPlace; ///< of the camera, where the ground below it is known; w 0 for nowhere
    EditorPicking picking;
    EditorSelection selection;
    EditorShapes shapes;
    EditorOverlay overlay;
    EditorGizmo gizmo;
    EditorSnap snap;

    EditorGizmo::Kind gizmoKind = EditorGizmo::NONE;
    bool gizmoIsLocal = false;
    bool gizmoPlaceGiven = false;
    Vec4 givenGizmoPlace = Vec4(0, 0, 0, 1);
    bool gizmoMoves = true;
    bool dragging = false;
    Vec4 dragAxis = Vec4(0, 1, 0, 0);
    RigidMotion motion; ///< of the present or last drag
    RigidMove dragMove;
    SpanBox dragBounds; ///< of what is dragged, as it stood

    std::vector<Event> events; ///< since the last frame
    Gesture gesture = FREE;
    int gestureButton = 0;
    float gestureWay = 0.f; ///< pixels that the mouse has gone since the button went down
    Vec4 gesturePlace;      ///< pixels, where that was
    Vec4 orbitPlace;        ///< world space
    Vec4 pointer;           ///< pixels; w 0 before it was heard of
    TimerTicks lastClick = 0;
    Vec4 lastClickPlace;
    int hoveredGrip = 0;

    PickHit under;
    float groundHeight = 0.f; ///< metres
    bool marksShown = true;
    std::unordered_map<machine_word, std::vector<Handle<GraphicsComponent2>>> hidden; ///< what each stopped drawing

    ReflectorPtr pointerCalled, keyCalled, dragBegan, dragged, dragEnded;
};
