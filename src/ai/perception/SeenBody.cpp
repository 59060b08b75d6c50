#include "ai/perception/SeenBody.h"

#include "ai/perception/LightAt.h"
#include "ai/perception/Sightline.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/WellKnownPaths.h"
#include "physics/volumes/BoundingVolume.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/frame/GraphicsManager2.h"

#include "foundation/Finite.h"

#include <algorithm>

namespace
{

constexpr Seconds LIGHT_INTERVAL = 0.1; ///< after which the light on a body is looked for anew
constexpr float LIGHT_STEP = 0.25f;     ///< metres after which it is, too
constexpr float LEAST_LAMP = 0.01f;     ///< luminance below which a lamp is off
constexpr float OF_A_POINT = 0.3f;      ///< metres: radius of what has no volume

bool hasMaps(const Coordinator &level)
{
    return std::any_of(level.children_begin(), level.children_end(),
                       [](const Handle<Object> &h) { return handle_cast<MapRootEntity>(h).isValid(); });
}

float luminanceOf(const LightComponent &light)
{
    const Vec4 color = light.getDiffuseColor();
    const float luminance = 0.2126f * color.r + 0.7152f * color.g + 0.0722f * color.b;
    return luminance > LEAST_LAMP && light.getVisible() ? std::min(luminance, 1.f) : 0.f;
}

} // namespace

Handle<MapRootEntity> mapAround(const Handle<Entity> &entity)
{
    const auto live = entity.lookup();
    if (!live)
        return Handle<MapRootEntity>();
    if (const Handle<MapRootEntity> above = live->getAncestorOfType<MapRootEntity>(); above.isValid())
        return above;
    const TransformComponent *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    const auto level = live->getAncestorOfType<Coordinator>().lookup();
    return transform && level && isFinite(transform->getPosition()) && hasMaps(*level)
               ? level->findMap(transform->getPosition())
               : Handle<MapRootEntity>();
}

Matrix4 poseInMap(TransformComponent &transform)
{
    return transform.getTransformationMatrix(TransformComponent::OMIT_SCALE);
}

bool SeenBody::find(int thisFrame, Seconds thisTime)
{
    if (frame == thisFrame)
        return isSomewhere;
    frame = thisFrame;
    now = thisTime;
    isSomewhere = takePlace();
    return isSomewhere;
}

bool SeenBody::takePlace()
{
    TransformComponent *const transform = componentOf<TransformComponent>(entity, ComponentKeys::transform);
    if (!transform || !isFinite(transform->getPosition()) || !isFinite(transform->getOrientation()))
        return false;
    map = mapAround(entity);
    if (!map.isValid())
        return false;
    const Matrix4 pose = poseInMap(*transform);
    place = pose.getColumn(3);
    spreadPoints(pose);
    return isFinite(place);
}

/// Lays the points over the body's box, a little inside of it.
void SeenBody::spreadPoints(const Matrix4 &pose)
{
    const BoundingVolume *const volume = componentOf<BoundingVolume>(entity, ComponentKeys::boundingVolume);
    if (!volume || !isFinite(volume->getHitBox()))
    {
        pointCount = 1;
        points[0] = place;
        radius = OF_A_POINT;
        return;
    }
    Vec4 half = volume->getHitBox() * 0.5f;
    half.w = 0.f;
    const Vec4 right = pose.getColumn(0) * half.x, up = pose.getColumn(1) * half.y;
    points = {place + up * 0.25f, place + up * 0.85f, place - up * 0.8f, place + right * 0.8f + up * 0.2f,
              place - right * 0.8f + up * 0.2f};
    pointCount = MOST_POINTS;
    radius = half.magnitude();
}

float SeenBody::lightOnPoint(int number)
{
    bringLightUpToDate();
    return light[static_cast<std::size_t>(number)];
}

int SeenBody::getLampCount()
{
    bringLightUpToDate();
    return lampCount;
}

void SeenBody::bringLightUpToDate()
{
    Vec4 moved = place - litPlace;
    moved.w = 0.f;
    if (lightIsKnown && now - litAt < LIGHT_INTERVAL && moved.magnitudeSquared() < LIGHT_STEP * LIGHT_STEP)
        return;
    lightIsKnown = true;
    litAt = now;
    litPlace = place;
    for (int i = 0; i < pointCount; ++i)
        light[static_cast<std::size_t>(i)] = lightAt(map, points[static_cast<std::size_t>(i)]);
    lightQuestions += pointCount;
    findLamps();
}

void SeenBody::findLamps()
{
    static const String graphicsName = SCS("graphics2Manager");
    lampCount = 0;
    const auto level = entity.lookup()->getAncestorOfType<Coordinator>().lookup();
    const auto graphics = level ? handle_cast<GraphicsManager2>(level->getChild(graphicsName)).lookup()
                                : Handle<GraphicsManager2>::Result{};
    const auto graph = graphics ? graphics->getSceneGraph().lookup() : Handle<SceneGraph>::Result{};
    if (!graph)
        return;
    const bool isPlayer = entity.lookup()->getName() == WellKnownPaths::player;
    const Handle<Object> hands = entity, eyes = isPlayer ? graphics->getCurrentCamera() : Handle<Entity>();
    PartitioningGrid *const grid = PartitioningGrid::ofMap(map).lookup().ptr;
    for (const Handle<GraphicsComponent2> &h : graph->getLayerComponents(SceneGraph::LIGHT))
    {
        const auto carried = handle_cast<LightComponent>(h).lookup();
        if (carried && lampCount < MOST_LAMPS && luminanceOf(*carried) > 0.f &&
            (isAtOrBelow(carried->getParent(), hands) || isAtOrBelow(carried->getParent(), eyes)))
            addLamp(*carried, grid);
    }
}

void SeenBody::addLamp(LightComponent &carried, PartitioningGrid *grid)
{
    TransformComponent *const transform =
        componentOf<TransformComponent>(carried.getParent(), ComponentKeys::transform);
    if (!transform || !isFinite(transform->getPosition()) || !isFinite(transform->getOrientation()))
        return;
    const Matrix4 pose = poseInMap(*transform);
    Lamp &lamp = lamps[static_cast<std::size_t>(lampCount++)];
    lamp = Lamp{pose.getColumn(3), pose.getColumn(3), luminanceOf(carried)};
    if (!grid || !carried.getIsSpot())
        return;
    const Vec4 beam = pose.getColumn(2) * carried.getLightFalloffEnd();
    const SegmentHit hit = grid->checkSegmentFor(SightFilter(entity, entity), lamp.place, beam);
    if (hit.collision.collided)
        lamp.lit = lamp.place + beam * (hit.collision.t * 0.98f); // before what is lit, where it can be seen
}
