#include "tools/editor/EditorCamera.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/ViewCut.h"
#include "rendering/frame/ViewerComponent.h"

#include "foundation/Finite.h"
#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float RESPONSE = 12.f;                        ///< how fast the flight follows the keys, 1/s
constexpr float LOOK_TURN = 2.4f;                       ///< radians for a way as long as the window's longer side
constexpr float STEEPEST = 1.5533f;                     ///< 89 degrees
constexpr float SLOWEST = 0.1f, FASTEST = 200.f;        ///< metres a second
constexpr float NOTCH_SPEED = 1.25f, NOTCH_WAY = 0.15f; ///< of the speed, and of the way to what lies ahead
constexpr float NEAR_CLIP = 0.05f, FAR_CLIP = 200.f;    ///< metres
constexpr float FARTHEST_OUT = 100000.f;                ///< metres from the origin

GraphicsManager2 *graphicsOf(Coordinator &level)
{
    return handle_cast<GraphicsManager2>(level.getManager(ComponentKeys::graphics2)).lookup().ptr;
}

Handle<Entity> makeCamera(Coordinator &level, float fieldOfView)
{
    const Handle<Entity> entity = construct<Entity>(defaultAllocationCategory);
    const auto made = entity.lookup();
    made->setName(SCS(".EditorCamera"));
    made->setParent(level.getHandle());
    made->addComponent(ComponentKeys::transform, TransformComponent::staticType);
    const auto viewer =
        handle_cast<ViewerComponent>(made->addComponent(ComponentKeys::viewer, ViewerComponent::staticType)).lookup();
    if (!viewer)
        return Handle<Entity>();
    viewer->setVerticalFieldOfViewAngle(fieldOfView);
    viewer->setNearClipDistance(NEAR_CLIP);
    viewer->setFarClipDistance(FAR_CLIP);
    return entity;
}
} // namespace

void EditorCamera::begin(Coordinator &level)
{
    GraphicsManager2 *const graphics = graphicsOf(level);
    if (!graphics)
        return;
    const Handle<Entity> own = graphics->getCurrentCamera();
    if (!entity.isValid())
    {
        constexpr float usual = 0.95f; // radians, 54 degrees
        entity = makeCamera(level, usual);
        if (const auto *const eye = componentOf<TransformComponent>(own, ComponentKeys::transform))
        {
            const Matrix4 axes = eye->getOrientation().generateRotation();
            const Vec4 ahead = axes.getColumn(2);
            setPlace(eye->getPosition());
            if (isFinite(ahead))
                setAngles(std::atan2(ahead.x, ahead.z), -std::asin(clamp(ahead.y, -1.f, 1.f)));
        }
    }
    velocity = Vec4();
    show();
    stayOn(level);
}

void EditorCamera::end(Coordinator &level)
{
    if (GraphicsManager2 *const graphics = graphicsOf(level))
        graphics->dropCamera(entity);
}

void EditorCamera::stayOn(Coordinator &level)
{
    GraphicsManager2 *const graphics = graphicsOf(level);
    if (!graphics || !entity.isValid() || graphics->getCurrentCamera() == entity)
        return;
    graphics->dropCamera(entity);
    graphics->pushCamera(entity);
}

Quaternion EditorCamera::orientation() const
{
    return Quaternion::fromAxisAngle(Vec4(0, 1, 0, 0), turn) * Quaternion::fromAxisAngle(Vec4(1, 0, 0, 0), pitch);
}

void EditorCamera::show()
{
    auto *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    if (!transform)
        return;
    transform->setPosition(place);
    transform->setOrientation(orientation());
}

void EditorCamera::fly(const Push &push, Seconds time)
{
    const auto seconds = static_cast<float>(time);
    const Matrix4 axes = orientation().generateRotation();
    Vec4 wanted = axes.getColumn(0) * push.right + Vec4(0, 1, 0, 0) * push.up + axes.getColumn(2) * push.ahead;
    wanted.w = 0.f;
    wanted.normalize();
    wanted *= speed * push.factor;
    if (wanted == Vec4() && velocity.magnitudeSquared() < 1e-4f)
    {
        velocity = Vec4();
        return;
    }
    // Speed closes in on the wanted one exponentially; this is the exact way of one step, whatever its length.
    const float left = std::exp(-RESPONSE * seconds);
    setPlace(place + wanted * seconds + (velocity - wanted) * ((1.f - left) / RESPONSE));
    velocity = wanted + (velocity - wanted) * left;
}

void EditorCamera::look(float right, float down)
{
    setAngles(turn + right * LOOK_TURN, pitch + down * LOOK_TURN);
}

void EditorCamera::orbit(const Vec4 &about, float right, float down)
{
    const Matrix4 before = orientation().generateRotation();
    const Vec4 seen = before.transpose() * Vec4(about.x - place.x, about.y - place.y, about.z - place.z, 0.f);
    look(right * 2.f, down * 2.f);
    const Vec4 away = orientation().generateRotation() * seen;
    setPlace(Vec4(about.x - away.x, about.y - away.y, about.z - away.z, 1.f));
}

void EditorCamera::pan(const EditorView &view, float distance, float right, float down)
{
    const float metres = view.metresPerPixel(view.eye() + view.axis(2) * std::max(distance, 0.5f));
    setPlace(place - view.axis(0) * (right * metres) + view.axis(1) * (down * metres));
}

void EditorCamera::approach(const Vec4 &target, float notches)
{
    if (!isFinite(target) || !std::isfinite(notches))
        return;
    const float left = std::pow(1.f - NOTCH_WAY, clamp(notches, -20.f, 20.f));
    const Vec4 away = place - target;
    const float distance = away.magnitude();
    // Close up, a part of the way is next to nothing: at least a hand's breadth, and so through what lies there.
    constexpr float least = 0.1f;
    const float step = distance * (1.f - left);
    const float gone = std::fabs(step) < least ? std::copysign(least, notches) : step;
    if (distance > 1e-3f)
        setPlace(place - away * (gone / distance));
}

void EditorCamera::frame(const SpanBox &box)
{
    if (box.isEmpty() || !isFinite(box.low) || !isFinite(box.high))
        return;
    const auto *const viewer = componentOf<ViewerComponent>(entity, ComponentKeys::viewer);
    const float half = viewer ? viewer->getVerticalFieldOfViewAngle() * 0.5f : 0.4f;
    constexpr float margin = 1.15f, least = 0.4f;
    const Vec4 extents = box.extents();
    const float radius = std::max(Vec4(extents.x, extents.y, extents.z, 0.f).magnitude() * 0.5f, least);
    const Vec4 ahead = orientation().generateRotation().getColumn(2);
    setPlace(box.middle() - ahead * (radius * margin / std::sin(half)));
}

void EditorCamera::changeSpeed(float notches)
{
    if (std::isfinite(notches))
        setSpeed(speed * std::pow(NOTCH_SPEED, clamp(notches, -50.f, 50.f)));
}

void EditorCamera::setPlace(const Vec4 &val)
{
    const Vec4 next(val.x, val.y, val.z, 1.f);
    if (!isFinite(next) || next.magnitude() > FARTHEST_OUT)
        return;
    place = next;
    show();
}

void EditorCamera::setAngles(float newTurn, float newPitch)
{
    if (!std::isfinite(newTurn) || !std::isfinite(newPitch))
        return;
    turn = std::remainder(newTurn, 2.f * PI);
    pitch = clamp(newPitch, -STEEPEST, STEEPEST);
    show();
}

void EditorCamera::setSpeed(float val)
{
    if (std::isfinite(val))
        speed = clamp(val, SLOWEST, FASTEST);
}

void EditorCamera::setCutHeight(float val)
{
    cutHeight = val;
    const bool cuts = std::isfinite(val);
    if (cuts || ViewCut::present().camera == entity)
        ViewCut::present() = {cuts ? entity : Handle<Entity>(), cuts ? val : 0.f};
}
