#include "rendering/drawn/TextComponent2.h"

#include "rendering/device/BatchProxy.h"
#include "rendering/device/InstanceVertex.h"
#include "rendering/frame/RenderParams.h"
#include "rendering/drawn/ScreenPixels.h"
#include "rendering/drawn/TextGeometry.h"
#include "rendering/drawn/UnitMeshes.h"

#include "assets/cache/AssetSystem.h"
#include "assets/models/DynamicMeshAsset.h"
#include "assets/fonts/FontAsset.h"
#include "assets/fonts/FontAssetLoader.h"
#include "engine/transforms/TransformComponent.h"

#include "foundation/Assertions.h"

#include <algorithm>
#include <cmath>

namespace
{

/// What stays the same from batch to batch, made once.
struct BatchConstants
{
    const String defaultSet = SCS("Default");
    const GraphicsSystem2::ShaderID shader{SCS("ff.fx"), SCS("CrappyTexturedQuads")};
    const String image = SCS("diffuseMap_texture");
};

bool isUpright(const Matrix4 &m)
{
    return m[0][1] == 0.0f && m[1][0] == 0.0f && m[0][0] > 0.0f && m[1][1] > 0.0f;
}

/// From the pixels of a laid-out text into the world of the screen layers.
Matrix4 makeModelMatrix(TransformComponent &transform, float unitsPerPixel)
{
    Matrix4 model = transform.getTransformationMatrix(TransformComponent::OMIT_SCALE);
    if (isUpright(model))
    {
        const Vec4 place = snapToPixels(model.getColumn(3));
        model[0][3] = place.x;
        model[1][3] = place.y;
    }
    Matrix4 pixels;
    pixels.scale(unitsPerPixel, unitsPerPixel, 1.0f);
    return model * pixels;
}

/// What is no number would differ from itself and be laid out anew in every frame.
float finiteOrZero(float value)
{
    return std::isfinite(value) ? value : 0.0f;
}

/// What lies to the left of an anchor, or below it, of a length.
float anchorPart(int anchor)
{
    return static_cast<float>(anchor) * 0.5f;
}

} // namespace

TextComponent2::TextComponent2() : fontName(SCS("LindenHill.otf")) {}

void TextComponent2::onLoadComplete()
{
    loaded = true;
    requestFont();
    mesh = makeDynamicMesh(*this);
    FlatGraphicsComponent::onLoadComplete();
}

void TextComponent2::setFontName(const String &val)
{
    fontName = val;
    if (loaded)
        requestFont();
}

void TextComponent2::requestFont()
{
    missingFontTold = false;
    pixelSize = 0;
    font = handle_cast<FontAsset>(getSystemDeref<AssetSystem>().startLoad(FontAssetLoader::staticType, fontName,
                                                                          nullptr, getNextRequestHandle()));
}

void TextComponent2::setColor(const Vec4 &val)
{
    meshIsStale |= color != val;
    color = val;
}

void TextComponent2::onSetHorizontalAnchorPoint(HorizontalAnchor)
{
    meshIsStale = true;
}

void TextComponent2::onSetVerticalAnchorPoint(VerticalAnchor)
{
    meshIsStale = true;
}

GraphicsSystem2::BatchRenderParams TextComponent2::batchGetParams()
{
    static const BatchConstants constants;
    const auto asset = font.lookup();
    GraphicsSystem2::BatchRenderParams batch;
    batch.instanceType = MVT_DEFAULT_INSTANCE;
    batch.mesh = mesh;
    batch.shaders.insert(constants.defaultSet, constants.shader);
    batch.shaderConstants.emplace_back(constants.image, asset ? asset->getTexture() : Handle<TextureAsset>());
    return batch;
}

int TextComponent2::objectGetInstanceCount()
{
    // Told once: a frame later nothing has changed.
    const bool fontMissing = !findReadyFont();
    KV_ASSERT(!fontMissing || missingFontTold, "Font asset missing");
    missingFontTold = fontMissing;
    return fontMissing || text.empty() ? 0 : 1;
}

ErrorCode TextComponent2::batchPreRender()
{
    FontAsset *const asset = layOut();
    if (asset && (meshIsStale || atlasGeneration != asset->getAtlasGeneration()))
        buildMesh(*asset);
    return ErrorCode::SUCCESS;
}

void TextComponent2::objectDraw(BatchProxy &batch)
{
    TransformComponent *const transform = expectTransform();
    if (transform)
        batch.addInstanceData(makeInstanceVertex(*transform, makeModelMatrix(*transform, unitsPerPixel)));
}

float TextComponent2::getWidth()
{
    return layOut() ? textBlock.getWidth() * unitsPerPixel : 0.0f;
}

float TextComponent2::getHeight()
{
    return layOut() ? textBlock.getHeight() * unitsPerPixel : 0.0f;
}

int TextComponent2::getLineCount()
{
    return layOut() ? static_cast<int>(textBlock.getLines().size()) : 0;
}

FontAsset *TextComponent2::findReadyFont() const
{
    const auto asset = font.lookup();
    return asset && asset->isReady() ? &*asset : nullptr;
}

/// Brings textBlock up to date; null without a font that it could be laid out in.
FontAsset *TextComponent2::layOut()
{
    FontAsset *const asset = findReadyFont();
    if (!asset)
        return nullptr;
    const TransformComponent *const transform = findTransform();
    const Vec4 scale = transform ? transform->getScale() : Vec4(1, 1, 1, 0);
    constexpr auto largest = static_cast<float>(FontAsset::LARGEST_PIXEL_SIZE);
    const float exactSize = finiteOrZero(fontSize * scale.y * getPixelsPerUnit());
    const int wantedSize = exactSize > 1.0f ? static_cast<int>(std::lround(std::min(exactSize, largest))) : 1;
    // Beyond the largest size a pixel of the text is more than one of the picture.
    const float stretch = exactSize > largest ? exactSize / largest : 1.0f;
    unitsPerPixel = stretch / getPixelsPerUnit();

    const TextBlockParams wanted{std::max(finiteOrZero(wrapWidth * scale.x / unitsPerPixel), 0.0f), alignment};
    if (pixelSize == wantedSize && params == wanted && lastTextInBlock == text)
        return asset;
    textBlock.layOut(text, asset->getShaper(wantedSize), wanted);
    pixelSize = wantedSize;
    params = wanted;
    lastTextInBlock = text;
    meshIsStale = true;
    return asset;
}

void TextComponent2::buildMesh(FontAsset &asset)
{
    static TextGeometry geometry; // the mesh keeps its own copy
    const float room = params.wrapWidth > 0.0f ? params.wrapWidth : textBlock.getWidth();
    const float left = -std::round(room * anchorPart(getHorizontalAnchorPoint()));
    const float top = textBlock.getHeight() - std::round(textBlock.getHeight() * anchorPart(getVerticalAnchorPoint()));
    // New glyphs may make the atlas grow under those that have been placed. The second time all are there.
    for (int attempt = 0; attempt < 2; ++attempt)
    {
        atlasGeneration = asset.getAtlasGeneration();
        geometry.clear();
        geometry.addText(textBlock, asset, pixelSize, left, top, color);
        if (atlasGeneration == asset.getAtlasGeneration())
            break;
    }
    asset.updateTexture();
    if (const auto drawn = mesh.lookup())
        drawn->setMeshData(geometry.getVertices(), geometry.getIndices());
    meshIsStale = false;
}
