#include "rendering/GraphicsComponent2.h"

#include "rendering/GraphicsManager2.h"
#include "rendering/RenderParams.h"

#include "foundation/Assertions.h"

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

int GraphicsComponent2::objectGetInstanceCount()
{
    return 1;
}

ErrorCode GraphicsComponent2::batchPreRender()
{
    return ErrorCode::SUCCESS;
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
