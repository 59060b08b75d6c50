#include "rendering/drawn/GraphicsComponent2.h"

#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/RenderParams.h"

#include "engine/entities/ComponentKeys.h"
#include "engine/entities/Entity.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Assertions.h"
#include "foundation/Logger.h"
#include "object/reflection/EnumText.h"
#include "object/tree/ObjectMap.h"

#include <algorithm>

void GraphicsComponent2::onLoadComplete()
{
    if (loaded)
        return;
    loaded = true;
    KV_ASSERT(layer < SceneGraph::NUM_LAYERS, "Graphics component requires layer to be specified.");
    if (const auto sceneGraph = getSceneGraph().lookup())
        sceneGraph->addComponent(::getHandle(this));
}

void GraphicsComponent2::onMurder()
{
    if (const auto sceneGraph = getSceneGraph().lookup())
        sceneGraph->removeComponent(::getHandle(this));
    AbstractComponent::onMurder();
}

void GraphicsComponent2::onHierarchyChange(Handle<Object> reparentedObject, Handle<Object> newParent)
{
    objectChanges = 0;
    AbstractComponent::onHierarchyChange(reparentedObject, newParent);
}

int GraphicsComponent2::objectGetInstanceCount()
{
    return 1;
}

ErrorCode GraphicsComponent2::batchPreRender()
{
    return ErrorCode::SUCCESS;
}

Vec4 GraphicsComponent2::getBoundingSphere()
{
    return Vec4(0, 0, 0, -1);
}

bool GraphicsComponent2::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    return ::getHandle(this) < rhs;
}

bool GraphicsComponent2::batchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto other = rhs.lookup();
    if (!other)
        return false;
    const ReflectorPtr ownType = getType(), otherType = other->getType();
    return ownType == otherType ? doBatchCompare(rhs) : ownType < otherType;
}

void GraphicsComponent2::setLayer(SceneGraph::Layer val)
{
    const auto sceneGraph = loaded ? getSceneGraph().lookup() : Handle<SceneGraph>::Result{};
    if (sceneGraph)
        sceneGraph->removeComponent(::getHandle(this));
    layer = val;
    if (sceneGraph)
        sceneGraph->addComponent(::getHandle(this));
}

Handle<SceneGraph> GraphicsComponent2::getSceneGraph() const
{
    const auto manager = handle_cast<GraphicsManager2>(getManager()).lookup();
    return manager ? manager->getSceneGraph() : Handle<SceneGraph>();
}

void GraphicsComponent2::expectLayer(std::initializer_list<SceneGraph::Layer> drawable) const
{
    if (layer >= SceneGraph::NUM_LAYERS || std::find(drawable.begin(), drawable.end(), layer) != drawable.end())
        return;
    const auto entity = getParent().lookup();
    KV_LOGF(Logger_::I_ERROR, "%s of \"%s\" is in the layer %s and will not look right; its layer is %s.",
            getType()->getName().toCString(), entity ? entity->getName().toCString() : "(no entity)",
            enumToString(layer).toCString(), enumToString(*drawable.begin()).toCString());
}

TransformComponent *GraphicsComponent2::findTransform() const
{
    const std::uint64_t changes = ObjectMap().getChangeCount();
    if (objectChanges == changes)
        return transform;
    const auto entity = handle_cast<Entity>(getParent()).lookup();
    transform =
        entity ? handle_cast<TransformComponent>(entity->getComponent(ComponentKeys::transform)).lookup().ptr : nullptr;
    objectChanges = changes;
    return transform;
}

TransformComponent *GraphicsComponent2::expectTransform()
{
    TransformComponent *found = findTransform();
    KV_ASSERT(found || missingTransformTold, "%s had no transform sibling", getType()->getName().toCString());
    missingTransformTold = !found;
    return found;
}
