// EditorComponent: what mouse and keys do.
#include "tools/editor/EditorComponent.h"

#include "tools/editor/EditorSystem.h"

#include "engine/levels/BranchPostOffice.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/GameLoop.h"
#include "engine/screen/ScreenMetrics.h"
#include "engine/time/TimeSystem.h"
#include "object/python/ScriptCall.h"
#include "object/reflection/SavedArguments.h"
#include "object/tree/WellKnownPaths.h"
#include "platform/input/InputMessages.h"
#include "platform/input/InputSystem.h"
#include "platform/input/TextCapture.h"
#include "platform/window/WindowSystem2.h"

#include "foundation/Finite.h"
#include "port/win32/VirtualKeys.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr std::size_t MOST_EVENTS = 512; ///< of one frame; what comes beyond is lost
constexpr int LEFT = 0, RIGHT = 1, MIDDLE = 2;
constexpr float CLICK_WAY = 4.f;      ///< pixels that a click may go astray
constexpr double DOUBLE_CLICK = 0.35; ///< seconds
constexpr float NOTCH = 120.f;
constexpr float FASTER = 4.f, SLOWER = 0.25f;
constexpr float EYE_HEIGHT = 1.7f;   ///< metres above the ground of who walks
constexpr float HIGHEST_STEP = 0.6f; ///< metres that he takes at once

InputSystem &input()
{
    return getSystemDeref<InputSystem>();
}

bool textIsTyped()
{
    const TextCapture *const capture = TextCapture::current();
    return capture && capture->wantsText();
}

float direction(int more, int less)
{
    return static_cast<float>(input().isKeyDown(static_cast<unsigned>(more))) -
           static_cast<float>(input().isKeyDown(static_cast<unsigned>(less)));
}

/// Calls a callback, if there is one, and lets go of it if it fails, so that one mistake is reported once.
template <class... Arguments>
void callOrDrop(ReflectorPtr &callback, const char *role, const Object &owner, const Arguments &...arguments)
{
    if (!callback)
        return;
    // A copy: the callback may set another one in its own place.
    const ReflectorPtr called = callback;
    SavedArguments packed = SavedArguments::of(arguments...);
    if (!callOrReport(called, packed, owner, role) && callback == called)
        callback = nullptr;
}
} // namespace

int EditorComponent::getModifiers() const
{
    const InputSystem &keys = input();
    return (keys.isKeyDown(VK_SHIFT) ? EM_SHIFT : 0) | (keys.isKeyDown(VK_CONTROL) ? EM_CONTROL : 0) |
           (keys.isKeyDown(VK_MENU) ? EM_ALT : 0);
}

void EditorComponent::onLoadComplete()
{
    Coordinator *const found = findLevel();
    const auto office =
        found ? handle_cast<BranchPostOffice>(found->getDescendantByPath(WellKnownPaths::branchPostOffice)).lookup()
              : Handle<BranchPostOffice>::Result{};
    if (!office || hears)
        return;
    hears = true;
    const std::pair<ReflectorPtr, String> heard[] = {
        {KeyDownMessage, SCS("handleKeyDown")},     {KeyUpMessage, SCS("handleKeyUp")},
        {MouseDownMessage, SCS("handleMouseDown")}, {MouseUpMessage, SCS("handleMouseUp")},
        {MousePos, SCS("handlePointer")},           {MouseMove, SCS("handleMotion")},
        {MouseWheelMessage, SCS("handleWheel")}};
    for (const auto &[message, method] : heard)
        office->registerMessageHandler(message, bind(method));
    events.reserve(MOST_EVENTS);
}

void EditorComponent::note(EventKind kind, int code, float x, float y)
{
    if (active && events.size() < MOST_EVENTS && std::isfinite(x) && std::isfinite(y))
        events.push_back({kind, code, x, y});
}

void EditorComponent::handleKeyDown(const ReflectorPtr &, int key)
{
    note(KEY_DOWN, key, 0.f, 0.f);
}

void EditorComponent::handleKeyUp(const ReflectorPtr &, int key)
{
    note(KEY_UP, key, 0.f, 0.f);
}

/// Pixels from the upper left, of a place as the mouse tells it: from below.
static Vec4 toPixels(float x, float y)
{
    const ScreenMetrics &window = getScreenMetrics();
    return Vec4(x * window.normalizationFactor, static_cast<float>(window.height) - y * window.normalizationFactor, 0,
                1);
}

void EditorComponent::handleMouseDown(const ReflectorPtr &, unsigned click, float x, float y)
{
    const Vec4 pixel = toPixels(x, y);
    note(BUTTON_DOWN, static_cast<int>(click), pixel.x, pixel.y);
}

void EditorComponent::handleMouseUp(const ReflectorPtr &, unsigned click, float x, float y)
{
    const Vec4 pixel = toPixels(x, y);
    note(BUTTON_UP, static_cast<int>(click), pixel.x, pixel.y);
}

void EditorComponent::handlePointer(const ReflectorPtr &, unsigned, float x, float y)
{
    const Vec4 pixel = toPixels(x, y);
    note(POINT, 0, pixel.x, pixel.y);
}

void EditorComponent::handleMotion(const ReflectorPtr &, float x, float y)
{
    const float pixels = getScreenMetrics().normalizationFactor;
    note(MOTION, 0, x * pixels, y * pixels);
}

void EditorComponent::handleWheel(const ReflectorPtr &, int direction, float x, float y)
{
    const Vec4 pixel = toPixels(x, y);
    note(WHEEL, direction, pixel.x, pixel.y);
}

/// Screens that come and go take the pointer and the input with them; an open editor takes them back.
void EditorComponent::holdInput()
{
    input().setScreenTakesInput(true);
    WindowSystem2 &window = getSystemDeref<WindowSystem2>();
    const bool looks = gesture == LOOK;
    window.setCursorMode(looks ? WindowSystem2::CURSOR_RELATIVE : WindowSystem2::CURSOR_ABSOLUTE);
}

void EditorComponent::runFrame()
{
    if (!active)
        return;
    holdInput();
    const auto shown = level.lookup();
    if (!shown)
        return;
    camera.stayOn(*shown);
    if (selection.dropDead())
        selectionChanged();
    if (!dragging)
        placeGizmo();
    // What is called may close the editor, or bring further events.
    for (std::size_t i = 0; i < events.size() && active; ++i)
        take(Event(events[i]));
    events.clear();
    if (active)
        flyOn();
}

void EditorComponent::take(const Event &event)
{
    switch (event.kind)
    {
    case KEY_DOWN:
    case KEY_UP:
        return takeKey(event.code, event.kind == KEY_DOWN);
    case BUTTON_DOWN:
        return takeButtonDown(event.code, event.x, event.y);
    case BUTTON_UP:
        return takeButtonUp(event.code, event.x, event.y);
    case POINT:
        return takePoint(event.x, event.y);
    case MOTION:
        return takeMotion(event.x, event.y);
    case WHEEL:
        return takeWheel(event.code, event.x, event.y);
    }
}

void EditorComponent::takeKey(int key, bool down)
{
    if (textIsTyped() || gesture == LOOK)
        return;
    if (down && dragging && key == VK_ESCAPE)
    {
        endDrag(false);
        gesture = FREE;
        return;
    }
    if (down && key == 'F' && getModifiers() == 0)
        frameSelection();
    callOrDrop(keyCalled, "key callback", *this, key, down);
}

void EditorComponent::takeButtonDown(int button, float x, float y)
{
    // A second button while one is held ends a drag without keeping it, and is else left out.
    if (gesture != FREE)
    {
        if (gesture == HANDLE && button != gestureButton)
            endDrag(false);
        return;
    }
    pointer = Vec4(x, y, 0, 1);
    gestureButton = button;
    gesturePlace = pointer;
    gestureWay = 0.f;
    if (button == RIGHT)
        return beginLook();
    if (button == MIDDLE || (button == LEFT && (getModifiers() & EM_ALT)))
    {
        gesture = button == MIDDLE ? PAN : ORBIT;
        orbitPlace = orbitCentre();
        return;
    }
    if (button == LEFT && gizmo.begin(view(), x, y))
    {
        gesture = HANDLE;
        return beginDrag();
    }
    gesture = TOOL;
    tellPointer("down", x, y, button);
}

void EditorComponent::takeButtonUp(int button, float x, float y)
{
    if (gesture == FREE || button != gestureButton)
        return;
    const Gesture ended = gesture;
    gesture = FREE;
    if (ended == HANDLE)
        return endDrag(true);
    if (ended == LOOK)
        return endLook();
    if (ended != TOOL)
        return;
    tellPointer("up", x, y, button);
    if (gestureWay > CLICK_WAY || button != LEFT)
        return;
    TimeSystem &time = getSystemDeref<TimeSystem>();
    const auto clock = getSystemDeref<GameLoopSystem>().getTime().lookup();
    const TimerTicks now = clock ? clock->getValue() : 0;
    const auto since = static_cast<double>(now - lastClick) / static_cast<double>(time.getTicksPerSecond());
    const bool isSecond = lastClickPlace.w == 1.f && since < DOUBLE_CLICK &&
                          std::hypot(lastClickPlace.x - x, lastClickPlace.y - y) <= CLICK_WAY;
    lastClick = now;
    lastClickPlace = Vec4(x, y, 0, isSecond ? 0.f : 1.f);
    if (isSecond)
        tellPointer("double", x, y, button);
}

void EditorComponent::takePoint(float x, float y)
{
    if (pointer.w == 1.f && pointer.x == x && pointer.y == y)
        return;
    const float right = pointer.w == 1.f ? x - pointer.x : 0.f, down = pointer.w == 1.f ? y - pointer.y : 0.f;
    pointer = Vec4(x, y, 0, 1);
    gestureWay = std::max(gestureWay, std::hypot(x - gesturePlace.x, y - gesturePlace.y));
    hoveredGrip = gesture == FREE ? gizmo.gripAt(view(), x, y) : 0;
    if (gesture == HANDLE)
        return follow(x, y);
    if (gesture == PAN || gesture == ORBIT || gesture == LOOK)
        return moveCamera(right, down);
    tellPointer("move", x, y, gesture == TOOL ? gestureButton : -1);
}

void EditorComponent::takeMotion(float x, float y)
{
    if (gesture != LOOK)
        return;
    gestureWay += std::hypot(x, y);
    moveCamera(x, y);
}

void EditorComponent::takeWheel(int wheel, float x, float y)
{
    const float notches = static_cast<float>(wheel) / NOTCH;
    if (gesture == LOOK)
        return camera.changeSpeed(notches);
    if (getModifiers() != 0)
    {
        tellPointer("wheel", x, y, static_cast<int>(std::lround(notches)));
        return;
    }
    const EditorView seen = view();
    const PickHit hit = castPast(x, y, false);
    constexpr float empty = 10.f, farthest = 60.f; // metres to go by, where nothing is near
    const float distance = hit.place.w == 1.f ? std::min(hit.distance, farthest) : empty;
    if (seen.isUsable())
        camera.approach(seen.rayAt(x, y).at(distance), notches);
}

void EditorComponent::beginLook()
{
    gesture = LOOK;
    orbitPlace = orbitCentre();
    holdInput();
}

/// A right button that was not dragged is a click.
void EditorComponent::endLook()
{
    holdInput();
    if (gestureWay > CLICK_WAY)
        return;
    const Vec4 place = gesturePlace;
    if (tellPointer("down", place.x, place.y, RIGHT))
        tellPointer("up", place.x, place.y, RIGHT);
}

/// What the camera turns about: what is selected, or what lies in the middle of the picture.
Vec4 EditorComponent::orbitCentre()
{
    const SpanBox box = selection.bounds();
    if (!box.isEmpty())
        return box.middle();
    const EditorView seen = view();
    const PickHit ahead = castPast(seen.width() * 0.5f, seen.height() * 0.5f, false);
    constexpr float usual = 4.f, farthest = 40.f; // metres
    if (ahead.place.w == 1.f && ahead.distance < farthest)
        return ahead.place;
    return seen.eye() + seen.axis(2) * usual;
}

void EditorComponent::moveCamera(float right, float down)
{
    const EditorView seen = view();
    const float longer = std::max({seen.width(), seen.height(), 1.f});
    const bool circles = gesture == ORBIT || (gesture == LOOK && cameraMode == CIRCLE);
    if (circles)
        camera.orbit(orbitPlace, right / longer, down / longer);
    else if (gesture == LOOK)
        camera.look(right / longer, down / longer);
    else
        camera.pan(seen, (orbitPlace - seen.eye()).dot(seen.axis(2)), right, down);
}

void EditorComponent::flyOn()
{
    const auto time = getSystemDeref<GameLoopSystem>().getTime().lookup();
    EditorCamera::Push push;
    if (gesture == LOOK && !textIsTyped())
        push = {direction('D', 'A'), direction('E', 'Q'), direction('W', 'S'),
                input().isKeyDown(VK_SHIFT)     ? FASTER
                : input().isKeyDown(VK_CONTROL) ? SLOWER
                                                : 1.f};
    if (time)
        camera.fly(push, time->getFrameTimeSeconds());
    if (cameraMode == WALK)
        walkOn();
}

/// Keeps the eye above what lies below it: down at once, up as far as a step.
void EditorComponent::walkOn()
{
    const auto shown = level.lookup();
    Vec4 eye = camera.getPlace();
    const float feet = eye.y - EYE_HEIGHT;
    if (!shown || (walkedPlace.w == 1.f && walkedPlace == eye))
        return;
    const Vec4 from(eye.x, feet + HIGHEST_STEP, eye.z, 1.f);
    const PickHit ground = picking.cast(*shown, {from, Vec4(0, -1, 0, 0)});
    eye.y = (ground.entity.isValid() ? ground.place.y : groundHeight) + EYE_HEIGHT;
    camera.setPlace(eye);
    walkedPlace = camera.getPlace();
}

bool EditorComponent::tellPointer(const char *kind, float x, float y, int button)
{
    callOrDrop(pointerCalled, "pointer callback", *this, String::copyFrom(kind), x, y, button);
    return active && !isDying();
}

void EditorComponent::tellDragBegan()
{
    callOrDrop(dragBegan, "drag's begin", *this);
}

void EditorComponent::tellDragged(float degrees)
{
    callOrDrop(dragged, "drag callback", *this, motion.by, degrees, motion.scale);
}

void EditorComponent::tellDragEnded(bool kept)
{
    callOrDrop(dragEnded, "drag's end", *this, kept);
}
