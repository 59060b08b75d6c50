#include "ui/widgets/SheetGraphics.h"

#include "assets/fonts/FontAsset.h"
#include "assets/models/DynamicMeshAsset.h"
#include "engine/transforms/TransformComponent.h"
#include "rendering/device/BatchProxy.h"
#include "rendering/device/InstanceVertex.h"
#include "rendering/drawn/ScreenPixels.h"
#include "rendering/drawn/UnitMeshes.h"
#include "rendering/frame/RenderParams.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{
/// What stays the same from batch to batch, made once.
struct BatchConstants
{
    const String defaultSet = SCS("Default");
    const GraphicsSystem2::ShaderID shader{SCS("ff.fx"), SCS("CrappyTexturedQuads")};
    const String image = SCS("diffuseMap_texture");
};

/// What the device draws at a whole number is a pixel's middle; edges lie half a pixel beside.
constexpr float HALF_PIXEL = 0.5f;
/// Depth of the sheet of order 0, and how much nearer each next one lies: before all other things of the screen.
constexpr float FARTHEST = 0.2f, NEARER = 0.0005f;
constexpr int MOST_ORDERS = 300;

DefaultMeshVertex corner(float x, float y, float u, float v, const Vec4 &color)
{
    return {{x, y, 0.f}, {color.x, color.y, color.z}, {color.w, 0.f, 0.f}, {0.f, 0.f, 0.f}, {u, v}};
}
} // namespace

void SheetGraphics::onLoadComplete()
{
    expectLayer({SceneGraph::SCREEN, SceneGraph::SCREEN_DEBUG});
    mesh = makeDynamicMesh(*this);
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams SheetGraphics::batchGetParams()
{
    static const BatchConstants constants;
    const auto letters = font.lookup();
    GraphicsSystem2::BatchRenderParams batch;
    batch.instanceType = MVT_DEFAULT_INSTANCE;
    batch.mesh = mesh;
    batch.shaders.insert(constants.defaultSet, constants.shader);
    batch.shaderConstants.emplace_back(constants.image, letters ? letters->getTexture() : texture);
    return batch;
}

int SheetGraphics::objectGetInstanceCount()
{
    return vertices.empty() ? 0 : 1;
}

ErrorCode SheetGraphics::batchPreRender()
{
    const auto drawn = mesh.lookup();
    if (!meshIsStale || !drawn)
        return ErrorCode::SUCCESS;
    if (const auto letters = font.lookup())
        letters->updateTexture();
    drawn->setMeshData(vertices, indices);
    meshIsStale = false;
    return ErrorCode::SUCCESS;
}

void SheetGraphics::objectDraw(BatchProxy &batch)
{
    TransformComponent *const transform = expectTransform();
    if (!transform)
        return;
    const float unitsPerPixel = 1.f / getPixelsPerUnit();
    Matrix4 model;
    model.scale(unitsPerPixel, unitsPerPixel, 1.f);
    model[2][3] = FARTHEST - NEARER * static_cast<float>(std::clamp(order, 0, MOST_ORDERS));
    batch.addInstanceData(makeInstanceVertex(*transform, model));
}

bool SheetGraphics::doBatchCompare(const Handle<GraphicsComponent2> &rhs) const
{
    const auto other = rhs.lookup();
    if (!other || other->getType() != getType())
        return false;
    const int otherOrder = static_cast<const SheetGraphics *>(other.ptr)->order;
    return order != otherOrder ? order < otherOrder : GraphicsComponent2::doBatchCompare(rhs);
}

void SheetGraphics::begin(float pictureHeight)
{
    height = pictureHeight;
    vertices.clear();
    indices.clear();
    meshIsStale = true;
    if (const auto letters = font.lookup())
        atlasGeneration = letters->getAtlasGeneration();
}

bool SheetGraphics::isOutOfDate() const
{
    const auto letters = font.lookup();
    return letters && !vertices.empty() && atlasGeneration != letters->getAtlasGeneration();
}

void SheetGraphics::addRect(const WidgetRect &place, const WidgetRect &image, const Vec4 &color, const WidgetRect &clip)
{
    if (place.isEmpty() || !(color.w > 0.f))
        return;
    const float left = place.left, right = place.right();
    const float top = height - place.top, bottom = height - place.bottom();
    const DefaultMeshVertex corners[] = {corner(left, top, image.left, image.top, color),
                                         corner(right, top, image.right(), image.top, color),
                                         corner(right, bottom, image.right(), image.bottom(), color),
                                         corner(left, bottom, image.left, image.bottom(), color)};
    addClipped(corners, clip);
}

void SheetGraphics::addShade(const WidgetRect &place, const Vec4 &leftColor, const Vec4 &rightColor,
                             const WidgetRect &clip)
{
    const float top = height - place.top, bottom = height - place.bottom();
    const DefaultMeshVertex corners[] = {
        corner(place.left, top, 0.f, 0.f, leftColor), corner(place.right(), top, 1.f, 0.f, rightColor),
        corner(place.right(), bottom, 1.f, 1.f, rightColor), corner(place.left, bottom, 0.f, 1.f, leftColor)};
    addClipped(corners, clip);
}

void SheetGraphics::addText(const TextBlock &block, FontAsset &from, int pixelSize, float left, float top,
                            const Vec4 &color, const WidgetRect &clip)
{
    static TextGeometry letters; // this sheet keeps what is left of them
    letters.clear();
    letters.addText(block, from, pixelSize, left, height - top, color);
    const Mesh::VertexBufferType &made = letters.getVertices();
    for (std::size_t first = 0; first + 4 <= made.size(); first += 4)
    {
        DefaultMeshVertex corners[4];
        std::copy_n(made.begin() + static_cast<std::ptrdiff_t>(first), 4, corners);
        for (DefaultMeshVertex &each : corners)
        {
            each.position.x += HALF_PIXEL;
            each.position.y -= HALF_PIXEL;
        }
        addClipped(corners, clip);
    }
}

void SheetGraphics::addStroke(const Vec4 &fromTo, float width, const Vec4 &color, const WidgetRect &clip)
{
    const float x = fromTo.z - fromTo.x, y = fromTo.w - fromTo.y, length = std::hypot(x, y);
    const bool inside = clip.contains(fromTo.x, fromTo.y) && clip.contains(fromTo.z, fromTo.w);
    if (!inside || !(length > 0.f) || !(width > 0.f) || !(color.w > 0.f))
        return;
    const float half = 0.5f * width / length, acrossX = -y * half, acrossY = x * half;
    const auto point = [&](float px, float py, float side, float u)
    {
        return corner(px + side * acrossX - HALF_PIXEL, height - (py + side * acrossY) + HALF_PIXEL, u,
                      0.5f + 0.5f * side, color);
    };
    const DefaultMeshVertex corners[] = {point(fromTo.x, fromTo.y, -1.f, 0.f), point(fromTo.z, fromTo.w, -1.f, 1.f),
                                         point(fromTo.z, fromTo.w, 1.f, 1.f), point(fromTo.x, fromTo.y, 1.f, 0.f)};
    addQuad(corners);
}

/// Adds what lies within a rectangle of an upright quad: upper left, upper right, lower right, lower left.
void SheetGraphics::addClipped(const DefaultMeshVertex *corners, const WidgetRect &clip)
{
    const DefaultMeshVertex &upperLeft = corners[0], &lowerRight = corners[2];
    const float left = upperLeft.position.x, right = lowerRight.position.x;
    const float top = upperLeft.position.y, bottom = lowerRight.position.y;
    const float l = std::max(left, clip.left), r = std::min(right, clip.right());
    const float t = std::min(top, height - clip.top), b = std::max(bottom, height - clip.bottom());
    if (!(l < r && b < t))
        return;
    const float perX = (lowerRight.texCoord0.x - upperLeft.texCoord0.x) / (right - left);
    const float perY = (lowerRight.texCoord0.y - upperLeft.texCoord0.y) / (top - bottom);
    DefaultMeshVertex inner[4];
    std::size_t next = 0;
    for (const auto &[x, y] : {std::pair(l, t), std::pair(r, t), std::pair(r, b), std::pair(l, b)})
    {
        DefaultMeshVertex vertex = upperLeft;
        const float part = (x - left) / (right - left);
        vertex.normal += (lowerRight.normal - upperLeft.normal) * part;
        vertex.tangent += (lowerRight.tangent - upperLeft.tangent) * part;
        vertex.position = {x - HALF_PIXEL, y + HALF_PIXEL, 0.f};
        vertex.texCoord0 = {upperLeft.texCoord0.x + (x - left) * perX, upperLeft.texCoord0.y + (top - y) * perY};
        inner[next++] = vertex;
    }
    addQuad(inner);
}

void SheetGraphics::addQuad(const DefaultMeshVertex *corners)
{
    const auto first = static_cast<std::uint32_t>(vertices.size());
    vertices.insert(vertices.end(), corners, corners + 4);
    for (const std::uint32_t offset : {0u, 1u, 2u, 0u, 2u, 3u})
        indices.push_back(first + offset);
}
