// DebugTextGraphicsComponent: draws the texts that a debug collector shows.
#pragma once

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/TextGeometry.h"

#include "assets/fonts/TextBlock.h"

#include "foundation/KVString.h"

class DebugCollectorComponent;
class DynamicMeshAsset;
class FontAsset;

/// Draws a collector's texts, those of the world where the current camera shows their places; for SCREEN_DEBUG.
///
/// One draw call for all texts of a frame, in one font and size, each with a dark shadow so that it reads on anything.
/// What lies behind the camera or outside the picture is left out. Needs no transform.
class DebugTextGraphicsComponent : public GraphicsComponent2
{
    KV_REFLECTED(DebugTextGraphicsComponent)
public:
    DebugTextGraphicsComponent();

    void onLoadComplete() override;

    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    /// 0 while there are no texts.
    int objectGetInstanceCount() override;
    ErrorCode batchPreRender() override;

    Handle<DebugCollectorComponent> getCollector() const { return collector; }
    /// Whose texts are drawn.
    void setCollector(Handle<DebugCollectorComponent> val) { collector = val; }
    String getFontName() const { return fontName; }
    /// Font file of "..\assets\fonts\"; takes effect when loaded.
    void setFontName(const String &val) { fontName = val; }

private:
    void buildGeometry(FontAsset &asset, int pixelSize);
    void addShadowed(FontAsset &asset, int pixelSize, float left, float top, const Vec4 &color);
    bool projectToPixels(const Vec4 &worldPosition, Vec4 &pixels) const;

    Handle<DebugCollectorComponent> collector;
    String fontName;
    Handle<FontAsset> font;
    Handle<DynamicMeshAsset> mesh;
    TextBlock textBlock;   ///< kept for the next text
    TextGeometry geometry; ///< kept for the next frame
};
