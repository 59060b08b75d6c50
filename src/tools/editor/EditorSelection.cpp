#include "tools/editor/EditorSelection.h"

#include "tools/editor/EditorOverlay.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/transforms/TransformComponent.h"
#include "object/tree/ObjectMap.h"
#include "object/tree/TreeWalk.h"
#include "rendering/drawn/GraphicsComponent2.h"

#include "foundation/Finite.h"

#include <algorithm>

namespace
{
const Vec4 selectedColor(1.f, 0.62f, 0.12f, 1.f), newestColor(1.f, 0.85f, 0.30f, 1.f);
constexpr float SELECTED_WIDTH = 1.6f, OUTLINE_WIDTH = 1.6f;
constexpr float LEAST_SIDE = 0.02f; ///< metres; what is flat is still seen
constexpr float BARE = 0.12f;       ///< metres around what has nothing to see

TransformComponent *transformOf(const Handle<Object> &entity)
{
    return componentOf<TransformComponent>(entity, ComponentKeys::transform);
}

Matrix4 frameOfEntity(const Handle<Entity> &entity)
{
    TransformComponent *const transform = transformOf(entity);
    return transform ? transform->getTransformationMatrix(TransformComponent::OMIT_SCALE) : Matrix4();
}

/// A matrix without scale turns and moves, and its inverse is soon found.
Matrix4 inverseOfFrame(const Matrix4 &frame)
{
    Matrix4 turn = frame.transpose();
    for (int i = 0; i < 3; ++i)
        turn[3][i] = 0.f;
    const Vec4 origin = frame.getColumn(3);
    Matrix4 back;
    back.translate(Vec4(-origin.x, -origin.y, -origin.z, 1.f));
    return turn * back;
}
} // namespace

SpanBox boundsOfTree(const Handle<Object> &root)
{
    return boundsOfTree(root, Matrix4());
}

SpanBox boundsOfTree(const Handle<Object> &hRoot, const Matrix4 &worldToFrame)
{
    SpanBox box;
    const auto root = hRoot.lookup();
    if (!root)
        return box;
    TreeWalk walk(*root);
    while (Object *const object = walk.next())
    {
        if (!object->getType()->isSubclassOf(GraphicsComponent2::staticType) || object->isDying())
            continue;
        const SeenMesh thing(static_cast<GraphicsComponent2 &>(*object));
        if (thing.isSolid())
            box.take(worldToFrame * thing.placement(), thing.low(), thing.high());
    }
    const TransformComponent *const transform = box.isEmpty() ? transformOf(hRoot) : nullptr;
    if (transform && isFinite(transform->getPosition()))
    {
        const Vec4 middle = worldToFrame * transform->getPosition();
        box.take(middle - Vec4(BARE, BARE, BARE, 0.f));
        box.take(middle + Vec4(BARE, BARE, BARE, 0.f));
    }
    return box;
}

bool EditorSelection::add(const Handle<Entity> &entity)
{
    const auto thing = entity.lookup();
    if (!thing || thing->isDying() || has(entity))
        return false;
    index[entity.getNumber()] = outlined.size();
    outlined.push_back({entity, {}, 0, selectedColor});
    return true;
}

bool EditorSelection::remove(const Handle<Entity> &entity)
{
    const auto known = index.find(entity.getNumber());
    if (known == index.end())
        return false;
    outlined.erase(outlined.begin() + static_cast<std::ptrdiff_t>(known->second));
    index.clear();
    for (std::size_t i = 0; i < outlined.size(); ++i)
        index[outlined[i].entity.getNumber()] = i;
    return true;
}

void EditorSelection::clear()
{
    outlined.clear();
    index.clear();
}

bool EditorSelection::takesAlong(const Object &entity) const
{
    for (const Object *step = &entity; step; step = step->getParent().lookup().ptr)
        if (index.count(step->getHandle().getNumber()) != 0)
            return true;
    return false;
}

bool EditorSelection::dropDead()
{
    const auto isDead = [](const Outline &outline)
    {
        const auto thing = outline.entity.lookup();
        return !thing || thing->isDying();
    };
    std::erase_if(colored, isDead);
    if (std::erase_if(outlined, isDead) == 0)
        return false;
    index.clear();
    for (std::size_t i = 0; i < outlined.size(); ++i)
        index[outlined[i].entity.getNumber()] = i;
    return true;
}

std::vector<Handle<Entity>> EditorSelection::list() const
{
    std::vector<Handle<Entity>> entities;
    for (const Outline &outline : outlined)
        entities.push_back(outline.entity);
    return entities;
}

Handle<Entity> EditorSelection::newest() const
{
    return outlined.empty() ? Handle<Entity>() : outlined.back().entity;
}

Vec4 EditorSelection::middle() const
{
    Vec4 sum;
    float count = 0.f;
    for (const Outline &outline : outlined)
        if (const TransformComponent *const transform = transformOf(outline.entity);
            transform && isFinite(transform->getPosition()))
        {
            sum += transform->getPosition();
            count += 1.f;
        }
    return count > 0.f ? Vec4(sum.x / count, sum.y / count, sum.z / count, 1.f) : Vec4(0, 0, 0, 1);
}

SpanBox EditorSelection::bounds()
{
    SpanBox box;
    for (const Outline &outline : outlined)
        box.take(boundsOfTree(outline.entity));
    return box;
}

void EditorSelection::outline(const Handle<Entity> &entity, const Vec4 &color)
{
    std::erase_if(colored, [&entity](const Outline &each) { return each.entity == entity; });
    if (entity.isValid() && isFinite(color) && color.w > 0.f)
        colored.push_back({entity, {}, 0, color});
}

void EditorSelection::measure(Outline &outline)
{
    outline.box = boundsOfTree(outline.entity, inverseOfFrame(frameOfEntity(outline.entity)));
    outline.objectChanges = ObjectMap().getChangeCount();
}

void EditorSelection::drawOne(EditorOverlay &overlay, Outline &outline, const Vec4 &color, float width)
{
    if (outline.objectChanges != ObjectMap().getChangeCount())
        measure(outline);
    if (outline.box.isEmpty())
        return;
    const Vec4 extents = outline.box.extents(), middle = outline.box.middle();
    Matrix4 size;
    size.scale(std::max(extents.x, LEAST_SIDE), std::max(extents.y, LEAST_SIDE), std::max(extents.z, LEAST_SIDE));
    for (int row = 0; row < 3; ++row)
        size[row][3] = middle[row];
    overlay.box(frameOfEntity(outline.entity) * size, color, width);
}

void EditorSelection::draw(EditorOverlay &overlay)
{
    if (!outlined.empty())
        measure(outlined[next++ % outlined.size()]);
    for (Outline &outline : colored)
        drawOne(overlay, outline, outline.color, OUTLINE_WIDTH);
    for (std::size_t i = 0; i < outlined.size(); ++i)
        drawOne(overlay, outlined[i], i + 1 == outlined.size() ? newestColor : selectedColor, SELECTED_WIDTH);
}
