#include "rendering/debug/DebugTextGraphicsComponent.h"

#include "rendering/device/BatchProxy.h"
#include "rendering/frame/GraphicsManager2.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/ScreenPixels.h"
#include "rendering/drawn/UnitMeshes.h"
#include "rendering/frame/ViewerComponent.h"
#include "rendering/drawn/WholeWindow.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/fonts/FontAsset.h"
#include "assets/fonts/FontAssetLoader.h"
#include "engine/entities/ComponentKeys.h"
#include "engine/entities/ComponentOf.h"
#include "engine/debug/DebugCollector.h"
#include "engine/transforms/TransformComponent.h"

#include <algorithm>
#include <cmath>

namespace
{

constexpr float TEXT_SIZE = 0.011f;   ///< em, normalised window units: 14 pixels in a window 1280 wide
constexpr int SMALLEST_TEXT = 11;     ///< pixels; what is smaller is hard to read
constexpr float SHADOW_OFFSET = 1.0f; ///< pixels
constexpr float SHADOW_STRENGTH = 0.8f;

int choosePixelSize()
{
    return std::max(static_cast<int>(std::lround(TEXT_SIZE * getPixelsPerUnit())), SMALLEST_TEXT);
}

/// Height without empty lines at the end, which a text has that ends in a line feed.
float getInkHeight(const TextBlock &block, float lineHeight)
{
    std::size_t lines = block.getLines().size();
    while (lines > 0 && block.getLines()[lines - 1].first == block.getLines()[lines - 1].end)
        --lines;
    return lineHeight * static_cast<float>(lines);
}

} // namespace

DebugTextGraphicsComponent::DebugTextGraphicsComponent() : fontName(SCS("Inconsolata.otf")) {}

void DebugTextGraphicsComponent::onLoadComplete()
{
    AssetSystem &assets = getSystemDeref<AssetSystem>();
    font = handle_cast<FontAsset>(
        assets.startLoad(FontAssetLoader::staticType, fontName, nullptr, getNextRequestHandle()));
    mesh = makeDynamicMesh(*this);
    GraphicsComponent2::onLoadComplete();
}

GraphicsSystem2::BatchRenderParams DebugTextGraphicsComponent::batchGetParams()
{
    static const String defaultSet = SCS("Default");
    static const GraphicsSystem2::ShaderID shader(SCS("ff.fx"), SCS("CrappyTexturedQuads"));
    static const String image = SCS("diffuseMap_texture");
    const auto asset = font.lookup();
    GraphicsSystem2::BatchRenderParams params;
    params.instanceType = MVT_DEFAULT_INSTANCE;
    params.mesh = mesh;
    params.shaders.insert(defaultSet, shader);
    params.shaderConstants.emplace_back(image, asset ? asset->getTexture() : Handle<TextureAsset>());
    return params;
}

void DebugTextGraphicsComponent::objectDraw(BatchProxy &batch)
{
    const float unitsPerPixel = 1.0f / getPixelsPerUnit();
    batch.addInstanceData(DefaultInstanceVertex{{{unitsPerPixel, 0, 0, 0}, {0, unitsPerPixel, 0, 0}, {0, 0, 1, 0}},
                                                {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}});
}

int DebugTextGraphicsComponent::objectGetInstanceCount()
{
    const auto source = collector.lookup();
    const auto asset = font.lookup();
    const bool any =
        source && (!source->getWorldGeometry().texts.empty() || !source->getScreenGeometry().texts.empty());
    return any && asset && asset->isReady() ? 1 : 0;
}

ErrorCode DebugTextGraphicsComponent::batchPreRender()
{
    const auto asset = font.lookup();
    const auto drawn = mesh.lookup();
    if (!asset || !drawn)
        return ErrorCode::SUCCESS;
    const int pixelSize = choosePixelSize();
    // New glyphs may make the atlas grow under those that have been placed. The second time all are there.
    for (int attempt = 0; attempt < 2; ++attempt)
    {
        const unsigned generation = asset->getAtlasGeneration();
        buildGeometry(*asset, pixelSize);
        if (generation == asset->getAtlasGeneration())
            break;
    }
    asset->updateTexture();
    drawn->setMeshData(geometry.getVertices(), geometry.getIndices());
    return ErrorCode::SUCCESS;
}

void DebugTextGraphicsComponent::buildGeometry(FontAsset &asset, int pixelSize)
{
    geometry.clear();
    const auto source = collector.lookup();
    if (!source)
        return;
    const FontAsset::Shaper shaper = asset.getShaper(pixelSize);
    const TextBlockParams centred{0.0f, TA_CENTER}, plain;
    for (const DebugCollectorComponent::Text &text : source->getWorldGeometry().texts)
    {
        Vec4 place;
        if (!projectToPixels(text.position, place))
            continue;
        textBlock.layOut(text.text, shaper, centred);
        addShadowed(asset, pixelSize, std::round(place.x - textBlock.getWidth() * 0.5f),
                    std::round(place.y + getInkHeight(textBlock, shaper.getLineHeight()) * 0.5f), text.color);
    }
    const float pixelsPerUnit = getPixelsPerUnit();
    for (const DebugCollectorComponent::Text &text : source->getScreenGeometry().texts)
    {
        textBlock.layOut(text.text, shaper, plain);
        addShadowed(asset, pixelSize, std::round(text.position.x * pixelsPerUnit),
                    std::round(text.position.y * pixelsPerUnit), text.color);
    }
}

void DebugTextGraphicsComponent::addShadowed(FontAsset &asset, int pixelSize, float left, float top, const Vec4 &color)
{
    geometry.addText(textBlock, asset, pixelSize, left + SHADOW_OFFSET, top - SHADOW_OFFSET,
                     Vec4(0, 0, 0, color.w * SHADOW_STRENGTH));
    geometry.addText(textBlock, asset, pixelSize, left, top, color);
}

/// Where the current camera shows a place, pixels from the lower left corner; false where it does not.
bool DebugTextGraphicsComponent::projectToPixels(const Vec4 &worldPosition, Vec4 &pixels) const
{
    typedef TransformComponent T;
    const auto manager = handle_cast<GraphicsManager2>(getManager()).lookup();
    const Handle<Entity> camera = manager ? manager->getCurrentCamera() : Handle<Entity>();
    T *const transform = componentOf<T>(camera, ComponentKeys::transform);
    auto *const viewer = componentOf<ViewerComponent>(camera, ComponentKeys::viewer);
    if (!transform || !viewer)
        return false;

    const WindowCoordinate window = getWholeWindow();
    const Vec4 inView = transform->getCameraMatrix(T::INTO_WORLD_SPACE | T::INVERT | T::OMIT_SCALE) * worldPosition;
    // The projection is a matrix for row vectors.
    const Vec4 clip = inView * viewer->getProjectionMatrix(window.x, window.y);
    if (!(clip.w > 0.0f && clip.z >= 0.0f && std::fabs(clip.x) <= clip.w && std::fabs(clip.y) <= clip.w))
        return false; // so does a place that is no number
    const float pixelsPerUnit = getPixelsPerUnit();
    pixels = Vec4((clip.x / clip.w + 1.0f) * 0.5f * window.x * pixelsPerUnit,
                  (clip.y / clip.w + 1.0f) * 0.5f * window.y * pixelsPerUnit);
    return true;
}
