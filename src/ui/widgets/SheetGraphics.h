// SheetGraphics: everything that a screen shows of one picture or one font, in one draw call.
#pragma once

#include "ui/widgets/WidgetRect.h"

#include "rendering/drawn/GraphicsComponent2.h"
#include "rendering/drawn/TextGeometry.h"

class DynamicMeshAsset;
class FontAsset;
class TextBlock;
class TextureAsset;

/// The rectangles, or the letters, of one screen that share a texture; in the layer SCREEN.
///
/// Filled by a screen whenever that has changed, and drawn as it is in all frames between. Places are in pixels of the
/// picture, y down. Sheets are drawn by ascending order, and a later one hides an earlier one.
class SheetGraphics : public GraphicsComponent2
{
    KV_REFLECTED(SheetGraphics)
public:
    SheetGraphics() = default;

    /// Makes the mesh, then enters the scene graph.
    void onLoadComplete() override;
    GraphicsSystem2::BatchRenderParams batchGetParams() override;
    void objectDraw(BatchProxy &batch) override;
    /// 0 for an empty sheet.
    int objectGetInstanceCount() override;
    /// Brings what has been filled in to the device.
    ErrorCode batchPreRender() override;
    bool doBatchCompare(const Handle<GraphicsComponent2> &rhs) const override;

    int getOrder() const { return order; }
    /// Sheets of a higher order lie over those of a lower one.
    void setOrder(int val) { order = val; }
    Handle<TextureAsset> getTexture() const { return texture; }
    /// What rectangles show parts of.
    void setTexture(Handle<TextureAsset> val) { texture = val; }
    Handle<FontAsset> getFont() const { return font; }
    /// Whose letters texts are made of; goes before a texture.
    void setFont(Handle<FontAsset> val) { font = val; }

    /// Empties the sheet, to be filled anew for a picture of a height in pixels.
    void begin(float pictureHeight);
    /// Adds a part of the texture, whose coordinates are 0 to 1 from the upper left.
    void addRect(const WidgetRect &place, const WidgetRect &image, const Vec4 &color, const WidgetRect &clip);
    /// Adds a rectangle whose colour goes from one at its left to another at its right.
    void addShade(const WidgetRect &place, const Vec4 &leftColor, const Vec4 &rightColor, const WidgetRect &clip);
    /// Adds a line of a width from a place (x, y) to another one (z, w), on which the whole texture lies; nothing where
    /// it is not wholly within the clip.
    void addStroke(const Vec4 &fromTo, float width, const Vec4 &color, const WidgetRect &clip);
    /// Adds a text whose block's upper left corner is given.
    void addText(const TextBlock &block, FontAsset &from, int pixelSize, float left, float top, const Vec4 &color,
                 const WidgetRect &clip);
    /// Whether the letters were placed in an atlas that has been made anew since.
    bool isOutOfDate() const;
    /// Rectangles and letters.
    int getQuadCount() const { return static_cast<int>(vertices.size() / 4); }

private:
    void addQuad(const DefaultMeshVertex *corners);
    void addClipped(const DefaultMeshVertex *corners, const WidgetRect &clip);

    Handle<DynamicMeshAsset> mesh;
    Handle<TextureAsset> texture;
    Handle<FontAsset> font;
    int order = 0;
    float height = 0.f; ///< of the picture, pixels
    bool meshIsStale = true;
    unsigned atlasGeneration = 0; ///< of the font when the letters were placed
    Mesh::VertexBufferType vertices;
    Mesh::IndexBufferType indices;
};
