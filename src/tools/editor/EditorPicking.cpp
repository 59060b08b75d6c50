#include "tools/editor/EditorPicking.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/levels/Coordinator.h"
#include "engine/levels/MapRootEntity.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/ObjectMap.h"
#include "object/tree/TreeWalk.h"
#include "rendering/drawn/DecalComponent.h"
#include "rendering/drawn/LightComponent.h"
#include "rendering/frame/GraphicsManager2.h"

#include "foundation/Finite.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr float FARTHEST = 10000.f;      ///< metres; nothing is picked beyond
constexpr float MARK_REACH = 10.f;       ///< pixels around a mark that count as it
constexpr float HIDDEN_MARK_REACH = 5.f; ///< where something stands before it

SceneGraph *sceneOf(Coordinator &level)
{
    const auto graphics = handle_cast<GraphicsManager2>(level.getManager(ComponentKeys::graphics2)).lookup();
    return graphics ? graphics->getSceneGraph().lookup().ptr : nullptr;
}

bool isOwn(const Object &object)
{
    const String name = object.getName();
    return !name.empty() && name.toCString()[0] == '.';
}

/// Whether a way comes near enough to a drawn thing to look at it closely.
bool comesNear(const ViewRay &ray, const Vec4 &sphere, float nearest)
{
    if (sphere.w < 0.f)
        return true;
    const Vec4 centre = Vec4(sphere.x, sphere.y, sphere.z, 1.f) - ray.origin;
    const float along = centre.dot(ray.direction);
    const float aside = centre.dot(centre) - along * along;
    return along + sphere.w >= 0.f && along - sphere.w <= nearest && aside <= sphere.w * sphere.w * 1.0001f;
}

bool isDecal(const GraphicsComponent2 &component)
{
    return component.getType()->isSubclassOf(DecalComponent::staticType);
}

TransformComponent *transformOf(const Handle<Entity> &entity)
{
    return componentOf<TransformComponent>(entity, ComponentKeys::transform);
}
} // namespace

Entity *entityOf(const GraphicsComponent2 &component)
{
    return handle_cast<Entity>(component.getParent()).lookup().ptr;
}

void forEachDrawn(Coordinator &level, const std::function<void(GraphicsComponent2 &)> &function)
{
    SceneGraph *const scene = sceneOf(level);
    if (!scene)
        return;
    for (const SceneGraph::Layer layer : {SceneGraph::WORLD, SceneGraph::WORLD_UNCONDITIONAL, SceneGraph::DECAL})
        for (const Handle<GraphicsComponent2> &component : scene->getLayerComponents(layer))
            if (const auto drawn = component.lookup(); drawn && drawn->getVisible() && !drawn->isDying())
                function(*drawn);
}

bool EditorPicking::isPickable(const Entity &entity) const
{
    const Object *step = &entity;
    while (step && !step->getType()->isSubclassOf(Coordinator::staticType))
    {
        if (step->isDying() || barred.count(step->getHandle().getNumber()) || isOwn(*step))
            return false;
        step = step->getParent().lookup().ptr;
    }
    return step != nullptr;
}

void EditorPicking::setPickable(const Handle<Object> &entity, bool val)
{
    if (val)
        barred.erase(entity.getNumber());
    else if (entity.isValid())
        barred.insert(entity.getNumber());
}

PickHit EditorPicking::cast(Coordinator &level, const ViewRay &ray, const Skip &skip) const
{
    PickHit best;
    float nearest = FARTHEST;
    std::vector<GraphicsComponent2 *> decals;
    const auto isOut = [&](const GraphicsComponent2 &component)
    {
        const Entity *const entity = entityOf(component);
        return !entity || !isPickable(*entity) || (skip && skip(*entity));
    };
    const auto tryOne = [&](GraphicsComponent2 &component)
    {
        if (isDecal(component))
            return decals.push_back(&component);
        if (!comesNear(ray, component.getBoundingSphere(), nearest))
            return;
        float distance = nearest;
        Vec4 normal;
        if (!SeenMesh(component).meets(ray, distance, normal) || isOut(component))
            return;
        nearest = distance;
        best = {handle_cast<Entity>(component.getParent()), ray.at(distance), normal, distance};
    };
    forEachDrawn(level, tryOne);
    // A picture that is thrown onto a surface is what is seen there.
    for (GraphicsComponent2 *const decal : decals)
        if (best.entity.isValid() && SeenMesh(*decal).holds(best.place) && !isOut(*decal))
            best.entity = handle_cast<Entity>(decal->getParent());
    return best;
}

PickHit EditorPicking::castAt(Coordinator &level, const EditorView &view, float x, float y, const Skip &skip) const
{
    const ViewRay ray = view.rayAt(x, y);
    const std::optional<float> way = view.wayToShown(ray);
    if (!way)
        return {};
    PickHit hit = cast(level, {ray.at(*way), ray.direction}, skip);
    hit.distance += *way;
    return hit;
}

PickHit EditorPicking::pick(Coordinator &level, const EditorView &view, float x, float y)
{
    if (!view.isUsable() || !std::isfinite(x) || !std::isfinite(y))
        return {};
    PickHit best = castAt(level, view, x, y);
    const float wall = best.entity.isValid() ? best.distance + 0.3f : FARTHEST;
    float nearest = MARK_REACH;
    for (const PickMark &mark : marksOf(level))
    {
        const TransformComponent *const transform = transformOf(mark.entity);
        const auto pixel = transform ? view.project(transform->getPosition()) : std::nullopt;
        if (!pixel || !view.shows(transform->getPosition()))
            continue;
        const float away = std::hypot(pixel->x - x, pixel->y - y);
        const float distance = (transform->getPosition() - view.eye()).magnitude();
        const float reach = distance > wall ? HIDDEN_MARK_REACH : nearest;
        if (away > std::min(reach, nearest) || !isPickable(*mark.entity.lookup()))
            continue;
        nearest = away;
        best = {mark.entity, transform->getPosition(), -view.axis(2), distance};
    }
    return best;
}

std::vector<Handle<Entity>> EditorPicking::pickBox(Coordinator &level, const EditorView &view, const ViewRect &rect)
{
    std::vector<Handle<Entity>> found;
    std::unordered_set<machine_word> known;
    const auto take = [&](const Handle<Entity> &entity, const Vec4 &place)
    {
        const auto pixel = view.project(place);
        const auto thing = entity.lookup();
        if (pixel && thing && rect.contains(*pixel) && isPickable(*thing) && known.insert(entity.getNumber()).second)
            found.push_back(entity);
    };
    forEachDrawn(level,
                 [&](GraphicsComponent2 &component)
                 {
                     const SeenMesh thing(component);
                     const Vec4 middle = thing.placement() * ((thing.low() + thing.high()) * 0.5f);
                     if (thing.isSolid() && !view.isCutOff(middle))
                         take(handle_cast<Entity>(component.getParent()), middle);
                 });
    for (const PickMark &mark : marksOf(level))
        if (const TransformComponent *const transform = transformOf(mark.entity);
            transform && view.shows(transform->getPosition()))
            take(mark.entity, transform->getPosition());
    return found;
}

const std::vector<PickMark> &EditorPicking::marksOf(Coordinator &level)
{
    const std::uint64_t changes = ObjectMap().getChangeCount();
    const Handle<Coordinator> handle = handle_cast<Coordinator>(level.getHandle());
    if (markedLevel == handle && objectChanges == changes)
        return marks;
    marks.clear();
    markedLevel = handle;
    TreeWalk walk(level);
    std::size_t coveredFrom = 0; // depth below which all belongs to something that is seen already; 0: nothing
    while (Object *const object = walk.next())
    {
        if (walk.getDepth() == 0)
            continue;
        if (coveredFrom && walk.getDepth() <= coveredFrom)
            coveredFrom = 0;
        const Handle<Entity> entity = handle_cast<Entity>(object->getHandle());
        if (!entity.isValid() || isOwn(*object))
        {
            walk.skipChildren();
            continue;
        }
        if (object->getType()->isSubclassOf(MapRootEntity::staticType))
            continue;
        auto *const drawn = componentOf<GraphicsComponent2>(entity, ComponentKeys::graphics2);
        const bool isLight = drawn && drawn->getType()->isSubclassOf(LightComponent::staticType);
        const TransformComponent *const transform = transformOf(entity);
        if (transform && (isLight || (!drawn && !coveredFrom)) && !object->isDying())
            marks.push_back({entity, isLight});
        if (!coveredFrom && (drawn || transform) && !isLight)
            coveredFrom = walk.getDepth();
    }
    objectChanges = ObjectMap().getChangeCount();
    return marks;
}
