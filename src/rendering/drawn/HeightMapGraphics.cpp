#include "rendering/drawn/HeightMapGraphics.h"

#include "rendering/drawn/SurfaceShaders.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/models/DynamicMeshAsset.h"
#include "assets/building/MeshBuilder.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Logger.h"

#include <cmath>

void HeightMapGraphics::onLoadComplete()
{
    loaded = true;
    readHeights();
    loadTextures();
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams HeightMapGraphics::batchGetParams()
{
    // Only the pass that writes depth alone borrows the models' technique.
    static const SurfaceShaders shaders(SCS("NonInstancedObject"), SCS("NonInstancedObjectShadow"),
                                        SCS("CrappyZPrePass"));
    static const String modelToWorldName = SCS("modelToWorld");
    if (meshIsStale || !mesh.isValid())
        rebuild();
    GraphicsSystem2::BatchRenderParams params;
    params.mesh = mesh;
    shaders.addTo(params);
    const Matrix4 modelToWorld = findTransform()->getTransformationMatrix(TransformComponent::USE_OFFSET);
    params.shaderConstants.emplace_back(modelToWorldName, modelToWorld.transpose());
    addTexturesTo(params, *this);
    return params;
}

void HeightMapGraphics::objectDraw(BatchProxy &batch) {}

int HeightMapGraphics::objectGetInstanceCount()
{
    return expectTransform() ? 1 : 0;
}

float HeightMapGraphics::getHeight(float x, float z) const
{
    TransformComponent *transform = findTransform();
    if (!transform)
        return 0;
    const Matrix4 toWorld = transform->getTransformationMatrix(TransformComponent::USE_OFFSET);
    const Vec4 place = toWorld.inverse() * Vec4(x, toWorld[1][3], z, 1);
    return toWorld[1][3] + toWorld[1][1] * field.heightAt(place.x, place.z);
}

void HeightMapGraphics::setHeightMapName(const String &val)
{
    heightMapName = val;
    if (loaded)
        readHeights();
}

void HeightMapGraphics::makeFlat(int columns, int rows)
{
    field.reset(columns, rows);
    meshIsStale = true;
}

void HeightMapGraphics::setHeightAt(int column, int row, float val)
{
    field.set(column, row, val);
    meshIsStale = true;
}

void HeightMapGraphics::setTextureRepeat(float val)
{
    textureRepeat = std::isfinite(val) ? val : 1.0f;
    meshIsStale = true;
}

void HeightMapGraphics::readHeights()
{
    String cause;
    if (heightMapName.empty() || readHeightImage(heightMapName, field, cause))
    {
        meshIsStale = true;
        return;
    }
    KV_LOGF(Logger_::I_ERROR, "The height map %s is flat: %s", heightMapName.toCString(), cause.toCString());
    makeFlat(HeightField::leastPoints, HeightField::leastPoints);
}

void HeightMapGraphics::rebuild()
{
    if (!mesh.isValid())
        mesh = makeDynamicMesh(*this);
    const auto asset = mesh.lookup();
    if (!asset)
        return;
    MeshBuilder builder;
    field.buildMesh(builder, textureRepeat);
    asset->setMeshData(builder);
    meshIsStale = false;
}
