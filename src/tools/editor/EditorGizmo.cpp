#include "tools/editor/EditorGizmo.h"

#include "tools/editor/EditorOverlay.h"

#include "foundation/Finite.h"
#include "foundation/precompile.h"

#include <algorithm>
#include <cmath>

namespace
{
// Pixels.
constexpr float ARM = 86.f, GRAB = 9.f, MIDDLE = 9.f, TIP = 20.f, TIP_RADIUS = 5.5f, KNOB = 11.f;
constexpr float PLANE_FROM = 0.26f, PLANE_TO = 0.50f; ///< of an arm
constexpr float LINE_WIDTH = 2.5f, HELD_WIDTH = 4.f;
constexpr int RING_PARTS = 64;
constexpr float END_ON = 0.985f; ///< cosine from which an arm cannot be told from a point
constexpr float EDGE_ON = 0.12f; ///< of a ring, or a plane, seen from its side
constexpr float MOST_SCALE = 100.f;
constexpr float FAR_AWAY = 2000.f; ///< metres that a drag may go

const Vec4 colors[] = {Vec4(0.93f, 0.27f, 0.30f, 1), Vec4(0.48f, 0.80f, 0.22f, 1), Vec4(0.25f, 0.55f, 0.96f, 1)};
const Vec4 bright(1.f, 0.86f, 0.25f, 1.f);
const Vec4 white(0.95f, 0.95f, 0.95f, 1.f);

int bitOf(int index)
{
    return 1 << index;
}

/// The axis whose bits these are, or the one that is missing of a plane.
int indexOf(int grip)
{
    for (int index = 0; index < 3; ++index)
        if (grip == bitOf(index) || grip == EditorGizmo::ALL - bitOf(index))
            return index;
    return 0;
}

bool isOneAxis(int grip)
{
    return grip == 1 || grip == 2 || grip == 4;
}

/// How far a pixel lies from a line on the screen.
float awayFrom(const Vec4 &pixel, const Vec4 &from, const Vec4 &to)
{
    const float x = to.x - from.x, y = to.y - from.y, length = x * x + y * y;
    const float part = length > 0.f ? ((pixel.x - from.x) * x + (pixel.y - from.y) * y) / length : 0.f;
    const float along = clamp(part, 0.f, 1.f);
    return std::hypot(pixel.x - from.x - x * along, pixel.y - from.y - y * along);
}

/// Where along a line a way comes nearest to it, metres.
float nearestAlong(const ViewRay &ray, const Vec4 &point, const Vec4 &axis)
{
    const Vec4 from = point - ray.origin;
    const float across = axis.dot(ray.direction), rest = 1.f - across * across;
    if (rest < 1e-5f)
        return 0.f;
    return (across * ray.direction.dot(from) - axis.dot(from)) / rest;
}
} // namespace

void EditorGizmo::put(Kind newKind, const Vec4 &newPlace, const Quaternion &axes)
{
    kind = newKind;
    if (isFinite(newPlace))
        place = Vec4(newPlace.x, newPlace.y, newPlace.z, 1.f);
    if (isFinite(axes))
        turn = axes;
    turn.normalize();
}

float EditorGizmo::reach(const EditorView &view) const
{
    return view.metresPerPixel(place) * ARM;
}

bool EditorGizmo::isEndOn(const EditorView &view, int index) const
{
    Vec4 towards = place - view.eye();
    towards.normalize();
    return std::fabs(axis(index).dot(towards)) > END_ON;
}

float EditorGizmo::armAway(const EditorView &view, int index, const Vec4 &pixel) const
{
    const float length = reach(view);
    const auto from = view.project(place + axis(index) * (length * 0.15f));
    const auto to = view.project(place + axis(index) * (length * 1.15f));
    return from && to && !isEndOn(view, index) ? awayFrom(pixel, *from, *to) : GRAB + 1.f;
}

Vec4 EditorGizmo::ringPoint(const EditorView &view, int index, float angle) const
{
    const Vec4 one = axis((index + 1) % 3), other = axis((index + 2) % 3);
    return place + (one * std::cos(angle) + other * std::sin(angle)) * reach(view);
}

float EditorGizmo::ringAway(const EditorView &view, int index, const Vec4 &pixel) const
{
    float nearest = GRAB + 1.f;
    const Vec4 towardsEye = view.eye() - place;
    for (int part = 0; part < RING_PARTS; ++part)
    {
        const float step = 2.f * PI / RING_PARTS, angle = step * static_cast<float>(part);
        const Vec4 here = ringPoint(view, index, angle);
        // The far half is behind what one looks at.
        if ((here - place).dot(towardsEye) < -0.05f * reach(view) * towardsEye.magnitude())
            continue;
        const auto from = view.project(here), to = view.project(ringPoint(view, index, angle + step));
        if (from && to)
            nearest = std::min(nearest, awayFrom(pixel, *from, *to));
    }
    return nearest;
}

bool EditorGizmo::planeHolds(const EditorView &view, int index, const Vec4 &pixel) const
{
    Vec4 towards = place - view.eye();
    towards.normalize();
    if (std::fabs(axis(index).dot(towards)) < EDGE_ON)
        return false;
    const ViewRay ray = view.rayAt(pixel.x, pixel.y);
    const auto distance = ray.meets(place, axis(index));
    if (!distance)
        return false;
    const Vec4 from = (ray.at(*distance) - place) * (1.f / reach(view));
    const float one = from.dot(axis((index + 1) % 3)), other = from.dot(axis((index + 2) % 3));
    return one > PLANE_FROM && one < PLANE_TO && other > PLANE_FROM && other < PLANE_TO;
}

int EditorGizmo::gripAt(const EditorView &view, float x, float y) const
{
    const Vec4 pixel(x, y, 0, 1);
    const auto middle = view.isUsable() ? view.project(place) : std::nullopt;
    if (kind == NONE || !middle || !isFinite(pixel))
        return NOTHING;
    if (kind != TURN && std::hypot(middle->x - x, middle->y - y) <= MIDDLE)
        return ALL;
    float nearest = GRAB;
    int found = NOTHING;
    for (int index = 0; index < 3; ++index)
    {
        const float away = kind == TURN ? ringAway(view, index, pixel) : armAway(view, index, pixel);
        if (away > nearest)
            continue;
        nearest = away;
        found = bitOf(index);
    }
    for (int index = 0; index < 3 && found == NOTHING && kind == MOVE; ++index)
        if (planeHolds(view, index, pixel))
            found = ALL - bitOf(index);
    return found;
}

Vec4 EditorGizmo::heldAxis() const
{
    return isOneAxis(held) ? axis(indexOf(held)) : Vec4(0, 1, 0, 0);
}

/// The plane that a drag of more than one axis goes in.
Vec4 EditorGizmo::planeNormal(const EditorView &view) const
{
    return held == ALL ? view.axis(2) : axis(indexOf(held));
}

Vec4 EditorGizmo::placeHeld(const EditorView &view, float x, float y) const
{
    const ViewRay ray = view.rayAt(x, y);
    if (isOneAxis(held))
        return origin + heldAxis() * nearestAlong(ray, origin, heldAxis());
    const auto distance = ray.meets(origin, planeNormal(view));
    return distance && *distance < FAR_AWAY ? ray.at(*distance) : last;
}

/// Of the mouse about the held ring; from the side, along it, where its plane cannot be met.
float EditorGizmo::angleHeld(const EditorView &view, float x, float y) const
{
    const int index = indexOf(held);
    Vec4 towards = origin - view.eye();
    towards.normalize();
    if (std::fabs(axis(index).dot(towards)) < EDGE_ON)
    {
        const Vec4 along = axis(index).cross(towards);
        const float right = along.dot(view.axis(0)), up = along.dot(view.axis(1));
        return ((x - startPixel.x) * right - (y - startPixel.y) * up) / ARM;
    }
    const ViewRay ray = view.rayAt(x, y);
    const auto distance = ray.meets(origin, axis(index));
    if (!distance)
        return lastAngle;
    const Vec4 from = ray.at(*distance) - origin;
    return std::atan2(from.dot(axis((index + 2) % 3)), from.dot(axis((index + 1) % 3)));
}

bool EditorGizmo::begin(const EditorView &view, float x, float y)
{
    held = gripAt(view, x, y);
    if (held == NOTHING)
        return false;
    origin = place;
    startPixel = Vec4(x, y, 0, 1);
    last = place;
    start = last = placeHeld(view, x, y);
    turned = 0.f;
    lastAngle = kind == TURN ? angleHeld(view, x, y) : 0.f;
    return true;
}

EditorGizmo::Way EditorGizmo::follow(const EditorView &view, float x, float y)
{
    Way way;
    if (held == NOTHING || !view.isUsable() || !std::isfinite(x) || !std::isfinite(y))
        return way;
    if (kind == TURN)
    {
        const float angle = angleHeld(view, x, y);
        turned += std::remainder(angle - lastAngle, 2.f * PI);
        lastAngle = angle;
        way.turned = turned;
        return way;
    }
    last = placeHeld(view, x, y);
    const Vec4 moved = last - start;
    if (kind == MOVE)
    {
        way.moved = isFinite(moved) && moved.magnitude() < FAR_AWAY ? Vec4(moved.x, moved.y, moved.z, 0.f) : Vec4();
        return way;
    }
    const float length = std::max(reach(view), 1e-4f);
    const float sideways = (x - startPixel.x - y + startPixel.y) / ARM;
    const float along = held == ALL ? sideways : moved.dot(heldAxis()) / length;
    const float factor = clamp(along >= 0.f ? 1.f + along : 1.f / (1.f - along), 1.f / MOST_SCALE, MOST_SCALE);
    for (int index = 0; index < 3; ++index)
        if (held & bitOf(index))
            way.scaled[index] = factor;
    return way;
}

void EditorGizmo::draw(EditorOverlay &overlay, const EditorView &view, int hovered) const
{
    if (kind == NONE || !view.project(place))
        return;
    const int lit = held != NOTHING ? held : hovered;
    for (int index = 0; index < 3; ++index)
    {
        // While something is held, the rest would only be in the way.
        if (held != NOTHING && !(held & bitOf(index)))
            continue;
        if (kind == TURN)
            drawRing(overlay, view, index, lit == bitOf(index));
        else
            drawArm(overlay, view, index, lit == bitOf(index) || lit == ALL);
    }
    for (int index = 0; index < 3 && kind == MOVE; ++index)
        if (held == NOTHING || held == ALL - bitOf(index))
            drawPlane(overlay, view, index, lit == ALL - bitOf(index));
    if (kind != TURN && (held == NOTHING || held == ALL))
        drawMiddle(overlay, view, lit == ALL);
}

void EditorGizmo::drawArm(EditorOverlay &overlay, const EditorView &view, int index, bool isBright) const
{
    if (isEndOn(view, index))
        return;
    const float pixel = view.metresPerPixel(place);
    const Vec4 along = axis(index), tip = place + along * (ARM * pixel);
    const Vec4 color = isBright ? bright : colors[index];
    overlay.line(place + along * (MIDDLE * pixel), tip, color, isBright ? HELD_WIDTH : LINE_WIDTH);
    if (kind == MOVE)
        overlay.cone(tip, along * (TIP * pixel), TIP_RADIUS * pixel, color);
    else
        overlay.cube(frameOf(axis(0) * (KNOB * pixel), axis(1) * (KNOB * pixel), axis(2) * (KNOB * pixel), tip), color);
}

void EditorGizmo::drawPlane(EditorOverlay &overlay, const EditorView &view, int index, bool isBright) const
{
    const float length = reach(view);
    const Vec4 one = axis((index + 1) % 3) * length, other = axis((index + 2) % 3) * length;
    Vec4 color = isBright ? bright : colors[index];
    color.w = isBright ? 0.6f : 0.32f;
    const Vec4 corner = place + (one + other) * PLANE_FROM;
    const float side = PLANE_TO - PLANE_FROM;
    overlay.area(corner, one * side, other * side, color);
    color.w = 0.9f;
    overlay.line(corner + one * side, corner + (one + other) * side, color, 1.2f);
    overlay.line(corner + other * side, corner + (one + other) * side, color, 1.2f);
}

void EditorGizmo::drawRing(EditorOverlay &overlay, const EditorView &view, int index, bool isBright) const
{
    const Vec4 towardsEye = view.eye() - place;
    for (int part = 0; part < RING_PARTS; ++part)
    {
        const float step = 2.f * PI / RING_PARTS, angle = step * static_cast<float>(part);
        const Vec4 from = ringPoint(view, index, angle);
        const bool isFar = (from - place).dot(towardsEye) < -0.05f * reach(view) * towardsEye.magnitude();
        Vec4 color = isBright ? bright : colors[index];
        if (isFar && held == NOTHING)
            color.w = 0.15f;
        overlay.line(from, ringPoint(view, index, angle + step), color, isBright ? HELD_WIDTH : LINE_WIDTH);
    }
}

void EditorGizmo::drawMiddle(EditorOverlay &overlay, const EditorView &view, bool isBright) const
{
    const float pixel = view.metresPerPixel(place) * (MIDDLE - 2.f);
    const Vec4 right = view.axis(0) * pixel, up = view.axis(1) * pixel;
    Vec4 color = isBright ? bright : white;
    const Vec4 corners[] = {place - right - up, place - right + up, place + right + up, place + right - up};
    for (int side = 0; side < 4; ++side)
        overlay.line(corners[side], corners[(side + 1) % 4], color, isBright ? 2.5f : 1.5f);
    color.w = 0.25f;
    overlay.area(place - right - up, right * 2.f, up * 2.f, color);
}
