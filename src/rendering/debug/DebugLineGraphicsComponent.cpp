#include "rendering/debug/DebugLineGraphicsComponent.h"

#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/models/DynamicMeshAsset.h"
#include "engine/debug/DebugCollector.h"

namespace
{

const DebugCollectorComponent::Geometry *findGeometry(const Handle<DebugCollectorComponent> &hCollector, int layer)
{
    const auto collector = hCollector.lookup();
    if (!collector)
        return nullptr;
    return layer == SceneGraph::WORLD_DEBUG ? &collector->getWorldGeometry() : &collector->getScreenGeometry();
}

/// The effect reads the colour of a line from the normal.
DefaultMeshVertex makeEnd(const Vec4 &position, const Vec4 &color)
{
    DefaultMeshVertex vertex = {};
    vertex.position = {position.x, position.y, position.z};
    vertex.normal = {color.x, color.y, color.z};
    return vertex;
}

} // namespace

void DebugLineGraphicsComponent::onLoadComplete()
{
    mesh = makeDynamicMesh(*this);
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams DebugLineGraphicsComponent::batchGetParams()
{
    static const String defaultSet = SCS("Default");
    static const GraphicsSystem2::ShaderID shader(SCS("ff.fx"), SCS("CrappyLines"));
    GraphicsSystem2::BatchRenderParams params;
    params.mesh = mesh;
    params.shaders.insert(defaultSet, shader);
    return params;
}

void DebugLineGraphicsComponent::objectDraw(BatchProxy &)
{
    // Lines stand in the world as they are: there is no instance stream.
}

int DebugLineGraphicsComponent::objectGetInstanceCount()
{
    const auto *geometry = findGeometry(collector, getLayer());
    return geometry && !geometry->lines.empty() ? 1 : 0;
}

ErrorCode DebugLineGraphicsComponent::batchPreRender()
{
    const auto *geometry = findGeometry(collector, getLayer());
    const auto drawn = mesh.lookup();
    if (!geometry || !drawn)
        return ErrorCode::SUCCESS;
    vertices.clear();
    for (const DebugCollectorComponent::Line &line : geometry->lines)
    {
        vertices.push_back(makeEnd(line.from, line.color));
        vertices.push_back(makeEnd(line.to, line.color));
    }
    static const Mesh::IndexBufferType noIndices;
    drawn->setMeshData(vertices, noIndices, MPT_LINES);
    return ErrorCode::SUCCESS;
}
