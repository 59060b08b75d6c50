#include "tools/editor/EditorComponent.h"

#include "tools/editor/EditorSystem.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/TreeWalk.h"
#include "platform/input/InputSystem.h"
#include "platform/window/WindowSystem2.h"
#include "rendering/device/GraphicsSystem2.h"
#include "rendering/drawn/LightComponent.h"

#include "foundation/Finite.h"
#include "foundation/Logger.h"
#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Names of one of several states, as scripts give them.
template <std::size_t Count>
int stateOf(const char *property, const String &val, const char *const (&names)[Count], int present)
{
    for (std::size_t i = 0; i < Count; ++i)
        if (val == String::copyFrom(names[i]))
            return static_cast<int>(i);
    String all;
    for (const char *const name : names)
        all = String::format("%s%s%s", all.toCString(), all.empty() ? "" : ", ", name);
    KV_LOGF(Logger_::I_ERROR, "EditorComponent: '%s' is no %s: it is one of %s", val.toCString(), property,
            all.toCString());
    return present;
}

constexpr const char *gizmoNames[] = {"none", "move", "turn", "scale"};
constexpr const char *spaceNames[] = {"world", "local"};
constexpr const char *modeNames[] = {"fly", "walk", "orbit"};

TransformComponent *transformOf(const Handle<Object> &entity)
{
    return componentOf<TransformComponent>(entity, ComponentKeys::transform);
}

bool isBelow(const Object &object, const Handle<Object> &root)
{
    for (const Object *step = &object; step; step = step->getParent().lookup().ptr)
        if (step->getHandle() == root)
            return true;
    return false;
}

bool isUsableStep(const char *property, float val)
{
    if (std::isfinite(val) && val >= 0.f)
        return true;
    KV_LOGF(Logger_::I_ERROR, "EditorComponent: %s cannot be %g: it is 0 or more", property, static_cast<double>(val));
    return false;
}
} // namespace

Coordinator *EditorComponent::findLevel()
{
    const auto found = getAncestorOfType<Coordinator>().lookup();
    return found.ptr;
}

EditorView EditorComponent::view() const
{
    const auto shown = level.lookup();
    return shown ? EditorView(*shown) : EditorView();
}

void EditorComponent::setActive(bool val)
{
    Coordinator *const found = findLevel();
    if (val == active || (val && (!found || isDying())))
        return;
    if (val)
        begin(*found);
    else
        end();
}

void EditorComponent::begin(Coordinator &inLevel)
{
    active = true;
    level = handle_cast<Coordinator>(inLevel.getHandle());
    prepareDrawing();
    // First: another level's editor gives the pointer back as it found it.
    getSystemDeref<EditorSystem>().attend(getTypedHandle());
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    pointerWasHeld = window.getCursorMode() == WindowSystem2::CURSOR_RELATIVE;
    pointerWasShown = window.getPointerShown();
    camera.begin(inLevel);
    events.clear();
    gesture = FREE;
    holdInput();
    window.setPointerShown(true);
}

/// Has it drawn from now on; the effect is compiled once for all levels.
void EditorComponent::prepareDrawing()
{
    getSystemDeref<EditorSystem>().show(getTypedHandle());
    if (prepared)
        return;
    prepared = true;
    getSystemDeref<GraphicsSystem2>().getShaders().CreateShader(SCS("editor.fx"));
    overlay.build(handle_cast<Entity>(getParent()));
}

void EditorComponent::end()
{
    endDrag(false);
    active = false;
    gesture = FREE;
    events.clear();
    getSystemDeref<EditorSystem>().leave(getTypedHandle());
    if (const auto shown = level.lookup())
        camera.end(*shown);
    getSystemDeref<InputSystem>().setScreenTakesInput(false);
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    window.setPointerShown(pointerWasShown);
    window.setCursorMode(pointerWasHeld ? WindowSystem2::CURSOR_RELATIVE : WindowSystem2::CURSOR_ABSOLUTE);
}

void EditorComponent::onMurder()
{
    setActive(false);
    SimpleComponent::onMurder();
}

// What lies where

Handle<Entity> EditorComponent::pick(float x, float y)
{
    Coordinator *const found = findLevel();
    return found ? picking.pick(*found, EditorView(*found), x, y).entity : Handle<Entity>();
}

PickHit EditorComponent::castPast(float x, float y, bool pastSelection)
{
    Coordinator *const found = findLevel();
    const EditorView seen = found ? EditorView(*found) : EditorView();
    if (!seen.isUsable() || !std::isfinite(x) || !std::isfinite(y))
        return {};
    const auto selected = [this](const Entity &entity) { return selection.takesAlong(entity); };
    PickHit hit =
        picking.castAt(*found, seen, x, y, pastSelection ? EditorPicking::Skip(selected) : EditorPicking::Skip());
    if (hit.entity.isValid())
        return hit;
    const ViewRay ray = seen.rayAt(x, y);
    const Vec4 up(0, 1, 0, 0);
    const auto distance = ray.meets(Vec4(0, groundHeight, 0, 1), up);
    if (distance)
        hit = {Handle<Entity>(), ray.at(*distance), up, *distance};
    return hit;
}

Vec4 EditorComponent::placeUnder(float x, float y)
{
    under = castPast(x, y, false);
    return under.place;
}

Vec4 EditorComponent::placeBehindSelection(float x, float y)
{
    under = castPast(x, y, true);
    return under.place;
}

Vec4 EditorComponent::meet(Vec4 from, Vec4 direction, Handle<Object> ignored)
{
    Coordinator *const found = findLevel();
    direction.w = 0.f;
    direction.normalize();
    if (!found || !isFinite(from) || !isFinite(direction) || direction == Vec4())
        return Vec4();
    from.w = 1.f;
    under = picking.cast(*found, {from, direction}, [&](const Entity &entity) { return isBelow(entity, ignored); });
    return under.place;
}

Vec4 EditorComponent::placeOnPlane(float x, float y, float height) const
{
    const EditorView seen = view();
    if (!seen.isUsable() || !std::isfinite(x) || !std::isfinite(y) || !std::isfinite(height))
        return Vec4();
    const ViewRay ray = seen.rayAt(x, y);
    const auto distance = ray.meets(Vec4(0, height, 0, 1), Vec4(0, 1, 0, 0));
    return distance ? ray.at(*distance) : Vec4();
}

Vec4 EditorComponent::directionAt(float x, float y) const
{
    const EditorView seen = view();
    return seen.isUsable() && std::isfinite(x) && std::isfinite(y) ? seen.rayAt(x, y).direction : Vec4();
}

Vec4 EditorComponent::toScreen(Vec4 place) const
{
    return view().project(place).value_or(Vec4());
}

float EditorComponent::metresPerPixel(Vec4 place) const
{
    return view().metresPerPixel(place);
}

void EditorComponent::setHidden(Handle<Object> entity, bool val)
{
    const auto known = hidden.find(entity.getNumber());
    const auto root = entity.lookup();
    if (val == (known != hidden.end()) || (val && !root))
        return;
    if (!val)
    {
        for (const Handle<GraphicsComponent2> &each : known->second)
            if (const auto drawn = each.lookup())
                drawn->setVisible(true);
        hidden.erase(known);
        return;
    }
    std::vector<Handle<GraphicsComponent2>> &stopped = hidden[entity.getNumber()];
    TreeWalk walk(*root);
    while (Object *const object = walk.next())
        if (const auto drawn = handle_cast<GraphicsComponent2>(object->getHandle()).lookup();
            drawn && drawn->getVisible())
        {
            drawn->setVisible(false);
            stopped.push_back(handle_cast<GraphicsComponent2>(object->getHandle()));
        }
}

void EditorComponent::setGroundHeight(float val)
{
    if (std::isfinite(val))
        groundHeight = val;
}

// What is selected

void EditorComponent::select(Handle<Entity> entity)
{
    if (selection.add(entity))
        selectionChanged();
}

void EditorComponent::deselect(Handle<Entity> entity)
{
    if (selection.remove(entity))
        selectionChanged();
}

void EditorComponent::clearSelection()
{
    selection.clear();
    selectionChanged();
}

/// A drag goes on with what it took hold of.
void EditorComponent::selectionChanged()
{
    gizmoPlaceGiven = false;
}

// Handles

String EditorComponent::getGizmo() const
{
    return String::copyFrom(gizmoNames[gizmoKind]);
}

void EditorComponent::setGizmo(const String &val)
{
    const auto kind = static_cast<EditorGizmo::Kind>(stateOf("gizmo", val, gizmoNames, gizmoKind));
    if (kind != gizmoKind)
        endDrag(false);
    gizmoKind = kind;
}

void EditorComponent::setGizmoPlace(Vec4 val)
{
    if (!isFinite(val))
        return;
    givenGizmoPlace = Vec4(val.x, val.y, val.z, 1.f);
    gizmoPlaceGiven = true;
}

String EditorComponent::getGizmoSpace() const
{
    return String::copyFrom(spaceNames[gizmoIsLocal]);
}

void EditorComponent::setGizmoSpace(const String &val)
{
    gizmoIsLocal = stateOf("gizmoSpace", val, spaceNames, gizmoIsLocal) == 1;
}

void EditorComponent::placeGizmo()
{
    const TransformComponent *const own = gizmoIsLocal ? transformOf(selection.newest()) : nullptr;
    const bool shown = selection.size() > 0 || gizmoPlaceGiven;
    gizmo.put(shown ? gizmoKind : EditorGizmo::NONE, getGizmoPlace(), own ? own->getOrientation() : Quaternion());
}

void EditorComponent::moveRigidly(Handle<Object> entity, Vec4 by, float turnDegrees, Vec4 pivot)
{
    if (!std::isfinite(turnDegrees))
        return;
    RigidMove moved;
    moved.take(entity);
    by.w = 0.f;
    pivot.w = 1.f;
    moved.apply({by, Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), DegToRad(turnDegrees)), pivot});
}

void EditorComponent::turnRigidly(Handle<Object> entity, Quaternion turn, Vec4 pivot)
{
    RigidMove moved;
    moved.take(entity);
    turn.normalize();
    pivot.w = 1.f;
    moved.apply({Vec4(), turn, pivot});
}

void EditorComponent::setSnapStep(float val)
{
    if (isUsableStep("snapStep", val))
        snap.step = val;
}

void EditorComponent::setSnapAngle(float val)
{
    if (isUsableStep("snapAngle", val))
        snap.angle = val;
}

bool EditorComponent::snapsNow() const
{
    return snap.toGrid != ((getModifiers() & EM_CONTROL) != 0);
}

void EditorComponent::beginDrag()
{
    dragging = true;
    motion = RigidMotion();
    motion.pivot = gizmo.getPlace();
    dragAxis = gizmo.heldAxis();
    dragMove.clear();
    dragBounds = SpanBox();
    if (gizmoMoves)
        for (const Handle<Entity> &entity : selection.list())
            dragMove.take(entity);
    if (Coordinator *const found = snap.toNeighbours ? findLevel() : nullptr)
    {
        dragBounds = selection.bounds();
        snap.gatherNeighbours(*found, [this](const Entity &entity)
                              { return selection.takesAlong(entity) || !picking.isPickable(entity); });
    }
    tellDragBegan();
}

/// Along the axes that are held, so that the handles come to lie on the grid, on a surface, beside a neighbour.
void EditorComponent::snapMove(EditorGizmo::Way &way, float x, float y)
{
    const int held = gizmo.getHeld();
    if (snap.toSurfaces && held == EditorGizmo::ALL)
    {
        const PickHit surface = castPast(x, y, true);
        if (surface.place.w == 1.f)
            way.moved = surface.place - motion.pivot;
        way.moved.w = 0.f;
    }
    if (snapsNow())
    {
        Vec4 snappedWay;
        for (int index = 0; index < 3; ++index)
        {
            const Vec4 axis = gizmo.axis(index);
            const float from = gizmoIsLocal ? 0.f : motion.pivot.dot(axis), along = way.moved.dot(axis);
            const bool isFree = (held & (1 << index)) && !(snap.toSurfaces && index == 1 && held == EditorGizmo::ALL);
            snappedWay += axis * (isFree ? snap.snappedLength(from + along) - from : along);
        }
        way.moved = snappedWay;
    }
    if (!snap.toNeighbours || gizmoIsLocal)
        return;
    SpanBox box = dragBounds;
    box.low += way.moved;
    box.high += way.moved;
    way.moved += snap.towardsNeighbours(box, held);
}

void EditorComponent::follow(float x, float y)
{
    const EditorView seen = view();
    if (!dragging || !seen.isUsable())
        return;
    EditorGizmo::Way way = gizmo.follow(seen, x, y);
    if (gizmo.getKind() == EditorGizmo::MOVE)
        snapMove(way, x, y);
    float degrees = RadToDeg(way.turned);
    if (snapsNow())
    {
        degrees = snap.snappedAngle(degrees);
        constexpr float scaleStep = 0.1f;
        for (int index = 0; index < 3; ++index)
            way.scaled[index] = std::max(std::round(way.scaled[index] / scaleStep) * scaleStep, scaleStep);
    }
    motion.by = Vec4(way.moved.x, way.moved.y, way.moved.z, 0.f);
    motion.turn = Quaternion::fromAxisAngle(dragAxis, DegToRad(degrees));
    motion.scale = Vec4(way.scaled.x, way.scaled.y, way.scaled.z, 0.f);
    dragMove.apply(motion);
    tellDragged(degrees);
}

void EditorComponent::endDrag(bool kept)
{
    if (!dragging)
        return;
    dragging = false;
    gizmo.end();
    if (!kept)
        dragMove.restore();
    dragMove.clear();
    if (gizmoPlaceGiven && kept)
        givenGizmoPlace += motion.by;
    tellDragEnded(kept);
}

// Shapes

void EditorComponent::addShapeLine(const String &layer, Vec4 from, Vec4 to, Vec4 color)
{
    prepareDrawing();
    shapes.line(layer, from, to, color);
}

void EditorComponent::addShapeText(const String &layer, Vec4 at, const String &text, Vec4 color)
{
    prepareDrawing();
    shapes.text(layer, at, text, color);
}

void EditorComponent::addShapeBox(const String &layer, Vec4 low, Vec4 high, Vec4 color)
{
    prepareDrawing();
    const Vec4 size = high - low, middle = (low + high) * 0.5f;
    shapes.box(layer,
               frameOf(Vec4(size.x, 0, 0, 0), Vec4(0, size.y, 0, 0), Vec4(0, 0, size.z, 0),
                       Vec4(middle.x, middle.y, middle.z, 1.f)),
               color);
}

void EditorComponent::addShapeArea(const String &layer, Vec4 corner, Vec4 otherCorner, Vec4 color)
{
    prepareDrawing();
    const Vec4 across = otherCorner - corner;
    corner.w = 1.f;
    shapes.area(layer, corner, Vec4(across.x, 0, 0, 0), Vec4(0, 0, across.z, 0), color);
}

void EditorComponent::addShapeCircle(const String &layer, Vec4 middle, float radius, Vec4 color)
{
    constexpr int parts = 48;
    const auto rim = [&](int part)
    {
        const float angle = 2.f * PI * static_cast<float>(part) / parts;
        return Vec4(middle.x + std::cos(angle) * radius, middle.y, middle.z + std::sin(angle) * radius, 1.f);
    };
    for (int part = 0; part < parts; ++part)
        addShapeLine(layer, rim(part), rim(part + 1), color);
}

// Camera

float EditorComponent::getCameraTurn() const
{
    return RadToDeg(camera.getTurn());
}

void EditorComponent::setCameraTurn(float val)
{
    camera.setAngles(DegToRad(val), camera.getPitch());
}

float EditorComponent::getCameraPitch() const
{
    return RadToDeg(camera.getPitch());
}

void EditorComponent::setCameraPitch(float val)
{
    camera.setAngles(camera.getTurn(), DegToRad(val));
}

String EditorComponent::getCameraMode() const
{
    return String::copyFrom(modeNames[cameraMode]);
}

void EditorComponent::setCameraMode(const String &val)
{
    cameraMode = static_cast<CameraMode>(stateOf("cameraMode", val, modeNames, cameraMode));
}

void EditorComponent::goTo(Vec4 place, float turn, float pitch)
{
    camera.setPlace(place);
    camera.setAngles(DegToRad(turn), DegToRad(pitch));
}

float EditorComponent::getCutHeight() const
{
    return camera.getCutHeight();
}

void EditorComponent::setCutHeight(float val)
{
    if (!std::isnan(val))
        camera.setCutHeight(val);
}

void EditorComponent::frameSelection()
{
    SpanBox box = selection.bounds();
    Coordinator *const found = box.isEmpty() ? findLevel() : nullptr;
    if (found)
        forEachDrawn(*found,
                     [&box](GraphicsComponent2 &component)
                     {
                         const SeenMesh thing(component);
                         if (thing.isSolid())
                             box.take(thing.placement(), thing.low(), thing.high());
                     });
    camera.frame(box);
}

// The picture

bool EditorComponent::drawFrame()
{
    overlay.clear();
    Coordinator *const found = findLevel();
    if (!found || (!active && shapes.isEmpty()))
        return false;
    const EditorView seen(*found);
    shapes.draw(overlay);
    if (active)
        drawEditing(seen);
    overlay.show(seen);
    return true;
}

void EditorComponent::drawEditing(const EditorView &seen)
{
    if (selection.dropDead())
        selectionChanged();
    if (marksShown)
        drawMarks(seen);
    selection.draw(overlay);
    // What is dragged by its handles takes them along.
    if (!dragging)
        placeGizmo();
    else if (gizmo.getKind() == EditorGizmo::MOVE)
        gizmo.put(gizmoKind, motion.pivot + motion.by, gizmo.getTurn());
    gizmo.draw(overlay, seen, hoveredGrip);
}

/// A cross for what has no mesh, a small lamp for a light in its colour; as large wherever it is, paler far away.
void EditorComponent::drawMarks(const EditorView &seen)
{
    constexpr float size = 6.f, farAway = 40.f;
    Coordinator *const found = findLevel();
    if (!found || !seen.isUsable())
        return;
    for (const PickMark &mark : picking.marksOf(*found))
    {
        const TransformComponent *const transform = transformOf(mark.entity);
        if (!transform || isHidden(mark.entity) || !seen.project(transform->getPosition()) ||
            !seen.shows(transform->getPosition()))
            continue;
        const Vec4 place = transform->getPosition();
        const float arm = seen.metresPerPixel(place) * size;
        const Vec4 right = seen.axis(0) * arm, up = seen.axis(1) * arm;
        Vec4 color(0.55f, 0.85f, 0.95f, 1.f);
        color.w = clamp(1.2f - (place - seen.eye()).magnitude() / farAway, 0.25f, 0.9f);
        if (!mark.isLight)
        {
            overlay.line(place - right, place + right, color, 1.5f);
            overlay.line(place - up, place + up, color, 1.5f);
            continue;
        }
        const auto *const light = componentOf<LightComponent>(mark.entity, ComponentKeys::graphics2);
        const Vec4 shine = light ? light->getDiffuseColor() : Vec4(1, 1, 1, 0);
        const float most = std::max({shine.x, shine.y, shine.z, 1e-3f});
        const Vec4 lamp(shine.x / most, shine.y / most, shine.z / most, color.w);
        const Vec4 points[] = {place - right, place + up, place + right, place - up};
        for (int side = 0; side < 4; ++side)
            overlay.line(points[side], points[(side + 1) % 4], lamp, 1.8f);
        overlay.line(place - up * 0.4f, place + up * 0.4f, lamp, 3.f);
    }
}
